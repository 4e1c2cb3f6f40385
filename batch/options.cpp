// SPDX-License-Identifier: MIT
#include "batch/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <string_view>

#include "app/texts.h"

namespace tarvel {

namespace {

constexpr char kUsage[] =
    "Usage: tarvel-batch [OPTION]... OPERATION FIRST-FILE [SECOND-FILE]\n"
    "       tarvel-batch prepare [--keep-all] [--quiet] [--warnings FILE] LIBRARY\n\n";

constexpr char kDescription[] =
    "Runs one of Tarvel's operations without the dialog. FIRST-FILE and SECOND-FILE are what the\n"
    "dialog's file pickers take: for extract the LaTeX document and the library, for compare two\n"
    "libraries, for journals a library and, if wanted, an own journal list, else one library.";

constexpr std::size_t kNameColumn = 28;  // that of CLI11's option texts, behind two blanks

/// The help text up to the options; CLI11's own would not name the files apart.
class HelpFormatter final : public CLI::Formatter {
  std::string make_description(const CLI::App* /*app*/) const override { return {}; }
  std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
    std::string text = std::string(kUsage) + kDescription + "\n\nOperations:\n";
    for (const Operation& operation : kOperations) {
      std::string name(operation.batch_name);
      name.resize(kNameColumn, ' ');
      text.append("  ").append(name).append(operation.description).append("\n");
    }
    return text;
  }
};

struct FlagWord {
  std::string_view word;
  Flag Settings::*flag;
};

constexpr std::array<FlagWord, 6> kStyleWords{{{"aps", &Settings::StyleAPS},
                                               {"acs", &Settings::StyleACS},
                                               {"iop", &Settings::StyleIOP},
                                               {"nature", &Settings::StyleNature},
                                               {"wiley", &Settings::StyleWiley},
                                               {"springer", &Settings::StyleSpringerCompSci}}};
constexpr std::array<FlagWord, 2> kPagesWords{
    {{"first", &Settings::PagesFirstOnly}, {"range", &Settings::PagesRange}}};
constexpr std::array<FlagWord, 2> kNamesWords{
    {{"full", &Settings::JournalFullNames}, {"abbreviated", &Settings::JournalAbbreviated}}};

struct FlagSwitch {
  const char* option;
  const char* help;
  Flag Settings::*flag;
  Flag value;
};

constexpr std::array<FlagSwitch, 7> kSwitches{{
    {"--title", "print the titles of articles (the default)", &Settings::PrintTitle, 1},
    {"--no-title", "leave the titles of articles out", &Settings::PrintTitle, 0},
    {"--bibitem", "text: print the name of each bibitem", &Settings::PrintBibitem, 1},
    {"--latex", "text: keep LaTeX code", &Settings::UseLaTeXCode, 1},
    {"--keep-empty-entries", "clean-tags: keep entries that hold only an owner and a timestamp",
     &Settings::RemoveEmptyEntries, 0},
    {"--keep-strings", "clean-tags: keep @STRING definitions", &Settings::RemoveJournalStrings, 0},
    {"--append-renamed", "clean-doubles: write entries under new keys at the end, over none",
     &Settings::AppendRenamed, 1},
}};

/// Adds an option that sets one flag of a group by its word.
template <std::size_t N>
void AddGroup(CLI::App& app, Settings& settings, const char* option, const char* help,
              const std::array<FlagWord, N>& words, const FlagGroup<N>& group) {
  std::vector<std::string> names;
  names.reserve(N);
  for (const FlagWord& word : words) names.emplace_back(word.word);
  app.add_option_function<std::string>(
         option,
         [&settings, &words, &group](const std::string& chosen) {
           for (const FlagWord& word : words) {
             if (word.word == chosen) Choose(settings, group, word.flag);
           }
         },
         help)
      ->check(CLI::IsMember(names))
      ->take_last()
      ->trigger_on_parse();
}

void SetTag(Settings& settings, const std::string& tag, Flag value) {
  if (tag == "all") {
    settings.RemoveTag.fill(value);
    return;
  }
  const std::size_t index = TagIndex(tag);
  if (index == kTagCount) throw CLI::ValidationError("unknown tag '" + tag + "'");
  settings.RemoveTag[index] = value;
}

/// Adds an option that sets the flags of the tags it names, at its place on the command line.
void AddTags(CLI::App& app, Settings& settings, const char* option, const char* help, Flag value) {
  app.add_option_function<std::vector<std::string>>(
         option,
         [&settings, value](const std::vector<std::string>& tags) {
           for (const std::string& tag : tags) SetTag(settings, tag, value);
         },
         help)
      ->type_name("TAG[,TAG]")
      ->allow_extra_args(false)
      ->delimiter(',')
      ->trigger_on_parse();
}

void AddFile(CLI::App& app, std::string& path, const char* option, const char* help) {
  app.add_option(option, path, help)
      ->type_name("FILE")
      ->check([](const std::string& name) { return name.empty() ? "no file is named" : ""; })
      ->take_last();
}

std::size_t FilesNeeded(const Operation& operation) {
  const bool two =
      operation.needs == Needs::kTwoLibraries || operation.needs == Needs::kDocumentAndLibrary;
  return two ? 2 : 1;
}

/// Takes the words that are no options; gives the reason when they are not an operation and its
/// files.
std::string TakeWords(std::vector<std::string> words, BatchRequest& request) {
  if (words.empty()) return "no operation is given; --list-operations names them";
  const auto* const found = std::find_if(
      kOperations.begin(), kOperations.end(),
      [&](const Operation& operation) { return operation.batch_name == words.front(); });
  if (found == kOperations.end()) return "unknown operation '" + words.front() + "'";
  words.erase(words.begin());

  const std::size_t needed = FilesNeeded(*found);
  const bool takes_list = found->needs == Needs::kLibraryAndJournalList;
  const std::string name(found->batch_name);
  if (words.size() < needed) return "a file is missing for '" + name + "'";
  if (words.size() > needed + (takes_list ? 1 : 0)) return "one file too many for '" + name + "'";
  if (takes_list && words.size() == 2) request.settings.UseOwnJournalFile = 1;
  if (!request.key_map_file.empty() && found->code != OperationCode::kCleanDoubles) {
    return "'--key-map' is of no use for '" + name + "'";
  }
  request.operation = found;
  request.files = std::move(words);
  return {};
}

std::string ListOperations() {
  std::string list;
  for (const Operation& operation : kOperations) list.append(operation.batch_name).append("\n");
  return list;
}

void WrongUsage(BatchRequest& request, std::string reason) {
  std::replace(reason.begin(), reason.end(), '\n', ' ');
  request.operation = nullptr;
  request.text = std::move(reason);
  request.exit_status = kWrongUsage;
}

}  // namespace

