// SPDX-License-Identifier: MIT
// tarvel-batch: the operations without the dialog, through the same code and in the same order.
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/process.h"
#include "app/reporter.h"
#include "app/run_operation.h"
#include "batch/options.h"
#include "batch/side_files.h"

namespace tarvel {
namespace {

/// Creates a side file; null, after a message, when that fails.
std::unique_ptr<OutputFile> CreateSideFile(const std::string& path) {
  std::unique_ptr<OutputFile> file = CreateOutput(GlobalRun(), path, CreateMode::kWrite);
  if (!file) PrintOn(stderr, "tarvel-batch: could not create the file '" + path + "'\n");
  return file;
}

/// Runs the operation and writes its side files; returns the program's exit status.
int RunRequest(const BatchRequest& request) {
  const WholeRun run;  // these files are parts of the run, too
  std::unique_ptr<OutputFile> warnings;
  std::unique_ptr<OutputFile> key_map;
  const bool all = request.warnings_file == kAllOnTerminal;
  const bool in_file = !request.warnings_file.empty() && !all;
  if (in_file && !(warnings = CreateSideFile(request.warnings_file))) return 1;
  if (!request.key_map_file.empty() && !(key_map = CreateSideFile(request.key_map_file))) return 1;
  GlobalWarningOutputs = {
      .quiet = request.quiet, .all = all, .file = warnings.get(), .key_map = key_map.get()};
  bool good = RunOperation(*request.operation) == 1;
  GlobalWarningOutputs = {};
  for (OutputFile* file : {warnings.get(), key_map.get()}) {
    if (!file || file->Close()) continue;
    PrintOn(stderr, "tarvel-batch: could not write the file '" + file->Path() +
                        "': " + file->Error() + "\n");
    good = false;
  }
  return good ? 0 : 1;
}

int Main(const std::vector<std::string>& arguments) {
  const BatchRequest request = ParseCommandLine(arguments);
  if (!request.operation) {
    const bool wrong = request.exit_status != 0;
    PrintOn(wrong ? stderr : stdout, wrong ? "tarvel-batch: " + request.text + "\n" : request.text);
    return request.exit_status;
  }
  if (const std::string reason = WhyRefused(request); !reason.empty()) {
    PrintOn(stderr, "tarvel-batch: " + EscapeControls(reason) + "\n");
    return kWrongUsage;
  }
  TerminalReporter reporter("tarvel-batch");
  InstallReporter(reporter);
  RaiseStackLimit();
  GlobalSettings = request.settings;
  PickFile(FirstFilePath, request.files[0]);
  if (request.files.size() > 1) PickFile(SecondFilePath, request.files[1]);
  return RunRequest(request);
}

}  // namespace
}  // namespace tarvel

int main(int argc, char** argv) {
  tarvel::PrepareProcess();
  try {
    return tarvel::Main(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const std::bad_alloc&) {
    std::fputs("tarvel-batch: not enough memory\n", stderr);
    return 1;
  }
}
