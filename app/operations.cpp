// SPDX-License-Identifier: MIT
#include "app/operations.h"

#include "app/globals.h"
#include "app/texts.h"
#include "core/reports.h"
#include "gui/input_checks.h"
#include "gui/line_endings.h"
#include "ops/operations.h"

namespace tarvel {

std::span<const Operation> Operations() {
  using enum OperationCode;
  static const std::array<Operation, 8> kOperations{{
      {kExtract, "Extract", "extract", "Extract bibitems", Needs::kDocumentAndLibrary,
       Preferences::kExtract, ExtractHelp, nullptr, "Error in function 'Extract'!", &Extract},
      {kCompare, "Compare", "compare", "Compare two libraries", Needs::kTwoLibraries,
       Preferences::kNone, CompareHelp, &CompareNote, "Error in function 'Compare'!", &Compare},
      {kText, "Text", "text", "Create text file", Needs::kLibrary, Preferences::kText, TextHelp,
       &TextNote, "Error in function 'Text'!", &CreateText},
      {kJournals, "Journals", "journals", "Change journal names", Needs::kLibraryAndJournalList,
       Preferences::kJournals, JournalsHelp, nullptr, "Error in function 'Journals'!",
       &JournalStrings},
      {kCleanDoubles, "Clean doubles", "clean-doubles", "Remove double entries", Needs::kLibrary,
       Preferences::kNone, DoublesHelp, &DoublesNote, "Error in function 'Clean doubles'!",
       &Clean_double},
      {kCleanAuthors, "Clean authors", "clean-authors", "Correct author names", Needs::kLibrary,
       Preferences::kNone, AuthorsHelp, nullptr, "Error in function 'Clean authors'!",
       &Clean_author},
      {kCleanCharacters, "Clean characters", "clean-characters", "Find bad characters",
       Needs::kLibrary, Preferences::kNone, CharactersHelp, nullptr,
       "Error in function 'Clean characters'!", &CleanCharacters},
      {kCleanTags, "Clean tags", "clean-tags", "Remove tags", Needs::kLibrary,
       Preferences::kCleanTags, TagsHelp, nullptr, "Error in function 'Clean tags'!", &Clean_tags},
  }};
  return kOperations;
}

namespace {

/// Runs an operation and passes on what it warns of.
int RunWithWarnings(const Operation& operation) {
  const WarningOutputs& outputs = GlobalWarningOutputs;
  if (outputs.quiet && !outputs.file && !outputs.key_map) return operation.run();
  WarningReport report(outputs);
  GlobalWarnings = &report;
  const int result = operation.run();
  GlobalWarnings = nullptr;
  report.TellCounts();
  return result;
}

}  // namespace

const Operation* FindOperation(int code) {
  for (const Operation& operation : Operations()) {
    if (static_cast<int>(operation.code) == code) return &operation;
  }
  return nullptr;
}

void PickFile(PathBuffer& buffer, std::string_view path) {
  buffer.Set(path);
  ConvertLineEndings(buffer);  // a failed conversion leaves the picked path
}

int RunOperation(const Operation& operation) {
  if (CheckInputFiles(static_cast<int>(operation.code)) != 1) return 0;
  if (operation.note) ShowBox(*operation.note, NoteTitle);
  const int result = RunWithWarnings(operation);
  if (result == 1) {
    ShowBox(DoneText, DoneText);
  } else {
    ReportError(ErrorHintText, operation.error_caption, kReportInBox);
  }
  return result;
}

}  // namespace tarvel
