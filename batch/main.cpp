// SPDX-License-Identifier: MIT
// tarvel-batch: the operations without the dialog, through the same code and in the same order.
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "app/globals.h"
#include "app/operations.h"
#include "app/process.h"
#include "batch/options.h"
#include "core/reports.h"

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

int Main(const std::vector<std::string>& arguments) {
  const BatchRequest request = ParseCommandLine(arguments);
  if (!request.operation) {
    const bool wrong = request.exit_status != 0;
    PrintOn(wrong ? stderr : stdout, wrong ? "tarvel-batch: " + request.text + "\n" : request.text);
    return request.exit_status;
  }
  BatchReporter reporter;
  InstallReporter(reporter);
  RaiseStackLimit();
  GlobalSettings = request.settings;
  PickFile(FirstFilePath, request.files[0]);
  if (request.files.size() > 1) PickFile(SecondFilePath, request.files[1]);
  return RunOperation(*request.operation) == 1 ? 0 : 1;
}

}  // namespace
}  // namespace tarvel

int main(int argc, char** argv) {
  return tarvel::Main(std::vector<std::string>(argv + 1, argv + argc));
}
