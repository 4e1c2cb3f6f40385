// SPDX-License-Identifier: MIT
#include "batch/prepare_command.h"

#include <functional>
#include <string_view>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/reporter.h"
#include "app/run_operation.h"
#include "app/texts.h"
#include "batch/request.h"
#include "batch/side_outputs.h"
#include "ops/operations.h"
#include "ops/prepare/prepare.h"

namespace tarvel {

namespace {

constexpr std::string_view kCaption = "Prepare";
constexpr std::string_view kErrorCaption = "Error in function 'Prepare'!";
constexpr std::string_view kNoMemory = "Function Prepare()_6 => Not enough memory!";

int RunPrepareOn(const std::string& library, const PrepareOptions& options) {
  RunContext run = GlobalRun();
  run.first_path = library;
  run.second_path.clear();
  return RunPrepare(run, options);
}

/// Calls `body`, which prepares a library, and publishes the copy. False after a message when that
/// fails.
bool Publish(WholeRun::Within within, const std::function<int()>& body) {
  if (WholeRun(within).Run(body, kNoMemory) == kSucceeded) return true;
  ReportError(ErrorHintText, kErrorCaption, kReportInBox);
  return false;
}

}  // namespace

int RunPrepareCommand(const BatchRequest& request) {
  FirstFilePath.Set(request.files[0]);
  return RunWithSideFiles(request, [&] {
    const auto prepare = [&] {
      const int result = RunWithWarnings(
          [&] { return RunPrepareOn(request.files[0], {.keep_all = request.keep_all}); });
      return CloseSideFiles(result == kSucceeded) ? result : kFailed;
    };
    if (!Publish(WholeRun::Within::kTogether, prepare)) return false;
    ShowBox(DoneText, DoneText);
    return true;
  });
}

std::vector<std::size_t> LibrariesOf(const BatchRequest& request) {
  switch (request.operation->needs) {
    case Needs::kTwoLibraries:
      return {0, 1};
    case Needs::kDocumentAndLibrary:
      return {1};
    case Needs::kLibrary:
    case Needs::kLibraryAndJournalList:
      break;
  }
  return {0};
}

bool PrepareLibraries(const BatchRequest& request, std::vector<std::string>& files) {
  GlobalKeptFiles = request.files;
  const std::vector<std::size_t> libraries = LibrariesOf(request);
  for (const std::size_t index : libraries) {
    const std::string& library = request.files[index];
    const std::size_t first = libraries.front();
    if (index != first && GlobalFiles().IsSameFile(library, request.files[first])) {
      files[index] = files[first];
      continue;
    }
    // The operation opens the copy by its name, and may yet find that it reads a side file.
    const auto prepare = [&] { return RunWithWarnings([&] { return RunPrepareOn(library, {}); }); };
    if (!Publish(WholeRun::Within::kApart, prepare)) return false;
    files[index] = PreparedPath(library, request.output_directory);
    GlobalKeptFiles.push_back(files[index]);
    ShowBox("Tarvel prepared the library and works on the new file '" + files[index] + "'.",
            kCaption);
  }
  return true;
}

}  // namespace tarvel
