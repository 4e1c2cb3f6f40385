// SPDX-License-Identifier: MIT
// tarvel-batch: the operations without the dialog, through the same code and in the same order.
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/globals.h"
#include "app/operations.h"
#include "app/process.h"
#include "batch/asked_files.h"
#include "batch/options.h"
#include "core/reports.h"
#include "core/warnings.h"
#include "ops/run_context.h"

namespace tarvel {
namespace {

void PrintOn(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

/// Boxes and warnings go to standard error, so that standard output holds exactly what an operation
/// prints.
class BatchReporter final : public Reporter {
 public:
  int Print(std::string_view text) override {
    PrintOn(stdout, text);
    return static_cast<int>(text.size());
  }
  void Box(std::string_view message, std::string_view caption) override {
    PrintOn(stderr, std::string("[").append(caption).append("] ").append(message).append("\n"));
  }
  void Warn(std::string_view text) override {
    PrintOn(stderr, std::string("tarvel-batch: warning: ").append(text).append("\n"));
  }
};

/// Creates a file that is asked for on the command line; null, and told, when that fails.
std::unique_ptr<OutputFile> CreateAsked(const std::string& path) {
  std::unique_ptr<OutputFile> file = CreateOutput(GlobalRun(), path, CreateMode::kWrite);
  if (!file) PrintOn(stderr, "tarvel-batch: could not create the file '" + path + "'\n");
  return file;
}

/// Runs the operation with the files of warnings and keys that are asked for; gives the program's
/// exit status.
int RunRequest(const BatchRequest& request) {
  std::unique_ptr<OutputFile> warnings;
  std::unique_ptr<OutputFile> key_map;
  if (!request.warnings_file.empty() && !(warnings = CreateAsked(request.warnings_file))) return 1;
  if (!request.key_map_file.empty() && !(key_map = CreateAsked(request.key_map_file))) return 1;
  GlobalWarningOutputs = {request.quiet, warnings.get(), key_map.get()};
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
  if (const std::string reason = WhyNotAsked(request); !reason.empty()) {
    PrintOn(stderr, "tarvel-batch: " + EscapeControls(reason) + "\n");
    return kWrongUsage;
  }
  BatchReporter reporter;
  InstallReporter(reporter);
  RaiseStackLimit();
  TellOfLostFiles();
  MapLargeFiles();
  GlobalSettings = request.settings;
  PickFile(FirstFilePath, request.files[0]);
  if (request.files.size() > 1) PickFile(SecondFilePath, request.files[1]);
  return RunRequest(request);
}

}  // namespace
}  // namespace tarvel

int main(int argc, char** argv) {
  return tarvel::Main(std::vector<std::string>(argv + 1, argv + argc));
}
