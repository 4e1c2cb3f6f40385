// SPDX-License-Identifier: MIT
#include "batch/option_table.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "app/tags.h"
#include "batch/suggestions.h"
#include "core/ascii.h"
#include "ops/citations/cite_commands.h"

namespace tarvel {

namespace {

constexpr Verbs kReferences = VerbsOf(Verb::kExtract, Verb::kText);
constexpr Verbs kOnlyExtract = VerbsOf(Verb::kExtract);
constexpr Verbs kCitations = VerbsOf(Verb::kExtract, Verb::kRekey);
constexpr Verbs kWriting = kEveryOperation | VerbsOf(Verb::kPrepare, Verb::kRekey);
constexpr Verbs kWarning = kEveryOperation | VerbsOf(Verb::kPrepare);
constexpr Verbs kOnlyPrepare = VerbsOf(Verb::kPrepare);
constexpr Verbs kOnlyCheck = VerbsOf(Verb::kCheck);
constexpr Verbs kOnlyText = VerbsOf(Verb::kText);
constexpr Verbs kOnlyJournals = VerbsOf(Verb::kJournals);
constexpr Verbs kOnlyDoubles = VerbsOf(Verb::kCleanDoubles);
constexpr Verbs kOnlyTags = VerbsOf(Verb::kCleanTags);

// ORDER: kStyleFlags
constexpr std::array<std::string_view, 6> kStyleWords{"aps",    "acs",   "iop",
                                                      "nature", "wiley", "springer"};
constexpr std::array<std::string_view, 2> kPagesWords{"first", "range"};
// ORDER: kPagesWords
constexpr FlagGroup<2> kPages{&Settings::PagesFirstOnly, &Settings::PagesRange};
constexpr std::array<std::string_view, 2> kNamesWords{"full", "abbreviated"};
// ORDER: kNamesWords
constexpr FlagGroup<2> kNames{&Settings::JournalFullNames, &Settings::JournalAbbreviated};

/// The name of a command, which may be given with its "\".
std::string_view CommandIn(std::string_view word) {
  return word.starts_with('\\') ? word.substr(1) : word;
}

/// Sets the flag of a group that stands where the value stands among the words.
template <const auto& kWords, const auto& kGroup>
void ChooseWord(BatchRequest& request, std::string_view value) {
  const auto index = std::find(kWords.begin(), kWords.end(), value) - kWords.begin();
  Choose(request.settings, kGroup, kGroup[static_cast<std::size_t>(index)]);
}

template <Flag Settings::*kFlag, Flag kValue>
void SetFlag(BatchRequest& request, std::string_view /*value*/) {
  request.settings.*kFlag = kValue;
}

template <Flag kValue>
void SetTags(BatchRequest& request, std::string_view tags) {
  ForEachMember(tags, [&](std::string_view tag) {
    if (tag == "all") {
      request.settings.RemoveTag.fill(kValue);
    } else {
      request.settings.RemoveTag[TagIndex(tag)] = kValue;
    }
  });
}

void SetCiteCommands(BatchRequest& request, std::string_view names) {
  std::vector<std::string>& commands = request.citations.commands;
  ForEachMember(names, [&](std::string_view name) { commands.emplace_back(CommandIn(name)); });
}

void SetFollow(BatchRequest& request, std::string_view /*value*/) {
  request.citations.follow = true;
}

void SetReportUncited(BatchRequest& request, std::string_view /*value*/) {
  request.citations.report_uncited = true;
}

template <std::vector<std::string> BatchRequest::*kMember>
void AddNames(BatchRequest& request, std::string_view names) {
  ForEachMember(names, [&](std::string_view name) { (request.*kMember).emplace_back(name); });
}

template <bool BatchRequest::*kMember>
void SetSwitch(BatchRequest& request, std::string_view /*value*/) {
  request.*kMember = true;
}

template <std::string BatchRequest::*kMember>
void SetText(BatchRequest& request, std::string_view value) {
  request.*kMember = value;
}

constexpr auto kRows = std::to_array<OptionRow>({
    {.name = "--style",
     .users = kReferences,
     .value = ValueKind::kWord,
     .value_name = "STYLE",
     .words = kStyleWords,
     .help = "aps (default), acs, iop, nature, wiley or springer",
     .apply = ChooseWord<kStyleWords, kStyleFlags>},
    {.name = "--pages",
     .users = kReferences,
     .value = ValueKind::kWord,
     .value_name = "PAGES",
     .words = kPagesWords,
     .help = "pages to print: first (default) or range",
     .apply = ChooseWord<kPagesWords, kPages>},
    {.name = "--title",
     .users = kReferences,
     .help = "print the titles of articles (default)",
     .apply = SetFlag<&Settings::PrintTitle, 1>},
    {.name = "--no-title",
     .users = kReferences,
     .help = "leave out the titles of articles",
     .apply = SetFlag<&Settings::PrintTitle, 0>},
    {.name = "--bibitem",
     .users = kOnlyText,
     .help = "print the key of each entry",
     .apply = SetFlag<&Settings::PrintBibitem, 1>},
    {.name = "--latex",
     .users = kOnlyText,
     .help = "write LaTeX code, not plain text",
     .apply = SetFlag<&Settings::UseLaTeXCode, 1>},
    {.name = "--cite-commands",
     .users = kCitations,
     .value = ValueKind::kCommands,
     .value_name = "LIST",
     .help = "read these citation commands, or all, as LaTeX does",
     .apply = SetCiteCommands},
    {.name = "--follow",
     .users = kOnlyExtract,
     .help = "read the files of \\input, \\include, \\import ... too",
     .apply = SetFollow},
    {.name = "--warn-uncited",
     .users = kOnlyExtract,
     .help = "warn of entries that the document does not cite",
     .apply = SetReportUncited},
    {.name = "--journal-names",
     .users = kOnlyJournals,
     .value = ValueKind::kWord,
     .value_name = "NAMES",
     .words = kNamesWords,
     .help = "the names to write: full (default) or abbreviated",
     .apply = ChooseWord<kNamesWords, kNames>},
    {.name = "--keep",
     .users = kOnlyTags,
     .value = ValueKind::kTags,
     .value_name = "TAG,...",
     .help = "keep these tags",
     .apply = SetTags<0>},
    {.name = "--remove",
     .users = kOnlyTags,
     .value = ValueKind::kTags,
     .value_name = "TAG,...",
     .help = "remove these tags",
     .apply = SetTags<1>},
    {.name = "--keep-empty-entries",
     .users = kOnlyTags,
     .help = "keep entries with only an owner and a timestamp",
     .apply = SetFlag<&Settings::RemoveEmptyEntries, 0>},
    {.name = "--keep-strings",
     .users = kOnlyTags,
     .help = "keep @STRING definitions",
     .apply = SetFlag<&Settings::RemoveJournalStrings, 0>},
    {.name = "--append-renamed",
     .users = kOnlyDoubles,
     .help = "write renamed entries at the end, overwriting none",
     .apply = SetFlag<&Settings::AppendRenamed, 1>},
    {.name = "--prepare",
     .users = kEveryOperation,
     .help = "prepare the libraries first, and work on the copies",
     .apply = SetSwitch<&BatchRequest::prepare>},
    {.name = "--keep-all",
     .users = kOnlyPrepare,
     .help = "keep the tags that operations take for other ones",
     .apply = SetSwitch<&BatchRequest::keep_all>},
    {.name = "--key-map",
     .users = kOnlyDoubles,
     .value = ValueKind::kFile,
     .value_name = "FILE",
     .help = "write the old and the new keys to FILE",
     .apply = SetText<&BatchRequest::key_map_file>},
    {.name = "--output-dir",
     .users = kWriting,
     .value = ValueKind::kDirectory,
     .value_name = "DIR",
     .help = "write the new files to DIR, not beside the old ones",
     .apply = SetText<&BatchRequest::output_directory>},
    {.name = "--warnings",
     .users = kWarning,
     .value = ValueKind::kFile,
     .value_name = "FILE",
     .help = "write all warnings to FILE; '-' prints them as lines",
     .apply = SetText<&BatchRequest::warnings_file>},
    {.name = "--quiet",
     .users = kWriting,
     .help = "print errors only: no warnings, notes or \"Done!\"",
     .apply = SetSwitch<&BatchRequest::quiet>},
    {.name = "--strict",
     .users = kWarning,
     .help = "exit status 3 when something of the input was lost",
     .apply = SetSwitch<&BatchRequest::strict>},
    {.name = "--only",
     .users = kOnlyCheck,
     .value = ValueKind::kKinds,
     .value_name = "KIND,...",
     .help = "look for these kinds of warnings only",
     .apply = AddNames<&BatchRequest::only>},
    {.name = "--ignore",
     .users = kOnlyCheck,
     .value = ValueKind::kKinds,
     .value_name = "KIND,...",
     .help = "do not look for these kinds of warnings",
     .apply = AddNames<&BatchRequest::ignore>},
    {.name = "--list-operations",
     .help = "print the names of the operations and exit",
     .answer = Answer::kNames},
    {.name = "--help",
     .letter = 'h',
     .help = "print this help, or that of an operation, and exit",
     .answer = Answer::kHelp},
    {.name = "--version",
     .letter = 'V',
     .help = "print the version and exit",
     .answer = Answer::kVersion},
});

std::vector<std::string_view> CommandNames() {
  std::vector<std::string_view> names = KnownCiteCommands();
  names.insert(names.begin(), "all");
  return names;
}

/// The kinds that are about a library itself.
std::vector<std::string_view> KindNames() {
  std::vector<std::string_view> names;
  for (const WarningRow& row : kWarningKinds) {
    if (row.about == About::kReading) names.push_back(row.name);
  }
  return names;
}

std::vector<std::string_view> TagNames() {
  std::vector<std::string_view> names{"all"};
  for (const TagRule& rule : kTagRules) names.push_back(rule.name);
  return names;
}

/// What a member of a list is called; empty for a value that is no list.
std::string_view MemberName(ValueKind kind) {
  switch (kind) {
    case ValueKind::kTags:
      return "tag";
    case ValueKind::kKinds:
      return "kind";
    case ValueKind::kCommands:
      return "command";
    default:
      return {};
  }
}

std::string WhyEmpty(const OptionRow& row, std::string_view value) {
  if (value.empty()) return Quoted(row.name) + " needs a value, and the one given is empty";
  bool any_empty = false;
  if (IsList(row.value)) {
    ForEachMember(value, [&](std::string_view member) { any_empty |= member.empty(); });
  }
  if (!any_empty) return {};
  return "the value " + Quoted(value) + " of " + Quoted(row.name) + " has an empty " +
         std::string(MemberName(row.value)) + " name" +
         (value.ends_with(',') ? "; write the list without blanks" : "");
}

/// Why `member` is none of the names that an option takes; empty when it is.
std::string WhyUnknown(const OptionRow& row, std::string_view member) {
  if (row.value == ValueKind::kCommands) {
    const bool is_all = member != "all" && EqualNoCase(member, "all");
    if (is_all) return "unknown command " + Quoted(member) + "; did you mean 'all'?";
    if (IsCommandName(CommandIn(member))) return {};
    return Quoted(member) + " is not the name of a LaTeX command, for " + Quoted(row.name);
  }
  const std::vector<std::string_view> names = ValueNames(row);
  if (names.empty() || std::find(names.begin(), names.end(), member) != names.end()) return {};
  return "unknown " + std::string(IsList(row.value) ? MemberName(row.value) : "value") + " " +
         Quoted(member) + " for " + Quoted(row.name) + Suggestion(member, names);
}

}  // namespace

std::span<const OptionRow> OptionRows() { return kRows; }

const OptionRow* FindOption(std::string_view name) {
  const auto* const found = std::find_if(kRows.begin(), kRows.end(), [&](const OptionRow& row) {
    return row.name == name ||
           (row.letter != 0 && name.size() == 2 && name[0] == '-' && name[1] == row.letter);
  });
  return found == kRows.end() ? nullptr : found;
}

std::vector<std::string_view> ValueNames(const OptionRow& row) {
  if (row.value == ValueKind::kTags) return TagNames();
  if (row.value == ValueKind::kKinds) return KindNames();
  if (row.value == ValueKind::kCommands) return CommandNames();
  return {row.words.begin(), row.words.end()};
}

bool IsList(ValueKind kind) { return !MemberName(kind).empty(); }

std::vector<std::string_view> UsersOf(const OptionRow& row) {
  std::vector<std::string_view> names;
  for (const VerbRow& verb : kVerbRows) {
    if (IsUsedBy(row, verb)) names.push_back(verb.name);
  }
  return names;
}

std::string WhyBadValue(const OptionRow& row, std::string_view value) {
  std::string reason = WhyEmpty(row, value);
  if (!reason.empty()) return reason;
  if (value.size() > 1 && value.front() == '-') {
    return "the value of " + Quoted(row.name) + " is missing: " + Quoted(value) +
           " looks like an option";
  }
  if (!IsList(row.value)) return WhyUnknown(row, value);
  ForEachMember(value, [&](std::string_view member) {
    if (reason.empty()) reason = WhyUnknown(row, member);
  });
  return reason;
}

}  // namespace tarvel
