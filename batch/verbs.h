// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "app/operations.h"
#include "batch/check_command.h"
#include "batch/prepare_command.h"
#include "batch/rekey_command.h"

namespace tarvel {

struct BatchRequest;

/// What a command line can ask for. ORDER: `kVerbRows`; the operations first, as in `kOperations`.
enum class Verb : std::uint8_t {
  kExtract,
  kCompare,
  kText,
  kJournals,
  kCleanDoubles,
  kCleanAuthors,
  kCleanCharacters,
  kCleanTags,
  kPrepare,
  kCheck,
  kRekey,
};

/// A set of verbs, a bit each.
using Verbs = std::uint32_t;

template <typename... Each>
constexpr Verbs VerbsOf(Each... verbs) {
  return (Verbs{0} | ... | (Verbs{1} << static_cast<unsigned>(verbs)));
}

/// `VerbRow::most` where there is no limit.
inline constexpr std::size_t kAnyNumber = std::size_t{1} << 30;

/// What a verb's command line looks like, and what runs it.
struct VerbRow {
  Verb verb;
  std::string_view name;
  std::string_view files;    // in the usage line
  std::size_t fewest, most;  // of these files
  std::string_view summary;  // one sentence
  std::string_view example;  // what follows the program's name
  /// Null for a command, which is no operation.
  const Operation* operation = nullptr;
  /// Runs a command and gives the exit status; null for an operation.
  int (*run)(const BatchRequest& request) = nullptr;
};

constexpr VerbRow RowOfOperation(Verb verb, std::string_view files, std::size_t fewest,
                                 std::size_t most, std::string_view summary,
                                 std::string_view example) {
  const Operation& operation = kOperations[static_cast<std::size_t>(verb)];
  return {.verb = verb,
          .name = operation.batch_name,
          .files = files,
          .fewest = fewest,
          .most = most,
          .summary = summary,
          .example = example,
          .operation = &operation};
}

/// ORDER: `Verb`
inline constexpr auto kVerbRows = std::to_array<VerbRow>({
    RowOfOperation(Verb::kExtract, "DOCUMENT LIBRARY", 2, 2,
                   "Collects what a LaTeX document cites.",
                   "extract --style nature paper.tex lit.bib"),
    RowOfOperation(Verb::kCompare, "LIBRARY LIBRARY", 2, 2,
                   "Finds what the second library has and the first lacks.",
                   "compare lit.bib more.bib"),
    RowOfOperation(Verb::kText, "LIBRARY", 1, 1,
                   "Prints the entries as references in plain text or LaTeX.",
                   "text --style acs --pages range lit.bib"),
    RowOfOperation(Verb::kJournals, "LIBRARY [JOURNAL-LIST]", 1, 2,
                   "Writes full or abbreviated journal names.",
                   "journals --journal-names abbreviated lit.bib"),
    RowOfOperation(Verb::kCleanDoubles, "LIBRARY", 1, 1, "Removes duplicate entries.",
                   "clean-doubles --key-map keys.tsv lit.bib"),
    RowOfOperation(Verb::kCleanAuthors, "LIBRARY", 1, 1,
                   "Brings author lists into the form \"Doe, J. and Roe, K.\".",
                   "clean-authors lit.bib"),
    RowOfOperation(Verb::kCleanCharacters, "LIBRARY", 1, 1,
                   "Finds the characters that are not ASCII and replaces them.",
                   "clean-characters --output-dir /tmp lit.bib"),
    RowOfOperation(Verb::kCleanTags, "LIBRARY", 1, 1,
                   "Removes tags, empty entries and @STRING definitions.",
                   "clean-tags --remove all --keep author,title,year lit.bib"),
    {.verb = Verb::kPrepare,
     .name = "prepare",
     .files = "LIBRARY",
     .fewest = 1,
     .most = 1,
     .summary = "Brings a library into the form that all operations read.",
     .example = "prepare lit.bib",
     .run = RunPrepareCommand},
    {.verb = Verb::kCheck,
     .name = "check",
     .files = "LIBRARY...",
     .fewest = 1,
     .most = kAnyNumber,
     .summary = "Prints what operations would not read; writes nothing.",
     .example = "check --ignore bad-bytes,key-twice lit.bib more.bib",
     .run = RunCheckCommand},
    {.verb = Verb::kRekey,
     .name = "rekey",
     .files = "KEY-MAP DOCUMENT...",
     .fewest = 2,
     .most = kAnyNumber,
     .summary = "Writes new keys, from a file of --key-map, into citations.",
     .example = "rekey keys.tsv paper.tex chapters/*.tex",
     .run = RunRekeyCommand},
});

static_assert([] {
  for (std::size_t i = 0; i < kVerbRows.size(); ++i) {
    if (static_cast<std::size_t>(kVerbRows[i].verb) != i) return false;
  }
  return true;
}());

static_assert(
    [] {
      for (std::size_t i = 0; i < kOperations.size(); ++i) {
        if (i >= kVerbRows.size() || kVerbRows[i].operation != &kOperations[i]) return false;
      }
      return true;
    }(),
    "an operation lacks its value of Verb or its row in kVerbRows");

inline constexpr Verbs kEveryOperation = (Verbs{1} << kOperations.size()) - 1;

/// The verb with this name; null when there is none.
const VerbRow* FindVerb(std::string_view name);

}  // namespace tarvel
