// SPDX-License-Identifier: MIT
#include "batch/option_table.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "app/tags.h"
#include "batch/options.h"

namespace tarvel {
namespace {

using Arguments = std::vector<std::string>;

/// The reason for which a command line is refused, without how to get help.
std::string ReasonOf(const Arguments& words) {
  const BatchRequest request = ParseCommandLine(words);
  EXPECT_EQ(request.exit_status, kWrongUsage) << request.text;
  return request.text.substr(0, request.text.rfind(" see '"));
}

// What each option does, one row an option: the words that come before it, its own, and whether the
// request is then as it should be.

struct OptionEffect {
  std::string_view option;
  Arguments before, words;
  std::function<bool(const BatchRequest&)> holds;
};

template <Flag Settings::*kFlag, Flag kValue>
bool Has(const BatchRequest& request) {
  return request.settings.*kFlag == kValue;
}

std::vector<OptionEffect> Effects() {
  const auto removes = [](std::string_view tag, Flag value) {
    return [=](const BatchRequest& r) { return r.settings.RemoveTag[TagIndex(tag)] == value; };
  };
  return {
      {"--style", {}, {"--style", "wiley"}, Has<&Settings::StyleWiley, 1>},
      {"--pages", {}, {"--pages", "range"}, Has<&Settings::PagesRange, 1>},
      {"--title", {"--no-title"}, {"--title"}, Has<&Settings::PrintTitle, 1>},
      {"--no-title", {}, {"--no-title"}, Has<&Settings::PrintTitle, 0>},
      {"--bibitem", {}, {"--bibitem"}, Has<&Settings::PrintBibitem, 1>},
      {"--latex", {}, {"--latex"}, Has<&Settings::UseLaTeXCode, 1>},
      {"--cite-commands",
       {},
       {"--cite-commands", "citep,\\mycite"},
       [](const BatchRequest& r) {
         return r.citations.commands == Arguments{"citep", "mycite"} && r.citations.LikeLaTeX();
       }},
      {"--follow",
       {},
       {"--follow"},
       [](const BatchRequest& r) { return r.citations.follow && r.citations.LikeLaTeX(); }},
      {"--warn-uncited",
       {},
       {"--warn-uncited"},
       [](const BatchRequest& r) { return r.citations.report_uncited; }},
      {"--journal-names",
       {},
       {"--journal-names", "abbreviated"},
       Has<&Settings::JournalAbbreviated, 1>},
      {"--keep", {}, {"--keep", "doi,url"}, removes("url", 0)},
      {"--remove", {}, {"--remove", "doi,title"}, removes("title", 1)},
      {"--keep-empty-entries", {}, {"--keep-empty-entries"}, Has<&Settings::RemoveEmptyEntries, 0>},
      {"--keep-strings", {}, {"--keep-strings"}, Has<&Settings::RemoveJournalStrings, 0>},
      {"--append-renamed", {}, {"--append-renamed"}, Has<&Settings::AppendRenamed, 1>},
      {"--prepare", {}, {"--prepare"}, [](const BatchRequest& r) { return r.prepare; }},
      {"--keep-all", {}, {"--keep-all"}, [](const BatchRequest& r) { return r.keep_all; }},
      {"--key-map",
       {},
       {"--key-map", "k"},
       [](const BatchRequest& r) { return r.key_map_file == "k"; }},
      {"--output-dir",
       {},
       {"--output-dir", "d"},
       [](const BatchRequest& r) { return r.output_directory == "d"; }},
      {"--warnings",
       {},
       {"--warnings", "w"},
       [](const BatchRequest& r) { return r.warnings_file == "w"; }},
      {"--quiet", {}, {"--quiet"}, [](const BatchRequest& r) { return r.quiet; }},
      {"--strict", {}, {"--strict"}, [](const BatchRequest& r) { return r.strict; }},
      {"--only",
       {},
       {"--only", "runs-on", "--only=long-line,bad-bytes"},
       [](const BatchRequest& r) {
         return r.only == Arguments{"runs-on", "long-line", "bad-bytes"};
       }},
      {"--ignore",
       {},
       {"--ignore", "runs-on"},
       [](const BatchRequest& r) { return r.ignore == Arguments{"runs-on"}; }},
  };
}

Arguments CommandOf(const VerbRow& verb, const Arguments& before, const Arguments& words) {
  Arguments command{std::string(verb.name)};
  command.insert(command.end(), verb.fewest, "a.bib");
  command.insert(command.end(), before.begin(), before.end());
  command.insert(command.end(), words.begin(), words.end());
  return command;
}

TEST(OptionTable, HasATestForEachRow) {
  std::vector<std::string_view> rows;
  for (const OptionRow& row : OptionRows()) {
    EXPECT_NE(row.apply != nullptr, row.answer != Answer::kNone) << row.name;
    EXPECT_EQ(row.users != 0, row.apply != nullptr) << row.name;
    EXPECT_EQ(row.value != ValueKind::kNone, !row.value_name.empty()) << row.name;
    if (row.apply) rows.push_back(row.name);
  }
  std::vector<std::string_view> tested;
  for (const OptionEffect& effect : Effects()) tested.push_back(effect.option);
  EXPECT_EQ(tested, rows);
}

TEST(OptionTable, RowsDoWhatTheySayWhereTheyAreOfUse) {
  for (const OptionEffect& effect : Effects()) {
    const OptionRow& row = *FindOption(effect.option);
    for (const VerbRow& verb : kVerbRows) {
      const Arguments command = CommandOf(verb, effect.before, effect.words);
      if ((row.users & VerbsOf(verb.verb)) == 0) {
        EXPECT_NE(ReasonOf(command).find(" has no option "), std::string::npos) << row.name;
        continue;
      }
      const BatchRequest before = ParseCommandLine(CommandOf(verb, effect.before, {}));
      const BatchRequest request = ParseCommandLine(command);
      ASSERT_TRUE(request.verb) << request.text;
      EXPECT_FALSE(effect.holds(before)) << row.name << " does nothing";
      EXPECT_TRUE(effect.holds(request)) << row.name;
    }
  }
}

TEST(OptionTable, FlagsTakeNoValueAndOthersNeedOne) {
  for (const OptionRow& row : OptionRows()) {
    const std::string name(row.name);
    const std::string reason = ReasonOf({name + "=", "text", "a.bib"});
    const bool flag = row.value == ValueKind::kNone;
    EXPECT_NE(reason.find(flag ? "takes no value" : "needs a value"), std::string::npos) << reason;
    if (flag) {
      EXPECT_NE(ReasonOf({name + "=true", "text", "a"}).find("takes no value"), std::string::npos);
    } else {
      EXPECT_EQ(ReasonOf({"text", "a.bib", name}), "'" + name + "' needs a value;");
    }
  }
}

}  // namespace
}  // namespace tarvel
