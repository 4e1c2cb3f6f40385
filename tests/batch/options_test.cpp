// SPDX-License-Identifier: MIT
#include "batch/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/tags.h"
#include "batch/help.h"
#include "warnings/warnings.h"

namespace tarvel {
namespace {

using Arguments = std::vector<std::string>;

/// The settings after these options of the first verb that takes them all.
Settings SettingsOf(const Arguments& options) {
  for (const VerbRow& verb : kVerbRows) {
    Arguments words = options;
    words.emplace_back(verb.name);
    words.insert(words.end(), verb.fewest, "a.bib");
    const BatchRequest request = ParseCommandLine(words);
    if (request.verb) return request.settings;
  }
  ADD_FAILURE() << "no verb takes " << options.front();
  return {};
}

std::string ReasonOf(const Arguments& words) {
  const BatchRequest request = ParseCommandLine(words);
  EXPECT_EQ(request.exit_status, kWrongUsage) << request.text;
  EXPECT_FALSE(request.verb);
  EXPECT_FALSE(request.operation);
  EXPECT_EQ(request.text, EscapeControls(request.text));
  EXPECT_NE(request.text.find(" see 'tarvel-batch "), std::string::npos) << request.text;
  EXPECT_TRUE(request.text.ends_with("--help'")) << request.text;
  return request.text.substr(0, request.text.rfind(" see '"));
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

TEST(CommandLine, SaysWhatIsWrong) {
  const struct {
    Arguments words;
    std::string_view reason;
  } cases[] = {
      {{}, "no operation is given;"},
      {{"clean-tag", "a.bib"}, "unknown operation 'clean-tag'; did you mean 'clean-tags'?"},
      {{"Text", "a.bib"}, "unknown operation 'Text'; did you mean 'text'?"},
      {{"ext", "a", "b"}, "unknown operation 'ext'; did you mean 'extract'?"},
      {{"frobnicate"}, "unknown operation 'frobnicate';"},
      {{"clean\x1b[31m", "a"}, "unknown operation 'clean\\x1b[31m';"},
      {{"--kep", "doi", "clean-tags", "a"}, "unknown option '--kep'; did you mean '--keep'?"},
      {{"--bogus=1", "text", "a"}, "unknown option '--bogus';"},
      {{"text", "-lit.bib"}, "unknown option '-lit.bib';"},
      {{"clean", "a.bib"},
       "unknown operation 'clean'; one of: clean-doubles, clean-authors, clean-characters, "
       "clean-tags;"},
      {{"lit.bib", "text"}, "unknown operation 'lit.bib'; the operation comes before the files;"},
      {{"--pages", "all", "text", "a"}, "unknown value 'all' for '--pages'; one of: first, range;"},
      {{"--cite-commands", "All", "extract", "a", "b"},
       "unknown command 'All'; did you mean 'all'?"},
      {{"--keep", "isbn", "clean-tags", "a"}, "unknown tag 'isbn' for '--keep';"},
      {{"--keep", "auhtor", "clean-tags", "a"},
       "unknown tag 'auhtor' for '--keep'; did you mean 'author'?"},
      {{"--keep", "\n", "clean-tags", "a"}, "unknown tag '\\n' for '--keep';"},
      {{"--style", "natur", "text", "a"},
       "unknown value 'natur' for '--style'; did you mean 'nature'?"},
      {{"--title=false", "text", "a"}, "'--title' takes no value, but 'false' is given;"},
      {{"--title=", "text", "a"}, "'--title' takes no value, but '' is given;"},
      {{"--warnings=", "clean-tags", "a"},
       "'--warnings' needs a value, and the one given is empty;"},
      {{"--warnings", "", "clean-tags", "a"},
       "'--warnings' needs a value, and the one given is empty;"},
      {{"clean-tags", "a", "--keep"}, "'--keep' needs a value;"},
      {{"--cite-commands", "a b", "extract", "a", "b"},
       "'a b' is not the name of a LaTeX command, for '--cite-commands';"},
      {{"--cite-commands", "citep,,", "extract", "a", "b"},
       "the value 'citep,,' of '--cite-commands' has an empty command name; write the list without "
       "blanks;"},
      {{"--keep", ",", "clean-tags", "a"},
       "the value ',' of '--keep' has an empty tag name; write the list without blanks;"},
      {{"--keep=note,,title", "clean-tags", "a"},
       "the value 'note,,title' of '--keep' has an empty tag name;"},
      {{"--keep", "--quiet", "clean-tags", "a"},
       "the value of '--keep' is missing: '--quiet' looks like an option;"},
      {{"--warnings", "-q", "text", "a"},
       "the value of '--warnings' is missing: '-q' looks like an option;"},
      {{"--keep", "doi", "text", "a"}, "'text' has no option '--keep'; used by: clean-tags;"},
      {{"compare", "a", "b", "--style", "nature"},
       "'compare' has no option '--style'; used by: extract, text;"},
      {{"extract", "a"}, "too few files: 'extract' takes DOCUMENT LIBRARY;"},
      {{"text"}, "too few files: 'text' takes LIBRARY;"},
      {{"text", "a", "b"}, "one file too many, 'b': 'text' takes LIBRARY;"},
      {{"text", ""}, "the name of a file is empty;"},
      {{"text", "-"}, "'-' is not a file: standard input is not read;"},
  };
  for (const auto& c : cases) EXPECT_EQ(ReasonOf(c.words), c.reason);
  EXPECT_TRUE(ParseCommandLine({"text"}).text.ends_with(" see 'tarvel-batch text --help'"));
  EXPECT_TRUE(ParseCommandLine({}).text.ends_with(" see 'tarvel-batch --help'"));
  EXPECT_TRUE(ParseCommandLine({"text", "--x"}).text.ends_with(" see 'tarvel-batch text --help'"));
}

TEST(CommandLine, TakesNamesOfFilesAsTheyAre) {
  const Arguments names{"[a,b]", "{c}", "\"d\"", "e f", "g=h"};
  Arguments words{"check"};
  words.insert(words.end(), names.begin(), names.end());
  EXPECT_EQ(ParseCommandLine(words).files, names);
  EXPECT_EQ(ParseCommandLine({"check", "--", "--", "-x", "--help"}).files,
            (Arguments{"--", "-x", "--help"}));
}

TEST(CommandLine, AnswersWithoutAnOperation) {
  const std::string all = GeneralHelp();
  const struct {
    Arguments words;
    std::string text;
  } cases[] = {
      {{"--version"}, "tarvel-batch (Tarvel) 3.81\n"},
      {{"-V"}, "tarvel-batch (Tarvel) 3.81\n"},
      {{"--list-operations"},
       "extract\ncompare\ntext\njournals\nclean-doubles\nclean-authors\nclean-characters\n"
       "clean-tags\n"},
      {{"--help"}, all},
      {{"-h"}, all},
      {{"--help", "--bogus"}, all},
      {{"help"}, all},
      {{"text", "-h"}, HelpOf(*FindVerb("text"))},
      {{"help", "text"}, HelpOf(*FindVerb("text"))},
      {{"--help", "text", "a", "b", "--keep", "doi"}, HelpOf(*FindVerb("text"))},
  };
  for (const auto& c : cases) {
    const BatchRequest request = ParseCommandLine(c.words);
    EXPECT_EQ(request.text, c.text);
    EXPECT_EQ(request.exit_status, 0);
    EXPECT_FALSE(request.verb);
  }
  EXPECT_EQ(ReasonOf({"extrct", "--help"}), "unknown operation 'extrct'; did you mean 'extract'?");
}

}  // namespace
}  // namespace tarvel
