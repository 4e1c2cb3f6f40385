// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/output_file.h"
#include "core/reports.h"

namespace tarvel {

/// What a run can tell of besides its files. ORDER: `kWarningKinds`.
enum class WarningKind : std::uint8_t {
  kUnbracedValue,
  kUnknownType,
  kBlankInType,
  kRunsOn,
  kOpenValue,
  kLongLine,
  kBadBytes,
  kMissingCitation,
  kOtherCitation,
  kKeyWithBlank,
  kCarriedOver,
  kNothingPrinted,
  kCommandLeft,
  kNoGroup,
  kKeyTwice,
  kOverwritten,
  kAuthorsAsTheyWere,
  kTextLost,
  kUnknownJournal,
  kLineCut,
  kCharacter,
  kLineLeftOut,
  kUnknownTag,
  kEntryDropped,
  kTextNotCopied,
  kUnreadText,
  kUndefinedString,
  kMissingParent,
  kMisreadKey,
  kMisreadTag,
};

/// One kind of warning, as people see it.
struct WarningRow {
  std::string_view name;     // in the file of warnings and in the manual
  std::string_view summary;  // what was found, in the plural
};

inline constexpr std::array<WarningRow, 30> kWarningKinds{{
    {"unbraced-value", "values that do not stand in braces"},
    {"unknown-type", "entries of an unknown type"},
    {"blank-in-type", "blanks between an entry's type and its brace"},
    {"runs-on", "entries that run on for want of a closing brace"},
    {"open-value", "values that never close"},
    {"long-line", "lines that are too long to be read at once"},
    {"bad-bytes", "lines with bytes that are neither ASCII nor valid UTF-8"},
    {"missing-citation", "cited keys without an entry"},
    {"other-citation", "citations that were passed over or read out of a comment"},
    {"key-with-blank", "cited keys with blanks"},
    {"carried-over", "references that show a value of an earlier entry"},
    {"nothing-printed", "entries that printed nothing"},
    {"command-left", "LaTeX commands left in the plain text"},
    {"no-group", "entries that are compared to none"},
    {"key-twice", "keys that occur again in a library"},
    {"overwritten", "entries that were written over"},
    {"authors-as-they-were", "author lists of no known form"},
    {"text-lost", "texts that were lost at the end of a line"},
    {"unknown-journal", "journal names that are not in the list"},
    {"line-cut", "lines that were cut because they mention a journal"},
    {"character", "kinds of characters that became question marks"},
    {"line-left-out", "kinds of tags whose lines were left out"},
    {"unknown-tag", "unknown tags that were dropped"},
    {"entry-dropped", "entries that were dropped with more in them"},
    {"text-not-copied", "texts outside entries that were not copied"},
    {"unread-text", "commands that could not be read to their end"},
    {"undefined-string", "strings that are not defined"},
    {"missing-parent", "cross-references to no entry"},
    {"misread-key", "keys that operations misread"},
    {"misread-tag", "tags whose lines operations misread"},
}};

constexpr const WarningRow& RowOf(WarningKind kind) {
  return kWarningKinds[static_cast<std::size_t>(kind)];
}

/// Something that a run passed over, dropped or could not use.
struct Warning {
  WarningKind kind;
  std::string_view file;
  std::size_t line = 0;  // from 1; 0 when it is of no line
  std::string_view key;  // of the entry; empty when it is of none
  std::string_view text;
};

/// Where operations report their warnings; what becomes of them is the program's business.
class Warnings {
 public:
  virtual ~Warnings() = default;
  virtual void Report(const Warning& warning) = 0;
  /// Counts a warning whose text nobody will see and returns true; returns false, counting nothing,
  /// while the full warning is still wanted.
  virtual bool ReportNumber(WarningKind /*kind*/) { return false; }
  /// Reports that documents that cite `old_key` must cite `new_key` in the new library.
  virtual void MapKey(std::string_view /*old_key*/, std::string_view /*new_key*/) {}
};

/// Tells in which line a byte stands. Asking in the order of the bytes counts each line break once;
/// going back costs a count from a mark that is at most 4 KiB away.
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
  /// Counts a warning whose text nobody will see and returns true; false when it is to be reported.
  bool ReportNumber(WarningKind kind) { return !to_ || to_->ReportNumber(kind); }
  /// The number, from 1, of the line that holds the byte at `offset`.
  std::size_t LineOf(std::size_t offset) { return numbers_.At(offset); }
  /// Reports something about the line that holds the byte at `offset`.
  void Report(WarningKind kind, std::size_t offset, std::string_view key, std::string_view text);

 private:
  Warnings* to_;
  std::string path_;
  LineNumbers numbers_;
};

/// The text with every control character and DEL written as "\n", "\t", "\r" or "\xNN".
std::string EscapeControls(std::string_view text);

/// Where warnings go, besides the reporter.
struct WarningOutputs {
  bool quiet = false;             // nothing goes to the reporter
  OutputFile* file = nullptr;     // a line each: kind, file, line, key and text, tabs between
  OutputFile* key_map = nullptr;  // a line each: old key and new key, a tab between
};

/// Sends the first warnings of each kind, and at the end the number of each kind, to the reporter,
/// and all of them to a file. In the file controls are escaped and a backslash is doubled.
class WarningReport final : public Warnings {
 public:
  /// How many of each kind go to the reporter.
  static constexpr std::size_t kMostShown = 20;

  /// `reporter` must outlive this.
  WarningReport(const WarningOutputs& outputs, Reporter& reporter)
      : outputs_(outputs), reporter_(reporter) {}
  void Report(const Warning& warning) override;
  bool ReportNumber(WarningKind kind) override;
  void MapKey(std::string_view old_key, std::string_view new_key) override;
  /// Sends the number of each kind to the reporter.
  void ReportCounts() const;

 private:
  WarningOutputs outputs_;
  Reporter& reporter_;
  std::array<std::size_t, kWarningKinds.size()> counts_{};
};

}  // namespace tarvel
