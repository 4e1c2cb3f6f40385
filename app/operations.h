// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "app/entry_points.h"
#include "app/texts.h"
#include "core/file_names.h"

namespace tarvel {

/// What the buttons hand to the input checks.
enum class OperationCode {
  kCleanAuthors = 9000,
  kCleanCharacters = 9001,
  kCleanDoubles = 9002,
  kCleanTags = 9003,
  kCompare = 9004,
  kExtract = 9005,
  kText = 9006,
  kJournals = 9007,
};

/// The files that an operation works on.
enum class Needs { kLibrary, kTwoLibraries, kDocumentAndLibrary, kLibraryAndJournalList };

/// The file pickers.
enum class Picker { kFirst, kSecond };

/// Neither constant nor defined: a row of `kOperations` without its function does not compile.
int (*RowWithoutFunction())();

/// One operation: everything that the dialog, the checks and the batch program know of it.
struct Operation {
  OperationCode code;
  std::string_view button;       // label of its button
  std::string_view batch_name;   // its word on the command line; of its page in docs/manual, too
  std::string_view description;  // label of its row
  Needs needs;
  bool has_preferences;        // whether its row has a "Preferences" button
  std::string_view help;       // what its "Help" button shows
  std::string_view note = {};  // shown before the run; empty: none
  std::string_view error_caption;
  std::string_view no_memory;  // printed when memory runs out; in the form of its other failures
  int (*run)() = RowWithoutFunction();  // 1 is success, anything else is not
  std::span<const Output> outputs;      // the files that it writes
  Picker named_after;  // whose file they are named after, and beside which they stand
};

inline constexpr std::array kExtractOutputs{Output::kExtractTex, Output::kExtractLibrary,
                                            Output::kExtractKeys};
inline constexpr std::array kCompareOutputs{Output::kCompareLog, Output::kCompareMissing,
                                            Output::kCompareEqual};
inline constexpr std::array kTextOutputs{Output::kText};
inline constexpr std::array kJournalOutputs{Output::kJournalLog, Output::kJournalLibrary};
inline constexpr std::array kDoubleOutputs{Output::kDoubleLog, Output::kDoubleLibrary};
inline constexpr std::array kAuthorOutputs{Output::kAuthorLog, Output::kAuthorLibrary};
inline constexpr std::array kCharacterOutputs{Output::kCharacterLog, Output::kCharacterLibrary};
inline constexpr std::array kTagOutputs{Output::kTagLog, Output::kTagLibrary};

/// All operations, in the order of the dialog's rows.
inline constexpr auto kOperations = std::to_array<Operation>({
    {.code = OperationCode::kExtract,
     .button = "Extract",
     .batch_name = "extract",
     .description = "Extract bibitems",
     .needs = Needs::kDocumentAndLibrary,
     .has_preferences = true,
     .help = ExtractHelp,
     .error_caption = "Error in function 'Extract'!",
     .no_memory = "Function Extract()_12 => Not enough memory!",
     .run = Extract,
     .outputs = kExtractOutputs,
     .named_after = Picker::kSecond},
    {.code = OperationCode::kCompare,
     .button = "Compare",
     .batch_name = "compare",
     .description = "Compare two libraries",
     .needs = Needs::kTwoLibraries,
     .has_preferences = false,
     .help = CompareHelp,
     .note = CompareNote,
     .error_caption = "Error in function 'Compare'!",
     .no_memory = "Function Compare()_8 => Not enough memory!",
     .run = Compare,
     .outputs = kCompareOutputs,
     .named_after = Picker::kFirst},
    {.code = OperationCode::kText,
     .button = "Text",
     .batch_name = "text",
     .description = "Create text file",
     .needs = Needs::kLibrary,
     .has_preferences = true,
     .help = TextHelp,
     .note = TextNote,
     .error_caption = "Error in function 'Text'!",
     .no_memory = "Function CreateText()_7 => Not enough memory!",
     .run = CreateText,
     .outputs = kTextOutputs,
     .named_after = Picker::kFirst},
    {.code = OperationCode::kJournals,
     .button = "Journals",
     .batch_name = "journals",
     .description = "Change journal names",
     .needs = Needs::kLibraryAndJournalList,
     .has_preferences = true,
     .help = JournalsHelp,
     .error_caption = "Error in function 'Journals'!",
     .no_memory = "Function JournalStrings()_9 => Not enough memory!",
     .run = JournalStrings,
     .outputs = kJournalOutputs,
     .named_after = Picker::kFirst},
    {.code = OperationCode::kCleanDoubles,
     .button = "Clean doubles",
     .batch_name = "clean-doubles",
     .description = "Remove double entries",
     .needs = Needs::kLibrary,
     .has_preferences = false,
     .help = DoublesHelp,
     .note = DoublesNote,
     .error_caption = "Error in function 'Clean doubles'!",
     .no_memory = "Function Clean_double()_5 => Not enough memory!",
     .run = Clean_double,
     .outputs = kDoubleOutputs,
     .named_after = Picker::kFirst},
    {.code = OperationCode::kCleanAuthors,
     .button = "Clean authors",
     .batch_name = "clean-authors",
     .description = "Correct author names",
     .needs = Needs::kLibrary,
     .has_preferences = false,
     .help = AuthorsHelp,
     .error_caption = "Error in function 'Clean authors'!",
     .no_memory = "Function Clean_author()_5 => Not enough memory!",
     .run = Clean_author,
     .outputs = kAuthorOutputs,
     .named_after = Picker::kFirst},
    {.code = OperationCode::kCleanCharacters,
     .button = "Clean characters",
     .batch_name = "clean-characters",
     .description = "Find bad characters",
     .needs = Needs::kLibrary,
     .has_preferences = false,
     .help = CharactersHelp,
     .error_caption = "Error in function 'Clean characters'!",
     .no_memory = "Function CleanCharacters()_1 => Not enough memory!",
     .run = CleanCharacters,
     .outputs = kCharacterOutputs,
     .named_after = Picker::kFirst},
    {.code = OperationCode::kCleanTags,
     .button = "Clean tags",
     .batch_name = "clean-tags",
     .description = "Remove tags",
     .needs = Needs::kLibrary,
     .has_preferences = true,
     .help = TagsHelp,
     .error_caption = "Error in function 'Clean tags'!",
     .no_memory = "Function Clean_tags_5 => Not enough memory!",
     .run = Clean_tags,
     .outputs = kTagOutputs,
     .named_after = Picker::kFirst},
});

/// The operation with this code; null when there is none.
const Operation* FindOperation(int code);

}  // namespace tarvel
