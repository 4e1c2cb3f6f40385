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

/// Makes the files that a run writes through `GlobalRun().files` appear whole and together, or not
/// at all, while it lives.
class WholeRun {
 public:
  /// Within another run: whether the files of both are published together, or those of the outer
  /// one later.
  enum class Within { kTogether, kApart };

  explicit WholeRun(Within within = Within::kTogether);
  WholeRun(const WholeRun&) = delete;
  WholeRun& operator=(const WholeRun&) = delete;
  ~WholeRun();

  /// Calls `body`, which gives 1 for success, and then publishes its files, also after a failure
  /// that it has reported itself. Returns what `body` gave, or 0 when a file could not be written
  /// or was changed while it was read, or when memory ran out; each is reported with `PrintError`,
  /// the last one with the text `no_memory`, and no file is published then.
  int Run(const std::function<int()>& body, std::string_view no_memory);

 private:
  RunFiles own_files_;
  RunFiles* const outer_;
  RunFiles& files_;
};

/// What a button does: checks the picked files, shows the note, runs the operation and reports how
/// it ended. Returns 1 on success; 0 when the checks stopped it; else what the operation returned.
int RunOperation(const Operation& operation);

}  // namespace tarvel
