// SPDX-License-Identifier: MIT
#include "ops/journals/journal_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tarvel {
namespace {

using namespace std::string_literals;

struct MentionCase {
  std::string line;
  bool mentions;
};

TEST(MentionsJournal, LooksForTheWordInAnyCaseBlanksAndTabsAside) {
  const MentionCase cases[] = {
      {"journal", true},
      {"  JoUrNaL = {x},\n", true},
      {"title = {The Journals of x}", true},
      {"xjournaly", true},
      {"j o\tu  r n\t\ta l", true},
      {"jjjournal", true},
      {"jou journal", true},
      {"Jour JOURNAL", true},
      {"to jour nalley", true},
      {"Jjour nal", true},
      {"", false},
      {"j", false},
      {"journa", false},
      {"jour.nal", false},
      {"jour\nnal", false},
      {"jour\0nal"s, false},
      {"ournal J", false},
      {"journa journa", false},
      {"j\xef\xbf\xbdournal", false},
  };
  for (const MentionCase& c : cases) EXPECT_EQ(MentionsJournal(c.line), c.mentions) << c.line;
}

TEST(MentionsJournal, IsLinearInLinesOfItsFirstLetters) {
  // When every letter starts a search to the end of the line, these do not end.
  EXPECT_FALSE(MentionsJournal(std::string(2'000'000, 'j')));
  EXPECT_FALSE(MentionsJournal(std::string(2'000'000, 'J')));
  std::string both;
  for (int i = 0; i < 500'000; ++i) both += "jJ ";
  EXPECT_FALSE(MentionsJournal(both));
  EXPECT_TRUE(MentionsJournal("j" + std::string(2'000'000, ' ') + "ournal"));
}

struct BraceCase {
  std::string_view line;
  std::string_view braced;
  std::string_view says;
};

TEST(BraceJournalValue, PutsBracesAroundWhatHasNone) {
  const BraceCase cases[] = {
      {"journal = PRB,\n", "journal = { PRB},\n", "a bare value"},
      {"journal = \"PRB\",\n", "journal = { \"PRB\"},\n", "quotes stay inside"},
      {"journal=PRB, year=2001\n", "journal= {PRB},\n", "what follows the first comma goes"},
      {"journal = PRB\n", "journal = { PRB\n},\n",
       "without a comma the braces close after the end"},
      {"journal = PRB", "journal = { PRB},\n", "be there no line break"},
      {"a = b = c == d,", "a = { b = { c = {= { d},\n", "every \"=\" opens"},
      {"a, b = c\n", "a},\n", "even none"},
      {"The Journal\n", "The Journal\n},\n", "a line without a \"=\" is closed all the same"},
      {",", "},\n", "be it nothing but a comma"},
      {"", "},\n", "or nothing"},
      {"journal = {PRB},\n", "journal = {PRB},\n", "a braced value stays"},
      {"journal = {PRB\n", "journal = {PRB\n", "one that goes on stays"},
      {"journal = PRB}\n", "journal = PRB}\n", "either brace keeps the line"},
      {"journal = PRB, year = {1}\n", "journal = PRB, year = {1}\n", "wherever it stands"},
  };
  for (const BraceCase& c : cases) {
    Line line(c.line);
    BraceJournalValue(line);
    EXPECT_EQ(line.Text(), c.braced) << c.says;
  }
}

}  // namespace
}  // namespace tarvel
