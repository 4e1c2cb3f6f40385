// SPDX-License-Identifier: MIT
#include "app/run_operation.h"

#include "app/reporter.h"
#include "app/texts.h"
#include "gui/input_checks.h"
#include "gui/line_endings.h"

namespace tarvel {

namespace {

/// Runs an operation and reports what it warns of.
int RunWithWarnings(const Operation& operation) {
  const WarningOutputs& outputs = GlobalWarningOutputs;
  if (outputs.quiet && !outputs.all && !outputs.file && !outputs.key_map && !outputs.losses) {
    return operation.run();
  }
  WarningReport report(outputs, GlobalReporter());
  GlobalWarnings = &report;
  const int result = operation.run();
  GlobalWarnings = nullptr;
  report.ReportSummary();
  if (outputs.losses) *outputs.losses = report.Losses();
  return result;
}

}  // namespace

void PickFile(PathBuffer& buffer, std::string_view path) {
  buffer.Set(path);
  ConvertLineEndings(buffer);  // a failed conversion leaves the picked path
}

int RunOperation(const Operation& operation) {
  if (CheckInputFiles(static_cast<int>(operation.code)) != 1) return 0;
  if (!operation.note.empty()) ShowBox(operation.note, NoteTitle);
  const int result = RunWithWarnings(operation);
  if (result == 1) {
    ShowBox(DoneText, DoneText);
  } else {
    ReportError(ErrorHintText, operation.error_caption, kReportInBox);
  }
  return result;
}

}  // namespace tarvel
