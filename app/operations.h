// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace tarvel {

class PathBuffer;

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

/// The preference dialogs.
enum class Preferences { kNone, kExtract, kText, kJournals, kCleanTags };

/// One operation: everything that the dialog, the checks and the batch program know of it.
struct Operation {
  OperationCode code;
  std::string_view button;       // label of its button
  std::string_view batch_name;   // its word on the command line
  std::string_view description;  // label of its row
  Needs needs;
  Preferences preferences;
  const std::string& help;
  const std::string* note;  // shown before the run; null for none
  std::string_view error_caption;
  int (*run)();  // 1 is success, anything else is not
};

/// All operations, in the order of the dialog's rows.
std::span<const Operation> Operations();

/// The operation with this code; null when there is none.
const Operation* FindOperation(int code);

/// Takes `path` as the picked file of `buffer` and converts its line breaks if need be; the buffer
/// then holds the path to use. A path of more than 1000 bytes ends the process.
void PickFile(PathBuffer& buffer, std::string_view path);

/// What a button does: checks the picked files, shows the note, runs the operation and tells how it
/// ended. Gives 1 on success; 0 when the checks stopped it; else what the operation gave.
int RunOperation(const Operation& operation);

}  // namespace tarvel
