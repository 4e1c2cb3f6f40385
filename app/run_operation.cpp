// SPDX-License-Identifier: MIT
#include "app/run_operation.h"

#include <memory>
#include <new>

#include "app/reporter.h"
#include "app/texts.h"
#include "gui/input_checks.h"
#include "gui/line_endings.h"

namespace tarvel {

namespace {

/// Memory that is given back when there is no more, for what has to be said then.
constexpr std::size_t kReserve = std::size_t{1} << 18;

/// Makes `warnings` the ones of the run that is under way.
class WarningsInUse {
 public:
  explicit WarningsInUse(Warnings& warnings) { GlobalWarnings = &warnings; }
  WarningsInUse(const WarningsInUse&) = delete;
  WarningsInUse& operator=(const WarningsInUse&) = delete;
  ~WarningsInUse() { GlobalWarnings = nullptr; }
};

/// Warns of the files of the operation whose line breaks could not be converted.
void ReportUnconverted(const Operation& operation) {
  if (!GlobalWarnings) return;
  for (const PathBuffer* file : {&FirstFilePath, &SecondFilePath}) {
    const bool is_read = file == &FirstFilePath || operation.needs != Needs::kLibrary;
    if (!is_read || file->WhyUnconverted().empty()) continue;
    GlobalWarnings->Report({.kind = WarningKind::kLineBreaks,
                            .file = file->Get(),
                            .key = {},
                            .text = file->WhyUnconverted()});
  }
}

int RunIfChecked(const Operation& operation, bool& stopped) {
  stopped = CheckInputFiles(static_cast<int>(operation.code)) != 1;
  if (stopped) return 0;
  if (!operation.note.empty()) ShowBox(operation.note, NoteTitle);
  return RunWithWarnings([&] {
    ReportUnconverted(operation);
    return operation.run();
  });
}

}  // namespace

void PickFile(PathBuffer& buffer, std::string_view path) {
  try {
    buffer.Set(path);
    ConvertLineEndings(buffer);  // a failed conversion leaves the picked path
  } catch (const std::bad_alloc&) {
    PrintError("Function ConvertLineEndings()_1 => Not enough memory!");
  }
}

WholeRun::WholeRun(Within within)
    : own_files_(GlobalFiles()),
      outer_(GlobalRunFiles),
      files_(outer_ && within == Within::kTogether ? *outer_ : own_files_) {
  GlobalRunFiles = &files_;
}

WholeRun::~WholeRun() { GlobalRunFiles = outer_; }

int WholeRun::Run(const std::function<int()>& body, std::string_view no_memory) {
  std::unique_ptr<char[]> reserve;
  try {
    reserve = std::make_unique<char[]>(kReserve);
    const int result = body();
    const bool arrived = !files_.WriteFailed();
    const std::string error = files_.Publish();
    if (!error.empty()) PrintError(error);
    return arrived && error.empty() ? result : 0;
  } catch (const std::bad_alloc&) {
    reserve.reset();
    files_.Discard();
    PrintError(no_memory);
    return 0;
  }
}

int RunWithWarnings(const std::function<int()>& run) {
  const WarningOutputs& outputs = GlobalWarningOutputs;
  if (outputs.quiet && !outputs.all && !outputs.file && !outputs.key_map && !outputs.losses) {
    return run();
  }
  WarningReport report(outputs, GlobalReporter());
  const WarningsInUse in_use(report);
  const int result = run();
  report.ReportSummary();
  if (outputs.losses) *outputs.losses += report.Losses();
  return result;
}

bool CloseSideFiles(bool succeeded) {
  bool arrived = true;
  for (OutputFile* file : {GlobalWarningOutputs.file, GlobalWarningOutputs.key_map}) {
    if (!file) continue;
    if (!succeeded && file->Written() == 0) {
      GlobalRunFiles->Drop(file->Path());
    } else if (!file->Close()) {
      arrived = false;
    }
  }
  return arrived;
}

int RunOperation(const Operation& operation) {
  bool stopped = false;
  const auto run = [&] {
    const int result = RunIfChecked(operation, stopped);
    return CloseSideFiles(result == 1) ? result : 0;
  };
  const int result = WholeRun().Run(run, operation.no_memory);
  if (result == 1) {
    ShowBox(DoneText, DoneText);
  } else if (!stopped) {
    ReportError(ErrorHintText, operation.error_caption, kReportInBox);
  }
  return result;
}

}  // namespace tarvel
