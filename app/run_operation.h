// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

#include "app/globals.h"
#include "app/operations.h"

namespace tarvel {

/// Takes `path` as the picked file of `buffer` and converts its line breaks if need be; the buffer
/// then holds the path to use. A path of more than 1000 bytes ends the process.
void PickFile(PathBuffer& buffer, std::string_view path);

/// While it lives, the files that are written through `GlobalRun().files` get their names only when
/// it publishes them, whole and together.
class WholeRun {
 public:
  /// Within another run: whether the files of both are published together, or those of the outer
  /// one later.
  enum class Within { kTogether, kApart };

  explicit WholeRun(Within within = Within::kTogether);
  WholeRun(const WholeRun&) = delete;
  WholeRun& operator=(const WholeRun&) = delete;
  ~WholeRun();

  /// Calls `body`, which gives 1 for success, and publishes the files, also when `body` failed.
  /// Publishes none when a byte of one was not written, a file that was read has been changed, or
  /// memory ran out. Returns what `body` gave; 0 after one of these, or when publishing failed,
  /// which may leave some of the files published. All but a failed write, which `body` reports, are
  /// reported with `PrintError`, the lack of memory with the text `no_memory`.
  int Run(const std::function<int()>& body, std::string_view no_memory);

 private:
  RunFiles own_files_;
  RunFiles* const outer_;
  RunFiles& files_;
};

/// Calls `run`, whose result it returns, with the warnings that `GlobalWarningOutputs` asks for,
/// and reports their summary.
int RunWithWarnings(const std::function<int()>& run);

/// Closes the files of warnings and of keys; false when a byte of one did not arrive. One to which
/// a run that failed has written nothing is dropped, so that an earlier one stays.
bool CloseSideFiles(bool succeeded);

/// What a button does: checks the picked files, shows the note, runs the operation and reports how
/// it ended. Returns 1 on success; 0 when the checks stopped it; else what the operation returned.
int RunOperation(const Operation& operation);

}  // namespace tarvel
