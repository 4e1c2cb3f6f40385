// SPDX-License-Identifier: MIT
#include "batch/help.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "app/tags.h"
#include "batch/option_table.h"
#include "batch/options.h"

namespace tarvel {
namespace {

bool Mentions(const std::string& text, std::string_view word) {
  return text.find(word) != std::string::npos;
}

void ExpectNarrow(const std::string& text) {
  std::size_t start = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
    EXPECT_LE(end - start, 80U) << text.substr(start, end - start);
    start = end + 1;
  }
  EXPECT_EQ(start, text.size()) << "the last line is whole";
}

TEST(Help, OfAnOperationFitsATerminalAndNamesItsOptionsOnly) {
  for (const VerbRow& verb : kVerbRows) {
    const std::string text = HelpOf(verb);
    EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 24) << text;
    ExpectNarrow(text);
    EXPECT_TRUE(text.starts_with("Usage: tarvel-batch " + std::string(verb.name) + " ")) << text;
    EXPECT_TRUE(Mentions(text, verb.files));
    EXPECT_TRUE(Mentions(text, verb.summary));
    EXPECT_TRUE(Mentions(text, "Example: tarvel-batch " + std::string(verb.example) + "\n"));
    EXPECT_TRUE(Mentions(text, "Exit status: 0 "));
    for (const OptionRow& row : OptionRows()) {
      const bool used = (row.users & VerbsOf(verb.verb)) != 0 || row.answer == Answer::kHelp;
      EXPECT_EQ(Mentions(text, std::string(row.name) + " "), used) << verb.name << row.name;
      EXPECT_EQ(Mentions(text, row.help), used) << row.name;
    }
  }
}

TEST(Help, ExamplesAreCommandLines) {
  for (const VerbRow& verb : kVerbRows) {
    std::vector<std::string> words;
    std::string word;
    for (const char byte : std::string(verb.example) + " ") {
      if (byte != ' ') {
        word += byte;
        continue;
      }
      words.push_back(word);
      word.clear();
    }
    const BatchRequest request = ParseCommandLine(words);
    EXPECT_EQ(request.verb, &verb) << request.text;
  }
}

TEST(Help, NamesEveryVerbAndOption) {
  const std::string text = GeneralHelp();
  ExpectNarrow(text);
  EXPECT_TRUE(text.starts_with("Usage: tarvel-batch [OPTION]... "));
  for (const VerbRow& verb : kVerbRows) EXPECT_TRUE(Mentions(text, "  " + std::string(verb.name)));
  for (const OptionRow& row : OptionRows()) {
    EXPECT_TRUE(Mentions(text, row.name)) << row.name;
    EXPECT_LE(row.help.size(), 54U) << row.name;
  }
}

TEST(Help, OfCleanTagsListsTheTags) {
  const std::string text = HelpOf(*FindVerb("clean-tags"));
  for (const TagRule& rule : kTagRules) {
    EXPECT_TRUE(Mentions(text, " " + std::string(rule.name) + ",") ||
                Mentions(text, " " + std::string(rule.name) + "\n"))
        << rule.name;
  }
  EXPECT_TRUE(Mentions(text, "Kept by default: author, title, volume, pages, year, journal.\n"));
}

}  // namespace
}  // namespace tarvel
