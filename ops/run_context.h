// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "core/file_names.h"
#include "core/file_system.h"
#include "core/output_file.h"
#include "core/reports.h"
#include "warnings/warnings.h"

namespace tarvel {

class JournalStyles;

/// Which citations Extract reads. Without a command and without `follow` it reads "\cite{" only.
struct CitationRules {
  std::vector<std::string> commands = {};  // names without "\"; "all" for all that are known
  bool follow = false;                     // files that the document includes are read too
  bool report_uncited = false;             // entries that are not cited are warned of
  std::string directory = {};              // of the document, with a final "/", or empty

  bool LikeLaTeX() const { return follow || !commands.empty(); }
};

/// All that an operation may know of the program around it.
struct RunContext {
  std::string first_path;   // empty: not picked
  std::string second_path;  // empty: not picked
  Settings settings;
  FileSystem& files;
  Reporter& reporter;
  JournalStyles& styles;
  /// The directory of the program's configuration files, without a final "/". Asked for only by
  /// the loaders of such files.
  std::function<std::string()> program_directory;
  /// Where the run reports what it skips, drops or cannot use; null when nobody wants to
  /// know.
  Warnings* warnings = nullptr;
  /// Where the new files go; empty: beside the library.
  std::string output_directory = {};
  CitationRules citations = {};
  /// Further files that are never written to: those whose copies the run reads.
  std::vector<std::string> kept_files = {};
  /// How many steps of `RowBudget` Text may take, besides those that the size of the library
  /// allows. They take some seconds; tests give fewer.
  std::uint64_t row_steps = 12'000'000'000;
};

/// The path of an operation's new file beside `library`, or in `directory` unless that is empty.
/// Empty when the library's path (with a directory: its name) holds no ".".
std::string OutputPath(const std::string& library, Output output,
                       const std::string& directory = {});

/// The same for a file with this suffix.
std::string OutputPath(const std::string& library, std::string_view suffix,
                       const std::string& directory);

/// Opens a picked file in stdio's mode "r+" and reads it whole. Null when that fails; when it fails
/// because the file is read-only, says so on the terminal: the operations' own texts do not.
[[nodiscard]] std::optional<LineStream> OpenForUpdate(const RunContext& run,
                                                      const std::string& path);

/// Creates a new file. Null when that fails, when `path` is empty, or when it names a file that the
/// run reads: a picked one, or one of `kept_files`. Those are never written to.
[[nodiscard]] std::unique_ptr<OutputFile> CreateOutput(const RunContext& run,
                                                       const std::string& path, CreateMode mode);
/// The same. When it fails, says on the terminal why: the operations' own texts name neither the
/// file nor the reason. `path` was made from that of `library`; it is empty when that has no
/// extension.
[[nodiscard]] std::unique_ptr<OutputFile> CreateOrReport(const RunContext& run,
                                                         const std::string& library,
                                                         const std::string& path, CreateMode mode);
/// The same for one of the operations' own files: beside `library`, or in the run's output
/// directory.
[[nodiscard]] std::unique_ptr<OutputFile> CreateOutput(const RunContext& run,
                                                       const std::string& library, Output output);
/// The same, and begins the file with its header.
[[nodiscard]] std::unique_ptr<OutputFile> CreateWithHeader(const RunContext& run,
                                                           const std::string& library,
                                                           Output output);

/// The header of a file with this name and the line break after it. The name's extension decides.
std::string HeaderOf(std::string_view name);

/// Closes new files; false when one of them was not written to its last byte, after a `PrintError`
/// for each such file. The operation has then failed.
[[nodiscard]] bool CloseOutputs(const RunContext& run, std::initializer_list<OutputFile*> files);

/// Takes a run's warnings about the file at `path`, whose bytes are those of `input`.
FileWarnings WarningsOf(const RunContext& run, const std::string& path, const LineStream& input);

// What operations return.
inline constexpr int kSucceeded = 1;
inline constexpr int kFailed = 0;
inline constexpr int kInputNotOpened = 2999;

/// Reports a failure with `PrintError` and returns `result`, so that an operation can end with it.
int Fail(const RunContext& run, std::string_view text, int result = kFailed);

}  // namespace tarvel
