// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/settings.h"
#include "core/file_names.h"
#include "core/file_system.h"
#include "core/output_file.h"

namespace tarvel {

/// All that an operation may know of the program around it.
struct RunContext {
  std::string first_path;   // empty: not picked
  std::string second_path;  // empty: not picked
  Settings settings;
  FileSystem& files;
  /// The directory of the program's configuration files, without a final "/". Asked for only by
  /// the loaders of such files.
  std::function<std::string()> program_directory;
};

/// The context of a run started by the user: the picked paths and the settings as they are now.
RunContext GlobalRun();

/// The path of an operation's new file beside `library`; empty when the library's path holds no
/// ".".
std::string OutputPath(const std::string& library, Output output);

/// Creates a new file. Null when that fails, when `path` is empty, or when it names one of the
/// picked files, which are never opened for writing.
[[nodiscard]] std::unique_ptr<OutputFile> CreateOutput(const RunContext& run,
                                                       const std::string& path, CreateMode mode);

/// Closes new files; false when a byte of any did not arrive, after a `PrintError` for each such
/// file. An operation whose files did not all arrive has failed.
[[nodiscard]] bool CloseOutputs(std::initializer_list<OutputFile*> files);

/// Prints a failure with `PrintError` and gives `result`, so that an operation can end with it.
int Fail(std::string_view text, int result = 0);

inline constexpr int kSucceeded = 1;
inline constexpr int kFailed = 0;
inline constexpr int kInputNotOpened = 2999;

}  // namespace tarvel
