// SPDX-License-Identifier: MIT
#include "batch/prepare_command.h"

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

int RunWithWarnings(const std::string& library, const PrepareOptions& options) {
  const WarningOutputs& outputs = GlobalWarningOutputs;
  RunContext run = GlobalRun();
  run.first_path = library;
  run.second_path.clear();
  WarningReport report(outputs, GlobalReporter());
  run.warnings = &report;
  const int result = RunPrepare(run, options);
  report.ReportSummary();
  if (outputs.losses) *outputs.losses += report.Losses();
  return result;
}

/// Prepares a library and publishes the copy.
bool Prepare(const std::string& library, const PrepareOptions& options, WholeRun::Within within) {
  const auto run = [&] { return RunWithWarnings(library, options); };
  if (WholeRun(within).Run(run, kNoMemory) == kSucceeded) return true;
  ReportError(ErrorHintText, kErrorCaption, kReportInBox);
  return false;
}

}  // namespace

int RunPrepareCommand(const BatchRequest& request) {
  FirstFilePath.Set(request.files[0]);
  return RunWithSideFiles(request, [&] {
    if (!Prepare(request.files[0], {.keep_all = request.keep_all}, WholeRun::Within::kTogether)) {
      return false;
    }
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
  for (const std::size_t index : LibrariesOf(request)) {
    const std::string& library = request.files[index];
    if (index == 1 && GlobalFiles().IsSameFile(library, request.files[0])) {
      files[1] = files[0];
      continue;
    }
    // The operation opens the copy by its name, and may yet find that it reads a side file.
    if (!Prepare(library, {}, WholeRun::Within::kApart)) return false;
    files[index] = PreparedPath(library, request.output_directory);
    GlobalKeptFiles.push_back(files[index]);
    ShowBox("Tarvel prepared the library and works on the new file '" + files[index] + "'.",
            kCaption);
  }
  return true;
}

}  // namespace tarvel
