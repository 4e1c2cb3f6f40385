// SPDX-License-Identifier: MIT
// tarvel-batch: the operations without the dialog, through the same code and in the same order.
#include <unistd.h>

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
#include "batch/batch_files.h"
#include "batch/batch_reporter.h"
#include "batch/help.h"
#include "batch/options.h"
#include "batch/side_files.h"
#include "batch/verbs.h"

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
  std::size_t losses = 0;
  GlobalWarningOutputs = {.quiet = request.quiet,
                          .all = all,
                          .file = warnings.get(),
                          .key_map = key_map.get(),
                          .losses = request.strict ? &losses : nullptr};
  bool good = RunOperation(*request.operation) == 1;
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

int Refuse(const std::string& reason) {
  PrintOn(stderr, "tarvel-batch: " + reason + "\n");
  return kWrongUsage;
}

/// Picks the files of an operation and runs it; returns the program's exit status.
int RunPicked(const BatchRequest& request) {
  GlobalCitations = request.citations;
  GlobalCitations.directory = request.files[0].substr(0, request.files[0].rfind('/') + 1);
  PickFile(FirstFilePath, request.files[0]);
  if (request.files.size() > 1) PickFile(SecondFilePath, request.files[1]);
  return RunRequest(request);
}

/// Sets up the process for what the command line asks for, and runs it.
int RunVerb(const BatchRequest& request) {
  ProgressLine progress(request.quiet || isatty(STDERR_FILENO) == 0 ? nullptr : stderr);
  BatchReporter reporter(request.quiet, progress);
  InstallReporter(reporter);
  RaiseStackLimit();
  BatchFiles files(RealFileSystem(), !request.output_directory.empty(), progress);
  GlobalFileSystem = &files;
  GlobalOutputDirectory = request.output_directory;
  GlobalSettings = request.settings;
  return request.verb->run ? request.verb->run(request) : RunPicked(request);
}

int Main(const std::vector<std::string>& arguments) {
  const BatchRequest request = ParseCommandLine(arguments);
  if (request.exit_status != 0) return Refuse(request.text);
  int status = 0;
  if (request.verb) {
    if (const std::string reason = WhyRefused(request); !reason.empty()) {
      return Refuse(WithHelpHint(reason, request.verb));
    }
    status = RunVerb(request);
  } else {
    PrintOn(stdout, request.text);
  }
  if (std::ferror(stdout) == 0) return status;
  PrintOn(stderr, "tarvel-batch: could not write to standard output\n");
  return 1;
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