BatchRequest ParseCommandLine(const std::vector<std::string>& arguments) {
  BatchRequest request;
  Settings& settings = request.settings;
  std::vector<std::string> words;
  bool list = false;

  CLI::App app(kDescription, "tarvel-batch");
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_help_flag("--help", "print this text and stop");
  app.set_version_flag("--version", std::string(VersionString), "print the version and stop");
  app.add_flag("--list-operations", list, "print the names of the operations and stop");
  AddGroup(app, settings, "--style", "journal style of extract and text", kStyleWords, kStyleFlags);
  AddGroup(app, settings, "--pages", "what extract and text print of the pages", kPagesWords,
           kPagesFlags);
  AddGroup(app, settings, "--journal-names", "journals: the names to write", kNamesWords,
           kJournalFlags);
  for (const FlagSwitch& row : kSwitches) {
    app.add_flag_callback(
           row.option, [&settings, &row] { settings.*row.flag = row.value; }, row.help)
        ->trigger_on_parse();
  }
  AddTags(app, settings, "--keep", "clean-tags: keep these tags; 'all' for every one", 0);
  AddTags(app, settings, "--remove", "clean-tags: remove these tags; 'all' for every one", 1);
  app.add_flag("--prepare", request.prepare, "prepare the libraries first; work on the copies");
  app.add_flag("--quiet", request.quiet, "print no warnings");
  AddFile(app, request.warnings_file, "--warnings",
          "write the warnings into FILE: kind, file, line, key, text, tabs between");
  AddFile(app, request.key_map_file, "--key-map",
          "clean-doubles: write the dropped and renamed keys into FILE: old key, tab, new key");
  app.add_option("OPERATION FILE", words, "the operation and its files")
      ->expected(0, -1)
      ->group("");  // the usage line shows them

  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    request.text = app.help();
    return request;
  } catch (const CLI::CallForVersion&) {
    request.text = std::string(VersionString) + "\n";
    return request;
  } catch (const CLI::ParseError& error) {
    WrongUsage(request, error.what());
    return request;
  }
  if (list) {
    request.text = ListOperations();
    return request;
  }
  const std::string reason = TakeWords(std::move(words), request);
  if (!reason.empty()) WrongUsage(request, reason);
  return request;
}

}  // namespace tarvel
