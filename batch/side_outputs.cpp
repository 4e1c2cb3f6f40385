// SPDX-License-Identifier: MIT
#include "batch/side_outputs.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/reporter.h"
#include "app/run_operation.h"

namespace tarvel {

namespace {

void PrintFailure(std::string_view what, const std::string& path, std::string_view reason) {
  std::string text("could not ");
  text.append(what).append(" the file '").append(path).append("'");
  if (!reason.empty()) text.append(": ").append(reason);
  PrintOn(stderr, "tarvel-batch: " + EscapeControls(text) + "\n");
}

/// Creates a side file; null, after a message, when that fails.
std::unique_ptr<OutputFile> CreateSideFile(const std::string& path) {
  errno = 0;
  std::unique_ptr<OutputFile> file = CreateOutput(GlobalRun(), path, CreateMode::kWrite);
  if (!file) PrintFailure("create", path, errno == 0 ? "" : std::strerror(errno));
  return file;
}

}  // namespace

int RunWithSideFiles(const BatchRequest& request, const std::function<bool()>& run) {
  WholeRun whole_run;  // these files are parts of the run, too
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
  (void)CloseSideFiles(good);  // if the run ended before it did that
  GlobalWarningOutputs = {};
  for (OutputFile* file : {warnings.get(), key_map.get()}) {
    if (!file || file->Error().empty()) continue;
    PrintFailure("write", file->Path(), file->Error());
    good = false;
  }
  // They are not published yet if the run ended before its last step.
  if (whole_run.Run([] { return 1; }, {}) != 1 || !good) return 1;
  return losses == 0 ? 0 : kLosses;
}

}  // namespace tarvel
