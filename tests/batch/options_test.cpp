// SPDX-License-Identifier: MIT
#include "batch/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvel {
namespace {

using Arguments = std::vector<std::string>;

Settings SettingsOf(Arguments options) {
  options.insert(options.end(), {"clean-tags", "a.bib"});
  const BatchRequest request = ParseCommandLine(options);
  EXPECT_TRUE(request.operation) << request.text;
  return request.settings;
}

TEST(CommandLine, NamesAnOperationAndItsFiles) {
  struct Case {
    Arguments words;
    std::string_view button;
    Arguments files;
  };
  const Case cases[] = {
      {{"extract", "a.tex", "b.bib"}, "Extract", {"a.tex", "b.bib"}},
      {{"compare", "a.bib", "b.bib"}, "Compare", {"a.bib", "b.bib"}},
      {{"text", "a.bib"}, "Text", {"a.bib"}},
      {{"journals", "a.bib"}, "Journals", {"a.bib"}},
      {{"journals", "a.bib", "own.tvl"}, "Journals", {"a.bib", "own.tvl"}},
      {{"clean-doubles", "a.bib"}, "Clean doubles", {"a.bib"}},
      {{"clean-authors", "a.bib"}, "Clean authors", {"a.bib"}},
      {{"clean-characters", "a.bib"}, "Clean characters", {"a.bib"}},
      {{"clean-tags", "a b\n.bib"}, "Clean tags", {"a b\n.bib"}},
      {{"clean-tags", "--", "--keep"}, "Clean tags", {"--keep"}},
      {{"clean-tags", "a.bib", "--keep", "doi"}, "Clean tags", {"a.bib"}},
      {{"--keep", "doi", "clean-tags", "a.bib"}, "Clean tags", {"a.bib"}},
  };
  for (const Case& c : cases) {
    const BatchRequest request = ParseCommandLine(c.words);
    ASSERT_TRUE(request.operation) << request.text;
    EXPECT_EQ(request.operation->button, c.button);
    EXPECT_EQ(request.files, c.files);
  }
  EXPECT_EQ(ParseCommandLine({"journals", "a.bib"}).settings.UseOwnJournalFile, 0);
  EXPECT_EQ(ParseCommandLine({"journals", "a.bib", "o"}).settings.UseOwnJournalFile, 1);
}

TEST(CommandLine, RefusesAWrongUsageInOneLine) {
  const Arguments cases[] = {
      {},
      {"frobnicate", "a.bib"},
      {"Clean tags", "a.bib"},
      {"clean-tags"},
      {"clean-tags", "a.bib", "b.bib"},
      {"extract", "a.tex"},
      {"extract", "a", "b", "c"},
      {"compare", "a.bib"},
      {"journals"},
      {"journals", "a", "b", "c"},
      {"--keep", "isbn", "clean-tags", "a.bib"},
      {"--remove", "Author", "clean-tags", "a.bib"},
      {"--style", "mla", "text", "a.bib"},
      {"--pages", "all", "text", "a.bib"},
      {"--journal-names", "short", "journals", "a.bib"},
      {"--unknown", "clean-tags", "a.bib"},
      {"clean-tags", "a.bib", "--keep"},
      {"clean\ntags", "a.bib"},
  };
  for (const Arguments& words : cases) {
    const BatchRequest request = ParseCommandLine(words);
    EXPECT_FALSE(request.operation);
    EXPECT_EQ(request.exit_status, 2) << request.text;
    EXPECT_FALSE(request.text.empty());
    EXPECT_EQ(request.text.find('\n'), std::string::npos) << request.text;
  }
}

TEST(CommandLine, SetsTheFlags) {
  EXPECT_EQ(SettingsOf({}).StyleAPS, 1);
  EXPECT_EQ(SettingsOf({"--style", "nature"}).StyleNature, 1);
  EXPECT_EQ(SettingsOf({"--style", "nature"}).StyleAPS, 0);
  EXPECT_EQ(SettingsOf({"--style=acs"}).StyleACS, 1);
  EXPECT_EQ(SettingsOf({"--style", "iop"}).StyleIOP, 1);
  EXPECT_EQ(SettingsOf({"--style", "wiley"}).StyleWiley, 1);
  EXPECT_EQ(SettingsOf({"--style", "springer"}).StyleSpringerCompSci, 1);
  EXPECT_EQ(SettingsOf({"--style", "acs", "--style", "aps"}).StyleAPS, 1);
  EXPECT_EQ(SettingsOf({"--style", "acs", "--style", "aps"}).StyleACS, 0);
  EXPECT_EQ(SettingsOf({"--pages", "range"}).PagesRange, 1);
  EXPECT_EQ(SettingsOf({"--pages", "first"}).PagesFirstOnly, 1);
  EXPECT_EQ(SettingsOf({"--pages", "first"}).PagesRange, 0);
  EXPECT_EQ(SettingsOf({"--no-title"}).PrintTitle, 0);
  EXPECT_EQ(SettingsOf({"--no-title", "--title"}).PrintTitle, 1);
  EXPECT_EQ(SettingsOf({"--title", "--no-title"}).PrintTitle, 0);
  EXPECT_EQ(SettingsOf({"--bibitem"}).PrintBibitem, 1);
  EXPECT_EQ(SettingsOf({"--latex"}).UseLaTeXCode, 1);
  EXPECT_EQ(SettingsOf({"--journal-names", "abbreviated"}).JournalAbbreviated, 1);
  EXPECT_EQ(SettingsOf({"--journal-names", "abbreviated"}).JournalFullNames, 0);
  EXPECT_EQ(SettingsOf({"--journal-names", "full"}).JournalFullNames, 1);
  EXPECT_EQ(SettingsOf({"--keep-empty-entries"}).RemoveEmptyEntries, 0);
  EXPECT_EQ(SettingsOf({"--keep-strings"}).RemoveJournalStrings, 0);
}

TEST(CommandLine, KeepsAndRemovesTagsInItsOrder) {
  const auto removed = [](const Settings& settings, std::string_view tag) {
    return settings.RemoveTag[TagIndex(tag)];
  };
  const Settings some = SettingsOf({"--keep", "doi,url", "--remove", "pages"});
  EXPECT_EQ(removed(some, "doi"), 0);
  EXPECT_EQ(removed(some, "url"), 0);
  EXPECT_EQ(removed(some, "pages"), 1);
  EXPECT_EQ(removed(some, "author"), 0);
  EXPECT_EQ(removed(some, "note"), 1);
  const Settings one = SettingsOf({"--remove", "all", "--keep", "author"});
  EXPECT_EQ(removed(one, "author"), 0);
  EXPECT_EQ(removed(one, "title"), 1);
  EXPECT_EQ(removed(SettingsOf({"--keep", "author", "--remove", "all"}), "author"), 1);
  for (const TagRule& rule : kTagRules) {
    EXPECT_EQ(removed(SettingsOf({"--keep", "all"}), rule.name), 0);
    EXPECT_EQ(removed(SettingsOf({"--remove", std::string(rule.name)}), rule.name), 1);
  }
}

TEST(CommandLine, AnswersWithoutAnOperation) {
  const BatchRequest version = ParseCommandLine({"--version"});
  EXPECT_EQ(version.text, "Tarvel v3.81\n");
  EXPECT_EQ(version.exit_status, 0);
  const BatchRequest list = ParseCommandLine({"--list-operations"});
  EXPECT_EQ(list.text,
            "extract\ncompare\ntext\njournals\nclean-doubles\nclean-authors\nclean-characters\n"
            "clean-tags\n");
  EXPECT_EQ(list.exit_status, 0);
  const BatchRequest help = ParseCommandLine({"--help"});
  EXPECT_EQ(help.exit_status, 0);
  EXPECT_EQ(help.text.find("Usage: tarvel-batch"), 0U);
  EXPECT_NE(help.text.find("  clean-tags                  Remove tags\n"), std::string::npos);
  for (const auto* word :
       {"tarvel-batch [OPTION]... OPERATION FIRST-FILE [SECOND-FILE]", "--style", "--pages",
        "--title", "--no-title", "--bibitem", "--latex", "--journal-names", "--keep", "--remove",
        "--keep-empty-entries", "--keep-strings", "--list-operations", "--version"}) {
    EXPECT_NE(help.text.find(word), std::string::npos) << word;
  }
}

}  // namespace
}  // namespace tarvel
