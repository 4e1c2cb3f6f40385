// SPDX-License-Identifier: MIT
#include "batch/side_outputs.h"

#include <cstddef>
#include <memory>
#include <string>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/reporter.h"
#include "app/run_operation.h"

namespace tarvel {

namespace {

/// Creates a side file; null, after a message, when that fails.
std::unique_ptr<OutputFile> CreateSideFile(const std::string& path) {
  std::unique_ptr<OutputFile> file = CreateOutput(GlobalRun(), path, CreateMode::kWrite);
  if (!file) PrintOn(stderr, "tarvel-batch: could not create the file '" + path + "'\n");
  return file;
}

}  // namespace

int RunWithSideFiles(const BatchRequest& request, const std::function<bool()>& run) {
  const WholeRun whole_run;  // these files are parts of the run, too
  std::unique_ptr<OutputFile> warnings;
  std::unique_ptr<OutputFile> key_map;
  const bool all = request.warnings_file == kAllOnTerminal;
  const bool in_file = !request.warnings_file.empty() && !all;
  if (in_file && !(warnings = CreateSideFile(request.warnings_file))) return 1;
  if (!request.key_map_file.empty() && !(key_map = CreateSideFile(request.key_map_file))) return 1;
  std::size_t losses = 0;
  GlobalWarningOutputs = {.quiet = request.quiet,
                          .all = all,
                          .file = warnings.get(),
                          .key_map = key_map.get(),
                          .losses = request.strict ? &losses : nullptr};
  bool good = run();
  GlobalWarningOutputs = {};
  for (OutputFile* file : {warnings.get(), key_map.get()}) {
    if (!file || file->Close()) continue;
    PrintOn(stderr, "tarvel-batch: could not write the file '" + file->Path() +
                        "': " + file->Error() + "\n");
    good = false;
  }
  if (!good) return 1;
  return losses == 0 ? 0 : kLosses;
}

}  // namespace tarvel
