// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/settings.h"
#include "core/run_files.h"
#include "ops/journal_styles.h"
#include "ops/run_context.h"
#include "warnings/warnings.h"

namespace tarvel {

/// A path of at most 1000 bytes. An empty one means that no file was picked.
class PathBuffer {
 public:
  static constexpr std::size_t kMostBytes = 1000;

  explicit PathBuffer(std::string_view name) : name_(name) {}

  /// Takes a copy of `path`. A longer path is never cut: a line on standard error says so and the
  /// process ends with status 1.
  void Set(std::string_view path);
  const std::string& Get() const { return path_; }
  /// Notes that the file has the line breaks of another system, and why there is no copy with those
  /// of this one; `Set` forgets that.
  void NoteUnconverted(std::string reason) { unconverted_ = std::move(reason); }
  /// What was noted; empty when nothing was.
  const std::string& WhyUnconverted() const { return unconverted_; }
  bool Empty() const { return path_.empty(); }

 private:
  std::string_view name_;
  std::string path_;
  std::string unconverted_;
};

/// The settings of this process.
extern Settings GlobalSettings;

/// The first picked file: the LaTeX document for Extract, a library for everything else.
extern PathBuffer FirstFilePath;
/// The second picked file: Extract's library, Compare's second one, the user's own journal list.
extern PathBuffer SecondFilePath;
/// The running executable, filled by `GetProgramDirectory`.
extern PathBuffer ExecutablePath;
/// Its directory, without a final "/"; filled by `GetProgramDirectory`.
extern PathBuffer ProgramDir;

/// Where a run that the user starts sends its warnings.
extern WarningOutputs GlobalWarningOutputs;
/// What takes the warnings of the run that is under way; null between runs and for none.
extern Warnings* GlobalWarnings;

/// The formats of this process. A format that a later style file does not define stays as an
/// earlier one left it.
extern JournalStyles GlobalJournalStyles;

/// The files of the run that is under way; null between runs.
extern RunFiles* GlobalRunFiles;
/// The files of this process; null: those of the machine.
extern FileSystem* GlobalFileSystem;
/// `GlobalFileSystem`, or that of the machine.
FileSystem& GlobalFiles();
/// Where new files go; empty: beside the library.
extern std::string GlobalOutputDirectory;
/// Which citations Extract reads.
extern CitationRules GlobalCitations;
/// Files that are never written to, besides the picked ones: those that `--prepare` copied.
extern std::vector<std::string> GlobalKeptFiles;

/// The systems whose line breaks are distinguished, by their codes.
inline constexpr int kLinuxSystem = 5555;    // lines end in LF
inline constexpr int kWindowsSystem = 5556;  // CR LF
inline constexpr int kMacSystem = 5557;      // CR

/// The system that this build is for.
inline constexpr int HostSystemCode = kLinuxSystem;

}  // namespace tarvel
