// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/output_file.h"
#include "core/reports.h"
#include "warnings/warning_kinds.h"

namespace tarvel {

/// Something that a run skipped, dropped or could not use.
struct Warning {
  WarningKind kind;
  std::string_view file;
  std::size_t line = 0;  // from 1; 0 when it is of no line
  std::string_view key;  // of the entry; empty when it is of none
  std::string_view text;
};

/// The parts of a text, one after the other.
using TextParts = std::initializer_list<std::string_view>;

/// Where operations report their warnings; what becomes of them is the program's business.
class Warnings {
 public:
  virtual ~Warnings() = default;
  virtual void Report(const Warning& warning) = 0;
  /// Counts a warning whose text nobody will see and returns true; returns false, counting nothing,
  /// while the full warning is still wanted.
  virtual bool ReportNumber(WarningKind /*kind*/) { return false; }
  /// Reports how many values a library has, and how many of them stand in quotes or bare. Reported
  /// only where the operation asks for at least one of these, which it cannot read.
  virtual void ReportValues(std::string_view /*file*/, std::size_t /*values*/,
                            std::size_t /*unread*/) {}
  /// Reports that documents that cite `old_key` must cite `new_key` in the new library.
  virtual void MapKey(std::string_view /*old_key*/, std::string_view /*new_key*/) {}
};

/// Gives the line in which a byte stands. Asking in the order of the bytes counts each line break
/// at most twice; going back costs a count from a mark that is at most 4 KiB away.
class LineNumbers {
 public:
  /// The lines of `bytes`, which must outlive this.
  explicit LineNumbers(std::string_view bytes) : bytes_(bytes) {}
  /// The number, from 1, of the line that holds the byte at `offset`.
  std::size_t At(std::size_t offset);

 private:
  std::string_view bytes_;
  std::vector<std::size_t> breaks_before_;  // each mark
  std::size_t last_offset_ = 0;
  std::size_t last_breaks_ = 0;
};

/// Reports the warnings about one file. Does nothing when nobody wants them.
class FileWarnings {
 public:
  /// `to` may be null; `bytes`, the file's, must outlive this.
  FileWarnings(Warnings* to, std::string_view path, std::string_view bytes)
      : to_(to), path_(path), numbers_(bytes) {}

  /// Whether anybody wants warnings. Where nobody does, their texts need not be made up.
  bool Wanted() const { return to_ != nullptr; }
  /// Passes on `Warnings::ReportValues`.
  void ReportValues(std::size_t values, std::size_t unread) {
    if (to_) to_->ReportValues(path_, values, unread);
  }
  /// Counts a warning whose text nobody will see and returns true; false when it is to be reported.
  bool ReportNumber(WarningKind kind) { return !to_ || to_->ReportNumber(kind); }
  /// The number, from 1, of the line that holds the byte at `offset`.
  std::size_t LineOf(std::size_t offset) { return numbers_.At(offset); }
  /// Reports something about the line that holds the byte at `offset`.
  void Report(WarningKind kind, std::size_t offset, std::string_view key, std::string_view text) {
    Report(kind, offset, key, TextParts{text});
  }
  /// The same with a text in parts, which are only put together where somebody will see it.
  void Report(WarningKind kind, std::size_t offset, std::string_view key, TextParts text);

 private:
  Warnings* to_;
  std::string path_;
  LineNumbers numbers_;
};

/// The text with every control character and DEL written as "\n", "\t", "\r" or "\xNN".
std::string EscapeControls(std::string_view text);

/// Whether a file that begins with these bytes is in UTF-16, in which no operation sees anything.
bool IsUtf16(std::string_view bytes);
/// What to say of such a file, after its path.
inline constexpr std::string_view kIsUtf16 =
    "is in UTF-16; convert it with 'iconv -f UTF-16 -t UTF-8'";
/// Warns of such a file.
void WarnOfUtf16(Reporter& reporter, std::string_view path, std::string_view bytes);

/// The text between single quotes; of a long one only the beginning, with "..." after it. What
/// warnings quote of a library goes through this, so that a crafted library makes no flood of them.
std::string Quoted(std::string_view text);

/// A warning as a line that editors and build tools understand: "FILE:LINE: warning: TEXT [KIND]",
/// or "warning: TEXT [KIND]" where it is of no file. Controls are escaped, long texts cut.
std::string LineOf(const Warning& warning);

/// Where warnings go, besides the reporter.
struct WarningOutputs {
  bool quiet = false;             // no summary, and no warning of values that are not read
  bool all = false;               // each warning goes to the reporter at once; no summary follows
  OutputFile* file = nullptr;     // a line each: kind, file, line, key and text, tabs between
  OutputFile* key_map = nullptr;  // a line each: old key and new key, a tab between
  std::size_t* losses = nullptr;  // the losses of a run are added to it at its end
};

/// Counts the warnings of a run and keeps a few examples of each kind, which `ReportSummary` sends
/// to the reporter; a warning of a large file to come is sent at once, as it helps only then; sends
/// all of them to a file, or at once to the reporter, where that is asked for. In the file controls
/// are escaped, a backslash is doubled and keys are cut.
class WarningReport final : public Warnings {
 public:
  /// How many examples of each kind are kept.
  static constexpr std::size_t kExamples = 3;

  /// `reporter` must outlive this.
  WarningReport(const WarningOutputs& outputs, Reporter& reporter)
      : outputs_(outputs), reporter_(reporter) {}
  void Report(const Warning& warning) override;
  bool ReportNumber(WarningKind kind) override;
  void ReportValues(std::string_view file, std::size_t values, std::size_t unread) override;
  void MapKey(std::string_view old_key, std::string_view new_key) override;
  /// Sends the summary to the reporter: libraries of which most values cannot be read, then each
  /// kind with its number and its examples, losses first and of equally bad kinds the most frequent
  /// first.
  void ReportSummary() const;
  /// How many losses were reported.
  std::size_t Losses() const;

 private:
  /// What was reported of one kind.
  struct KindCount {
    std::size_t count = 0;
    std::vector<std::string> examples;
  };

  std::vector<std::size_t> WorstFirst() const;

  WarningOutputs outputs_;
  Reporter& reporter_;
  std::array<KindCount, kWarningKindCount> kinds_;
  std::vector<std::string> unread_;  // a line for each library of which most values are not read
};

}  // namespace tarvel
