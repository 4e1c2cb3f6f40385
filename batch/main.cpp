// SPDX-License-Identifier: MIT
// tarvel-batch: the operations without the dialog, through the same code and in the same order.
#include <unistd.h>

#include <cstdio>
#include <new>
#include <string>
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
#include "batch/prepare_command.h"
#include "batch/side_files.h"
#include "batch/side_outputs.h"
#include "batch/verbs.h"

namespace tarvel {
namespace {

int Refuse(const std::string& reason) {
  PrintOn(stderr, "tarvel-batch: " + reason + "\n");
  return kWrongUsage;
}

void PickFiles(const std::vector<std::string>& files) {
  PickFile(FirstFilePath, files[0]);
  if (files.size() > 1) PickFile(SecondFilePath, files[1]);
}

/// The same for libraries that are prepared first, which reads any line breaks.
void NameFiles(const std::vector<std::string>& files) {
  FirstFilePath.Set(files[0]);
  if (files.size() > 1) SecondFilePath.Set(files[1]);
}

/// Runs the operation, on copies if the libraries are to be prepared.
bool RunPrepared(const BatchRequest& request) {
  if (request.prepare) {
    std::vector<std::string> files = request.files;
    if (!PrepareLibraries(request, files)) return false;
    PickFiles(files);
  }
  return RunOperation(*request.operation) == 1;
}

/// Picks the files of an operation and runs it; returns the program's exit status.
int RunPicked(const BatchRequest& request) {
  GlobalCitations = request.citations;
  GlobalCitations.directory = request.files[0].substr(0, request.files[0].rfind('/') + 1);
  request.prepare ? NameFiles(request.files) : PickFiles(request.files);
  return RunWithSideFiles(request, [&] { return RunPrepared(request); });
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
  // Warnings that were asked for did not arrive. There is no stream left to say so on.
  const bool lacks_warnings = request.warnings_file == kAllOnTerminal && std::ferror(stderr) != 0;
  if (std::ferror(stdout) == 0) return lacks_warnings ? 1 : status;
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
