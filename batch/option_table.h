// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "batch/request.h"
#include "batch/verbs.h"
#include "warnings/warnings.h"

namespace tarvel {

/// What the value of an option is.
enum class ValueKind : std::uint8_t {
  kNone,       // a flag
  kWord,       // one of the row's words
  kTags,       // names of tags, commas between; "all" for every one
  kKinds,      // kinds of warnings, commas between
  kCommands,   // names of citation commands, commas between; "all" for those that are known
  kFile,       // a file to write
  kDirectory,  // one that exists
};

/// An answer that needs no verb.
enum class Answer : std::uint8_t { kNone, kHelp, kVersion, kNames };

/// One option: what the parser, the help, the completions and the checks know of it.
struct OptionRow {
  std::string_view name;  // with its dashes
  char letter = 0;        // of its short form; 0: none
  Verbs users = 0;        // 0: it needs no verb
  ValueKind value = ValueKind::kNone;
  std::string_view value_name = {};              // in the help
  std::span<const std::string_view> words = {};  // of kWord
  std::string_view help;                         // at most 54 bytes
  /// Sets what the option asks for. The value has passed `WhyBadValue`.
  void (*apply)(BatchRequest& request, std::string_view value) = nullptr;
  Answer answer = Answer::kNone;
};

/// All options, in the order of the help.
std::span<const OptionRow> OptionRows();

/// The option with this name ("--keep", or "-h" for a short form); null when there is none.
const OptionRow* FindOption(std::string_view name);

/// The names that may stand in the value of an option: its words, the tags; none for a file.
std::vector<std::string_view> ValueNames(const OptionRow& row);

/// Whether a value of this kind is a list with commas.
bool IsList(ValueKind kind);

constexpr bool IsUsedBy(const OptionRow& row, const VerbRow& verb) {
  return (row.users & VerbsOf(verb.verb)) != 0;
}
/// The names of the verbs that use an option.
std::vector<std::string_view> UsersOf(const OptionRow& row);

/// Why an option cannot take this value; empty when it can.
std::string WhyBadValue(const OptionRow& row, std::string_view value);

/// Calls `take` with each member of a list with commas.
template <typename Take>
void ForEachMember(std::string_view list, const Take& take) {
  for (;;) {
    const std::size_t comma = list.find(',');
    take(list.substr(0, comma));
    if (comma == std::string_view::npos) return;
    list.remove_prefix(comma + 1);
  }
}

}  // namespace tarvel
