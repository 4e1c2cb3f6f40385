// SPDX-License-Identifier: MIT
// tarvel-batch: the operations without the dialog, through the same code and in the same order.
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/process.h"
#include "app/reporter.h"
#include "app/run_operation.h"
#include "batch/options.h"
#include "batch/prepare_command.h"
#include "batch/side_files.h"

namespace tarvel {
namespace {

/// Creates a side file; null, after a message, when that fails.
std::unique_ptr<OutputFile> CreateSideFile(const std::string& path) {
  std::unique_ptr<OutputFile> file = CreateOutput(GlobalRun(), path, CreateMode::kWrite);
  if (!file) PrintOn(stderr, "tarvel-batch: could not create the file '" + path + "'\n");
  return file;
}

void PickFiles(const std::vector<std::string>& files) {
  PickFile(FirstFilePath, files[0]);
  if (files.size() > 1) PickFile(SecondFilePath, files[1]);
}

/// The same before libraries are prepared, which reads any line breaks.
void NameFiles(const std::vector<std::string>& files) {
  FirstFilePath.Set(files[0]);
  if (files.size() > 1) SecondFilePath.Set(files[1]);
}

/// Runs the operation, on the copies if the libraries are to be prepared.
bool RunPicked(const BatchRequest& request) {
  if (request.prepare) {
    std::vector<std::string> files = request.files;
    if (!PrepareLibraries(request, GlobalWarningOutputs, files)) return false;
    PickFiles(files);
  }
  return RunOperation(*request.operation) == 1;
}

/// The files that a run writes besides those of the operation; empty names for none.
struct SideFiles {
  std::string warnings;
  std::string key_map;
  bool quiet = false;
};

/// Calls `run` and writes its side files; returns the program's exit status.
int RunWithSideFiles(const SideFiles& side, const std::function<bool()>& run) {
  std::unique_ptr<OutputFile> warnings;
  std::unique_ptr<OutputFile> key_map;
  if (!side.warnings.empty() && !(warnings = CreateSideFile(side.warnings))) return 1;
  if (!side.key_map.empty() && !(key_map = CreateSideFile(side.key_map))) return 1;
  GlobalWarningOutputs = {.quiet = side.quiet, .file = warnings.get(), .key_map = key_map.get()};
  bool good = run();
  GlobalWarningOutputs = {};
  for (OutputFile* file : {warnings.get(), key_map.get()}) {
    if (!file || file->Close()) continue;
    PrintOn(stderr, "tarvel-batch: could not write the file '" + file->Path() +
                        "': " + file->Error() + "\n");
    good = false;
  }
  return good ? 0 : 1;
}

int PrintText(const std::string& text, int exit_status) {
  const bool wrong = exit_status != 0;
  PrintOn(wrong ? stderr : stdout, wrong ? "tarvel-batch: " + text + "\n" : text);
  return exit_status;
}

int Refuse(const std::string& reason) {
  PrintOn(stderr, "tarvel-batch: " + EscapeControls(reason) + "\n");
  return kWrongUsage;
}

void BeginRun() {
  RaiseStackLimit();
  ReportLostFiles();
  GlobalLargeFiles = LargeFiles::kMapped;
}

int Prepare(const std::vector<std::string>& words) {
  const PrepareRequest request = ParsePrepareLine(words);
  if (request.library.empty()) return PrintText(request.text, request.exit_status);
  if (const std::string reason = WhyRefused(request); !reason.empty()) return Refuse(reason);
  TerminalReporter reporter("tarvel-batch");
  InstallReporter(reporter);
  BeginRun();
  FirstFilePath.Set(request.library);
  return RunWithSideFiles(
      {.warnings = request.warnings_file, .key_map = {}, .quiet = request.quiet},
      [&] { return RunPrepareRequest(request, GlobalWarningOutputs) == kSucceeded; });
}

int Main(const std::vector<std::string>& arguments) {
  if (!arguments.empty() && arguments.front() == "prepare") {
    return Prepare({arguments.begin() + 1, arguments.end()});
  }
  const BatchRequest request = ParseCommandLine(arguments);
  if (!request.operation) return PrintText(request.text, request.exit_status);
  if (const std::string reason = WhyRefused(request); !reason.empty()) return Refuse(reason);
  TerminalReporter reporter("tarvel-batch");
  InstallReporter(reporter);
  BeginRun();
  GlobalSettings = request.settings;
  request.prepare ? NameFiles(request.files) : PickFiles(request.files);
  return RunWithSideFiles(
      {.warnings = request.warnings_file, .key_map = request.key_map_file, .quiet = request.quiet},
      [&] { return RunPicked(request); });
}

}  // namespace
}  // namespace tarvel

int main(int argc, char** argv) {
  return tarvel::Main(std::vector<std::string>(argv + 1, argv + argc));
}
