// SPDX-License-Identifier: MIT
#include "batch/help.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "app/tags.h"
#include "app/texts.h"
#include "batch/option_table.h"
#include "core/ascii.h"

namespace tarvel {

namespace {

constexpr std::size_t kHelpColumn = 26;
constexpr std::size_t kWidth = 80;
/// After the operations.
constexpr Verb kFirstCommand = kVerbRows[kOperations.size()].verb;

/// `left`, and `right` from the help column on.
std::string TwoColumns(std::string left, std::string_view right) {
  left.resize(std::max(left.size() + 1, kHelpColumn), ' ');
  return left.append(right).append("\n");
}

std::string OptionLine(const OptionRow& row) {
  std::string left = "  ";
  if (row.letter != 0) left.append({'-', row.letter, ',', ' '});
  left.append(row.name);
  if (!row.value_name.empty()) left.append(" ").append(row.value_name);
  return TwoColumns(std::move(left), row.help);
}

/// The words with commas between, in lines that begin with `indent` blanks.
std::string Wrapped(const std::vector<std::string_view>& words, std::size_t indent) {
  std::string text;
  std::string line(indent, ' ');
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string word = std::string(words[i]) + (i + 1 < words.size() ? ", " : "\n");
    if (line.size() + TrimEnd(word, IsBlank).size() > kWidth) {
      text.append(TrimEnd(line, IsBlank)).append("\n");
      line.assign(indent, ' ');
    }
    line.append(word);
  }
  return text + line;
}

/// The first option of the verb whose value is of this kind; null when there is none.
const OptionRow* OptionWith(ValueKind kind, const VerbRow& verb) {
  for (const OptionRow& row : OptionRows()) {
    if (row.value == kind && IsUsedBy(row, verb)) return &row;
  }
  return nullptr;
}

std::string KeptTags() {
  std::string kept;
  for (const TagRule& rule : kTagRules) {
    if (rule.removed_at_start == 0) kept.append(kept.empty() ? "" : ", ").append(rule.name);
  }
  return kept;
}

/// The end of a help text: what the exit statuses mean.
std::string ExitStatus(const VerbRow* verb) {
  if (verb && verb->verb == Verb::kCheck) {
    return "Exit status: 0 nothing found, 1 something found, 2 a file could not be read.\n";
  }
  const std::string status = "Exit status: 0 success, 1 failure, 2 wrong command line";
  if (verb && verb->verb == Verb::kRekey) return status + " or unreadable file.\n";
  return status + ", 3 losses (--strict).\n";
}

}  // namespace

std::string GeneralHelp() {
  std::string text =
      "Usage: tarvel-batch [OPTION]... OPERATION FILE...\n"
      "Runs an operation on BibTeX libraries. The files are only read: the results "
      "are\nnew files beside the library.\n\nOperations:\n";
  for (const VerbRow& verb : kVerbRows) {
    if (verb.verb == kFirstCommand) text += "\nCommands:\n";
    text += TwoColumns(std::string("  ").append(verb.name), verb.files);
    text.append("      ").append(verb.summary).append("\n");
  }
  text += "\nOptions, and what uses them:\n";
  for (const OptionRow& row : OptionRows()) {
    text += OptionLine(row);
    if (row.users != 0 && (row.users & kEveryOperation) != kEveryOperation) {
      text += Wrapped(UsersOf(row), kHelpColumn + 2);
    }
  }
  text +=
      "\nOptions may stand anywhere. '--' ends them: what follows is a file, even if it\n"
      "begins with '-'. 'tarvel-batch OPERATION --help' prints its options.\n";
  return text + ExitStatus(nullptr);
}

std::string HelpOf(const VerbRow& verb) {
  std::string text("Usage: tarvel-batch ");
  text.append(verb.name).append(" [OPTION]... ").append(verb.files).append("\n");
  text.append(verb.summary).append("\n\n");
  for (const OptionRow& row : OptionRows()) {
    if (IsUsedBy(row, verb) || row.answer == Answer::kHelp) text += OptionLine(row);
  }
  if (const OptionRow* row = OptionWith(ValueKind::kTags, verb)) {
    text +=
        "TAG is one of\n" + Wrapped(ValueNames(*row), 2) + "Kept by default: " + KeptTags() + ".\n";
  }
  if (const OptionRow* row = OptionWith(ValueKind::kKinds, verb)) {
    text += "KIND is one of\n" + Wrapped(ValueNames(*row), 2);
  }
  text.append("\nExample: tarvel-batch ").append(verb.example).append("\n");
  return text + ExitStatus(&verb);
}

std::string VersionText() {
  constexpr std::string_view kNumber = VersionString.substr(VersionString.rfind('v') + 1);
  return std::string("tarvel-batch (Tarvel) ").append(kNumber).append("\n");
}

std::string OperationNames() {
  std::string names;
  for (const Operation& operation : kOperations) names.append(operation.batch_name).append("\n");
  return names;
}

std::string WithHelpHint(std::string_view reason, const VerbRow* verb) {
  std::string text = EscapeControls(reason);
  if (text.back() != '?') text += ';';
  text += " see 'tarvel-batch ";
  if (verb) text.append(verb->name).append(" ");
  return text.append("--help'");
}

}  // namespace tarvel
