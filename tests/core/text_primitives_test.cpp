// SPDX-License-Identifier: MIT
#include "core/text_primitives.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/support/plain_primitives.h"

namespace tarvel {
namespace {

std::string RandomText(std::mt19937& random, std::string_view alphabet, unsigned most) {
  std::string text;
  const unsigned size = static_cast<unsigned>(random()) % (most + 1);
  for (unsigned i = 0; i < size; ++i) text += alphabet[random() % alphabet.size()];
  return text;
}

TEST(IsKnownEntry, RecognisesTypeWordsAndUpperCasesThem) {
  struct Case {
    std::string line;
    bool entry;
    std::string after;
    std::string says;
  };
  const Case cases[] = {
      {"@article{Key2001,\n", true, "@ARTICLE{Key2001,\n", "the type word becomes upper-case"},
      {"  }@Book{x,\n", true, "  }@BOOK{x,\n", "the marker need not stand at the line's start"},
      {"@booklet{y,\n", true, "@BOOKLET{y,\n", "@BOOK is a prefix"},
      {"@booksAndMore {y,\n", true, "@BOOKSANDMORE {y,\n", "of any longer word"},
      {"@mastersthesis{z,\n", false, "@MASTERSTHESIS{z,\n", "the usual spelling is not known"},
      {"@masterthesis{z,\n", true, "@MASTERTHESIS{z,\n", "the spelling without S is"},
      {"@string{a = b}\n", false, "@STRING{a = b}\n", "a string is no entry"},
      {"@comment{jabref-meta: x\n", false, "@COMMENT{jabref-meta: x\n", "nor is a comment"},
      {"@electronic{x,\n", true, "@ELECTRONIC{x,\n", "electronic with its brace"},
      {"@electronics{x,\n", false, "@ELECTRONICS{x,\n", "and without it"},
      {"@electronic {x,\n", false, "@ELECTRONIC {x,\n", "a blank counts too"},
      {"note = {5 units @ 3 each}\n", false, "note = {5 units @ 3 each}\n", "no brace after"},
      {"{a@b.c}\n", false, "{a@b.c}\n", "an address without a brace after it"},
      {"@article{a@b,\n", false, "@ARTICLE{a@b,\n", "an @ without a brace ends the test at once"},
      {"@", false, "@", "nothing after the @"},
      {"@article", false, "@article", "no brace on the line"},
      {"@{article}", false, "@{article}", "an @ before a brace changes nothing"},
      {"@{@misc{a,", true, "@{@MISC{a,", "and the walk goes on after it"},
      {"x@y @book z{q", true, "x@Y @BOOK Z{q", "everything up to the brace is upper-cased"},
      {"@misc{a, mail = {u@v w{x", true, "@MISC{a, mail = {u@V W{x", "a later @ as well"},
      {"@MISC", false, "@MISC", "a marker without a brace is not reached"},
      {"@m\xc3\xa4isc{a", false, "@M\xc3\xa4ISC{a", "bytes above 127 stay"},
      {"", false, "", "an empty line"},
      {"@phdthesis{", true, "@PHDTHESIS{", ""},
      {"@incollection{", true, "@INCOLLECTION{", ""},
      {"@inproceedings{", true, "@INPROCEEDINGS{", ""},
      {"@other{", true, "@OTHER{", ""},
      {"@proceedings{", true, "@PROCEEDINGS{", ""},
      {"@inbook{", true, "@INBOOK{", ""},
      {"@conference{", true, "@CONFERENCE{", ""},
      {"@manual{", true, "@MANUAL{", ""},
      {"@techreport{", true, "@TECHREPORT{", ""},
      {"@unpublished{", true, "@UNPUBLISHED{", ""},
      {"@standard{", true, "@STANDARD{", ""},
      {"@periodical{", true, "@PERIODICAL{", ""},
      {"@patent{", true, "@PATENT{", ""},
      {"@meetingabstract{", true, "@MEETINGABSTRACT{", ""},
      {"@proceedingspaper{", true, "@PROCEEDINGSPAPER{", ""},
      {"@letter{", true, "@LETTER{", ""},
      {"@review{", true, "@REVIEW{", ""},
      {"@editorialmaterial{", true, "@EDITORIALMATERIAL{", ""},
      {"@thesis{", false, "@THESIS{", "no such type"},
      {"@online{", false, "@ONLINE{", "no such type"},
      {"@preamble{", false, "@PREAMBLE{", "no such type"},
  };
  for (const Case& c : cases) {
    std::string line = c.line;
    EXPECT_EQ(IsKnownEntry(line), c.entry) << c.line << ": " << c.says;
    EXPECT_EQ(line, c.after) << c.says;
    Line buffer(c.line);
    EXPECT_EQ(IsKnownEntry(buffer), c.entry) << c.line << ": " << c.says;
    EXPECT_EQ(buffer.Text(), c.after) << c.says;
  }
}

TEST(IsKnownEntry, AgreesWithItsPlainTwin) {
  std::mt19937 random(1);
  const std::string words[] = {"@",    "{",          "}", ",", "\n", "misc",
                               "Book", "ELECTRONIC", "s", " ", "a",  "\xe4"};
  for (int run = 0; run < 100000; ++run) {
    std::string line;
    for (auto i = random() % 9; i > 0; --i) line += words[random() % std::size(words)];
    std::string plain = line;
    const std::string before = line;
    ASSERT_EQ(IsKnownEntry(line), testing::PlainIsKnownEntry(plain)) << before;
    ASSERT_EQ(line, plain) << before;
  }
}

TEST(CountEntries, CountsLinesOfAtMost999Bytes) {
  LineStream three("@book{a,\n@misc{b, @misc{c,\n\n@string{x}\n@article{d,");
  EXPECT_EQ(CountEntries(three), 3);
  EXPECT_FALSE(three.ReadLine(10).has_value()) << "the stream is left at its end";
  const std::string split = std::string(995, 'x') + "@book{a,\n";
  LineStream in_pieces(split);
  EXPECT_EQ(CountEntries(in_pieces), 0) << "the limit cuts the type word";
  const std::string twice = std::string(991, 'x') + "@book{a,@book{b,\n";
  LineStream two_pieces(twice);
  EXPECT_EQ(CountEntries(two_pieces), 2) << "each piece is a line of its own";
}

TEST(ContainsNoCase, IgnoresAsciiCaseOnly) {
  EXPECT_TRUE(ContainsNoCase("A BookTitle = {x}", "title"));
  EXPECT_TRUE(ContainsNoCase("title", "TITLE"));
  EXPECT_FALSE(ContainsNoCase("titl e", "title"));
  EXPECT_FALSE(ContainsNoCase("", "title"));
  EXPECT_TRUE(ContainsNoCase("abc", ""));
  EXPECT_TRUE(ContainsNoCase("", ""));
  EXPECT_FALSE(ContainsNoCase("\xe4", "\xc4")) << "no letter above 127 has a case";
  EXPECT_TRUE(ContainsNoCase(std::string("a\0Title", 7), "title")) << "a zero is a byte";
  EXPECT_TRUE(ContainsNoCase(std::string(600000, 'x') + "Year", "year")) << "no length is too much";
}

TEST(StringToUpper, UpperCasesEveryByte) {
  std::string text = "aZ1{\xe4}z";
  StringToUpper(text);
  EXPECT_EQ(text, "AZ1{\xe4}Z");
}

TEST(InCapitals, LeavesItsArgument) {
  const std::string text = "aZ1{\xe4}z";
  EXPECT_EQ(InCapitals(text), "AZ1{\xe4}Z");
  EXPECT_EQ(text, "aZ1{\xe4}z");
}

TEST(CountByte, CountsMoreThanOneByteCanHold) {
  for (const std::size_t size : {0, 1, 254, 255, 256, 257, 511, 600}) {
    EXPECT_EQ(CountByte(std::string(size, 'a'), 'a'), size);
    EXPECT_EQ(CountByte(std::string(size, 'a') + "b" + std::string(size, 'a'), 'b'), 1U);
  }
  EXPECT_EQ(CountByte("\xe4x\xe4", '\xe4'), 2U);
}

TEST(StripBraces, RemovesTheOuterRunsOnly) {
  const std::pair<std::string, std::string> cases[] = {
      {"{{Title}}", "Title"},
      {"{{{x}}}", "x"},
      {"}}}", "}"},
      {"{}", "}"},
      {"{{{", ""},
      {"", ""},
      {"a{b}c", "a{b}c"},
      {"{a} and {b}", "a} and {b"},
      {"x}}", "x"},
      {"}", "}"},
      {"{a}b", "a}b"},
      {"{ {a} }", " {a} "},
  };
  for (const auto& [before, after] : cases) {
    std::string value = before;
    StripBraces(value);
    EXPECT_EQ(value, after) << before;
  }
  std::string longer = "{" + std::string(5000, 'x') + "}";
  StripBraces(longer);
  EXPECT_EQ(longer, std::string(5000, 'x'));
}

TEST(CopyUntilChar, CopiesBetweenTwoCharacters) {
  EXPECT_EQ(CopyUntilChar("@BOOK{key,\n", '{', ','), "key");
  EXPECT_EQ(CopyUntilChar("@BOOK{key,\n", '@', '{'), "BOOK");
  EXPECT_EQ(CopyUntilChar("@BOOK{ k ,\n", '{', ','), " k ") << "blanks are part of a key";
  EXPECT_EQ(CopyUntilChar("@BOOK{key\n", '{', ','), "key") << "the line break stops too";
  EXPECT_EQ(CopyUntilChar("@BOOK{key", '{', ','), "key") << "and the end";
  EXPECT_EQ(CopyUntilChar("@BOOK key,\n", '{', ','), "") << "no start character";
  EXPECT_EQ(CopyUntilChar("a\n{b,", '{', ','), "") << "none before the line break";
  EXPECT_EQ(CopyUntilChar("author = {x}\n", '='), "author ");
  EXPECT_EQ(CopyUntilChar("author\n", '='), "author");
  EXPECT_EQ(CopyUntilChar("", '='), "");
}

TEST(ReplaceBetween, ReplacesWhatStandsBetween) {
  struct Case {
    std::string line, insertion;
    char start, stop;
    std::string after;
  };
  const Case cases[] = {
      {"\\cite{a} and \\cite{b}", "done", '\\', '{', "\\done{a} and \\cite{b}"},
      {"@BOOK{key,\n", "key_a", '{', ',', "@BOOK{key_a,\n"},
      {"@BOOK{key\n", "key_a", '{', ',', "@BOOK{key_a\n"},
      {"@BOOK{key", "key_a", '{', ',', "@BOOK{key_a"},
      {"@BOOK{,\n", "_a", '{', ',', "@BOOK{_a,\n"},
      {"no start\n", "x", '{', ',', "no start\n"},
  };
  for (const Case& c : cases) {
    std::string line = c.line;
    ReplaceBetween(line, c.insertion, c.start, c.stop);
    EXPECT_EQ(line, c.after) << c.line;
  }
}

TEST(SplitAtComma, MovesTheHeadOut) {
  std::string text = "a, b,c";
  EXPECT_EQ(SplitAtComma(text), "a");
  EXPECT_EQ(text, " b,c") << "blanks are not trimmed";
  EXPECT_EQ(SplitAtComma(text), " b");
  EXPECT_EQ(text, "c");
  EXPECT_EQ(SplitAtComma(text), "c");
  EXPECT_EQ(text, "");
}

TEST(ReplaceString, ScansWithoutBackingUp) {
  struct Case {
    std::string line, pattern, replacement;
    bool occurs;
    std::string after;
    std::string says;
  };
  const Case cases[] = {
      {"aab", "ab", "x", true, "aab", "a match that begins in a partial match is missed"},
      {"abab", "ab", "x", true, "xab", "the byte after a replacement starts no match"},
      {"ab ab", "ab", "x", true, "x x", "a byte in between is enough"},
      {"ababab", "ab", "x", true, "xabx", "every second one of a run"},
      {"\\'e\\'e", "\\'e", "E", true, "E\\'e", "two accents side by side"},
      {"{{{", "{", "", true, "{", "an empty replacement passes a byte over too"},
      {"abc", "d", "x", false, "abc", "no occurrence"},
      {"abc", "", "x", false, "abc", "an empty pattern"},
      {"a", "a", "aa", true, "aa", "the replacement is not looked at again"},
      {"\\n\\n", "\\n", "\n", true, "\n\\n", "adjacent line break marks need two passes"},
      {"", "a", "b", false, "", "an empty line"},
      {"ab", "ab", "", true, "", "all of the line"},
  };
  for (const Case& c : cases) {
    std::string line = c.line;
    EXPECT_EQ(ReplaceString(line, c.pattern, c.replacement), c.occurs) << c.says;
    EXPECT_EQ(line, c.after) << c.says;
  }
}

TEST(ReplaceString, AgreesWithItsPlainTwin) {
  std::mt19937 random(2);
  for (int run = 0; run < 200000; ++run) {
    std::string line = RandomText(random, "ab", 14);
    const std::string pattern = RandomText(random, "ab", 4);
    const std::string replacement = RandomText(random, "abc\xe4", 3);
    std::string plain = line;
    const std::string before = line;
    ASSERT_EQ(ReplaceString(line, pattern, replacement),
              testing::PlainReplaceString(plain, pattern, replacement))
        << before << " " << pattern;
    ASSERT_EQ(line, plain) << before << " " << pattern << " " << replacement;
  }
}

TEST(CollapseDoubledChar, LooksAtTheFirstOccurrenceOnly) {
  struct Case {
    std::string text;
    bool collapsed;
    std::string after;
  };
  const Case cases[] = {{"12--15", true, "12-15"},
                        {"12-15", false, "12-15"},
                        {"1-2--3", false, "1-2--3"},
                        {"1---2", true, "1--2"},
                        {"12--15--18", true, "12-15--18"},
                        {"", false, ""},
                        {"1-", false, "1-"},
                        {"--", true, "-"}};
  for (const Case& c : cases) {
    std::string text = c.text;
    EXPECT_EQ(CollapseDoubledChar(text, '-'), c.collapsed) << c.text;
    EXPECT_EQ(text, c.after) << c.text;
  }
}

TEST(SmallPrimitives, AgreeWithTheirPlainTwins) {
  std::mt19937 random(4);
  int contained = 0;
  int replaced = 0;
  int stripped = 0;
  for (int run = 0; run < 200000; ++run) {
    const std::string text = RandomText(random, "aAbZz@[`{{}},\n-\xe4\xc4", 12);
    const std::string pattern = RandomText(random, "aAbBzZ@`{", 3);
    const char start = "{@a\n,"[random() % 5];
    const char stop = ",}{\nA"[random() % 5];
    ASSERT_EQ(ContainsNoCase(text, pattern), testing::PlainContainsNoCase(text, pattern))
        << text << " " << pattern;
    contained += !pattern.empty() && ContainsNoCase(text, pattern) ? 1 : 0;
    ASSERT_EQ(CopyUntilChar(text, stop), testing::PlainCopyUntilChar(text, stop)) << text << stop;
    ASSERT_EQ(CopyUntilChar(text, start, stop), testing::PlainCopyUntilChar(text, start, stop))
        << text << start << stop;
    std::string fast = text;
    std::string plain = text;
    ReplaceBetween(fast, pattern, start, stop);
    testing::PlainReplaceBetween(plain, pattern, start, stop);
    ASSERT_EQ(fast, plain) << text << start << stop;
    replaced += fast != text ? 1 : 0;
    fast = plain = text;
    StripBraces(fast);
    testing::PlainStripBraces(plain);
    ASSERT_EQ(fast, plain) << text;
    stripped += fast != text ? 1 : 0;
    fast = plain = text;
    ASSERT_EQ(CollapseDoubledChar(fast, stop), testing::PlainCollapseDoubledChar(plain, stop))
        << text << stop;
    ASSERT_EQ(fast, plain) << text << stop;
    StringToUpper(fast);
    ASSERT_EQ(fast, testing::PlainUpper(plain));
  }
  EXPECT_GT(contained, 10000);
  EXPECT_GT(replaced, 10000);
  EXPECT_GT(stripped, 10000);
}

}  // namespace
}  // namespace tarvel
