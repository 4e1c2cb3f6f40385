// SPDX-License-Identifier: MIT
#include "batch/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "batch/help.h"
#include "batch/option_table.h"
#include "batch/suggestions.h"
#include "batch/verbs.h"

namespace tarvel {

namespace {

/// An option as it stands on the command line.
struct GivenOption {
  const OptionRow* row;
  std::string value;
};

/// A command line, taken apart.
struct CommandLine {
  std::vector<GivenOption> options;  // in their order
  std::vector<std::string> words;    // that are neither options nor their values
  std::vector<std::string> unknown;  // begin with "-" and are no options
};

/// Why a word like "--name=value" is wrong; empty when it is not. The parser would take a flag's
/// value as well as none, and the next word in the place of an empty value.
std::string WhyBadSpelling(std::string_view word) {
  const std::size_t equals = word.find('=');
  if (!word.starts_with("--") || equals == std::string_view::npos) return {};
  const OptionRow* row = FindOption(word.substr(0, equals));
  if (!row) return {};
  const std::string_view value = word.substr(equals + 1);
  if (row->value == ValueKind::kNone) {
    return Quoted(row->name) + " takes no value, but " + Quoted(value) + " is given";
  }
  return WhyBadValue(*row, value);
}

std::string WhyBadSpelling(const std::vector<std::string>& arguments) {
  for (const std::string& word : arguments) {
    if (word == "--") break;
    if (std::string reason = WhyBadSpelling(word); !reason.empty()) return reason;
  }
  return {};
}

std::string NamesOf(const OptionRow& row) {
  const std::string name(row.name);
  return row.letter == 0 ? name : std::string{'-', row.letter, ','} + name;
}

void AddOption(CLI::App& app, const OptionRow& row, std::vector<GivenOption>& given) {
  if (row.value == ValueKind::kNone) {
    app.add_flag_callback(NamesOf(row), [&] { given.push_back({&row, {}}); })->trigger_on_parse();
    return;
  }
  app.add_option_function<std::string>(NamesOf(row),
                                       [&](const std::string& value) {
                                         given.push_back({&row, value});
                                       })
      ->type_name("value")
      ->take_last()
      ->trigger_on_parse();
}

/// Takes the command line apart; returns why that fails, or nothing.
std::string Split(const std::vector<std::string>& arguments, CommandLine& line) {
  if (std::string reason = WhyBadSpelling(arguments); !reason.empty()) return reason;
  CLI::App app;
  app.set_help_flag();  // the rows hold it
  app.allow_extras();
  for (const OptionRow& row : OptionRows()) AddOption(app, row, line.options);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ArgumentMismatch&) {  // only the last word can lack its value
    return Quoted(arguments.back()) + " needs a value";
  } catch (const CLI::ParseError& error) {
    return error.what();
  }
  bool ended = false;  // by "--"
  for (const std::string& word : app.remaining()) {
    if (!ended && word == "--") {
      ended = true;
      continue;
    }
    const bool is_option = !ended && word.size() > 1 && word.front() == '-';
    (is_option ? line.unknown : line.words).push_back(word);
  }
  return {};
}

std::string WhyUnknownOption(const std::string& word) {
  std::vector<std::string_view> names;
  for (const OptionRow& row : OptionRows()) names.push_back(row.name);
  const std::string name = word.substr(0, word.find('='));
  std::string reason = "unknown option " + Quoted(name) + Suggestion(name, names);
  if (!word.starts_with("--") && std::filesystem::exists(word)) {
    reason += "; a file whose name begins with '-' is written as " + Quoted("./" + word);
  }
  return reason;
}

std::string WhyUnknownVerb(const std::string& word) {
  std::vector<std::string_view> names;
  for (const VerbRow& row : kVerbRows) names.push_back(row.name);
  std::string suggestion = Suggestion(word, names);
  if (suggestion.empty() && word.find('.') != std::string::npos) {
    suggestion = "; the operation comes before the files";
  }
  return "unknown operation " + Quoted(word) + suggestion;
}

std::string WhyOfNoUse(const OptionRow& row, const VerbRow& verb) {
  std::string users;
  for (const std::string_view name : UsersOf(row)) {
    users.append(users.empty() ? "" : ", ").append(name);
  }
  return Quoted(verb.name) + " has no option " + Quoted(row.name) + "; used by: " + users;
}

/// Applies the options; returns why one is refused, or nothing.
std::string ApplyOptions(const std::vector<GivenOption>& options, BatchRequest& request) {
  for (const GivenOption& given : options) {
    const OptionRow& row = *given.row;
    if (!row.apply) continue;
    if (!IsUsedBy(row, *request.verb)) return WhyOfNoUse(row, *request.verb);
    if (row.value != ValueKind::kNone) {
      if (std::string reason = WhyBadValue(row, given.value); !reason.empty()) return reason;
    }
    row.apply(request, given.value);
  }
  return {};
}

std::string TakeFiles(std::vector<std::string> files, BatchRequest& request) {
  const VerbRow& verb = *request.verb;
  const std::string usage = Quoted(verb.name) + " takes " + std::string(verb.files);
  if (files.size() < verb.fewest) return "too few files: " + usage;
  if (files.size() > verb.most) {
    return "one file too many, " + Quoted(files[verb.most]) + ": " + usage;
  }
  for (const std::string& file : files) {
    if (file.empty()) return "the name of a file is empty";
    if (file == "-") return "'-' is not a file: standard input is not read";
  }
  const bool takes_list = verb.operation && verb.operation->needs == Needs::kLibraryAndJournalList;
  if (takes_list && files.size() == 2) request.settings.UseOwnJournalFile = 1;
  request.files = std::move(files);
  return {};
}

/// Takes what the command line asks for; returns why it is refused, or nothing.
std::string TakeRequest(CommandLine line, BatchRequest& request) {
  if (!request.verb) return "no operation is given";
  if (std::string reason = ApplyOptions(line.options, request); !reason.empty()) return reason;
  line.words.erase(line.words.begin());
  if (std::string reason = TakeFiles(std::move(line.words), request); !reason.empty()) {
    return reason;
  }
  request.operation = request.verb->operation;
  return {};
}

std::string AnswerTo(Answer answer, const VerbRow* verb) {
  switch (answer) {
    case Answer::kVersion:
      return VersionText();
    case Answer::kNames:
      return OperationNames();
    default:
      return verb ? HelpOf(*verb) : GeneralHelp();
  }
}

/// What the command line asks for instead of a run.
Answer AnswerFor(const CommandLine& line) {
  const auto asks = [](const GivenOption& given) { return given.row->answer != Answer::kNone; };
  const auto found = std::find_if(line.options.begin(), line.options.end(), asks);
  return found == line.options.end() ? Answer::kNone : found->row->answer;
}

/// "help text" asks for the same as "text --help".
void AskForHelp(CommandLine& line) {
  line.words.erase(line.words.begin());
  line.options.push_back({FindOption("--help"), {}});
}

BatchRequest WrongUsage(std::string_view reason, const VerbRow* verb) {
  BatchRequest request;
  request.text = WithHelpHint(reason, verb);
  request.exit_status = kWrongUsage;
  return request;
}

}  // namespace

BatchRequest ParseCommandLine(const std::vector<std::string>& arguments) {
  CommandLine line;
  BatchRequest request;
  std::string reason = Split(arguments, line);
  if (reason.empty() && !line.unknown.empty() && AnswerFor(line) == Answer::kNone) {
    reason = WhyUnknownOption(line.unknown.front());
  }
  if (!line.words.empty() && line.words.front() == "help") AskForHelp(line);
  if (!line.words.empty()) request.verb = FindVerb(line.words.front());
  if (!reason.empty()) return WrongUsage(reason, request.verb);
  if (!line.words.empty() && !request.verb) {
    return WrongUsage(WhyUnknownVerb(line.words.front()), nullptr);
  }
  if (const Answer answer = AnswerFor(line); answer != Answer::kNone) {
    BatchRequest request_for_text;
    request_for_text.text = AnswerTo(answer, request.verb);
    return request_for_text;
  }
  const VerbRow* verb = request.verb;
  reason = TakeRequest(std::move(line), request);
  return reason.empty() ? request : WrongUsage(reason, verb);
}

}  // namespace tarvel
