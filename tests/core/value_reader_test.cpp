// SPDX-License-Identifier: MIT
#include "core/value_reader.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/support/plain_primitives.h"

namespace tarvel {
namespace {

struct Case {
  std::string line;
  std::string rest;  // what the stream still holds
  bool whole;
  std::string value;
  std::string line_after;
  std::string says;
};

TEST(ReadFieldValue, ReadsTheTextInTheOuterBraces) {
  const Case cases[] = {
      {"a = {A {B} D},\n", "", true, "A {B} D", "a = {A {B} D},\n", "inner braces are kept"},
      {"a = {A\n", "  B\n\t C},\n", true, "A B C", "a = {A  B\t C},\n", "one blank at each join"},
      {"author = Doe, J.\n", "x", false, "", "author = Doe, J.\n", "a bare value is not read"},
      {"year = \"2001\",\n", "x", false, "", "year = \"2001\",\n", "nor is a quoted one"},
      {"a = {},\n", "", true, "", "a = {},\n", "an empty value"},
      {"a = {x", "y}", true, "x", "a = {x", "a line without a line feed ends the value"},
      {"a = {", "  b}\n", true, "b", "a = {  b}\n", "the value begins on the next line"},
      {"a = {", " \n\t\n b}\n", true, "b", "a = { b}\n", "blank lines before it are passed over"},
      {"a = {", "", false, "", "a = {", "the file ends before the value begins"},
      {"a = {", " \n", false, "", "a = { \n", "only blanks are left"},
      {"a = {\n", "b}\n", true, " b", "a = {b}\n", "a line feed after the brace is a blank"},
      {"a = {b\n", "\n \n\nc}\n", true, "b c", "a = {bc}\n", "blank lines are passed over"},
      {"a = {b\n", "", false, "b", "a = {b\n", "the file ends inside the value"},
      {"a = {b\n", "c\n", false, "b c", "a = {bc\n", "and a line later"},
      {"a = {b\n", "\n\n", false, "b", "a = {b\n", "only blank lines are left"},
      {"a = {b\n", "\xc3\xa4 c}\n", true, "b c", "a = {b\xc3\xa4 c}\n",
       "leading bytes above 127 count as blank"},
      {"a = {b\n", std::string("\0 c}\n", 5), true, std::string("b \0 c", 5),
       std::string("a = {b\0 c}\n", 11), "a zero does not"},
      {"a = {b}} {c}\n", "", true, "b", "a = {b}} {c}\n", "the matching brace ends it"},
      {"a = }{b}\n", "", true, "b", "a = }{b}\n", "it begins at the first opening brace"},
      {"a = {b\n", "c", true, "b c", "a = {bc", "a last line without a line feed ends it"},
      {"a = {\xc3\xa4\r\n", "b}\n", true, "\xc3\xa4\r b", "a = {\xc3\xa4\rb}\n",
       "a CR before the line feed stays"},
  };
  for (const Case& c : cases) {
    Line line(c.line);
    LineStream stream(c.rest);
    std::string value = "old";
    EXPECT_EQ(ReadFieldValue(line, stream, value), c.whole) << c.says;
    EXPECT_EQ(value, c.value) << c.says;
    EXPECT_EQ(line.Text(), c.line_after) << c.says;
  }
}

TEST(ReadFieldValue, ContinuesInReadsOf24999Bytes) {
  // A continuation line that is longer comes in pieces, and a piece has no line feed: the value
  // ends with it.
  const std::string longer(30000, 'x');
  LineStream stream(longer + "}\n");
  Line line("a = {b\n");
  std::string value;
  EXPECT_TRUE(ReadFieldValue(line, stream, value));
  EXPECT_EQ(value, "b " + longer.substr(0, 24999));
  EXPECT_EQ(stream.Position(), 24999U);

  LineStream fits(std::string(24998, 'x') + "\ny}\n");
  Line second("a = {b\n");
  EXPECT_TRUE(ReadFieldValue(second, fits, value));
  EXPECT_EQ(value, "b " + std::string(24998, 'x') + " y");
}

TEST(ReadFieldValue, ReplacesABlankLineInReadsOf999Bytes) {
  LineStream stream("\n" + std::string(2000, 'x') + "}\n");
  Line line("a = {b\n");
  std::string value;
  EXPECT_TRUE(ReadFieldValue(line, stream, value));
  EXPECT_EQ(value, "b " + std::string(999, 'x'));

  LineStream first(std::string(2000, 'y') + "}\n");
  Line open("a = {");
  EXPECT_TRUE(ReadFieldValue(open, first, value));
  EXPECT_EQ(value, std::string(999, 'y')) << "as is the line on which the value begins";
}

TEST(ReadFieldValue, AgreesWithItsPlainTwin) {
  std::mt19937 random(3);
  const std::string_view alphabet =
      "@{}{},\nab \t\n\xe4"
      "aaaaaaaaaaaa";
  for (int run = 0; run < 200000; ++run) {
    std::string text;
    for (auto i = random() % 80; i > 0; --i) text += alphabet[random() % alphabet.size()];
    LineStream stream(text);
    testing::PlainFile plain_file{text};
    const auto first = stream.ReadLine(1000);
    if (!first) continue;
    std::string plain_line;
    plain_file.Gets(plain_line, 1000);
    Line line(*first);
    std::string value, plain_value;
    ASSERT_EQ(ReadFieldValue(line, stream, value),
              testing::PlainReadFieldValue(plain_line, plain_file, plain_value))
        << text;
    ASSERT_EQ(value, plain_value) << text;
    ASSERT_EQ(line.Text(), plain_line) << text;
    ASSERT_EQ(stream.Position(), plain_file.at) << text;
  }
}

TEST(ReadFieldValue, SeesABraceOrALineFeedAtEveryOffsetOfALongStretch) {
  // Bytes that differ from a brace or a line feed in one bit, or by one, must not end anything.
  const std::string stretch =
      "z|~\x0b\x09\xfb\xfd\x8a"
      "aaaaaaaaaaaaaaaa";
  for (std::size_t at = 0; at <= stretch.size(); ++at) {
    const std::string_view before = std::string_view(stretch).substr(0, at);
    const std::string_view after = std::string_view(stretch).substr(at);
    const auto join = [](std::initializer_list<std::string_view> parts) {
      std::string joined;
      for (const std::string_view part : parts) joined.append(part);
      return joined;
    };
    const std::string whole = join({"a = {", before, "{x}", after, "}\n"});
    LineStream stream("");
    Line line(whole);
    std::string value;
    EXPECT_TRUE(ReadFieldValue(line, stream, value));
    EXPECT_EQ(value, join({before, "{x}", after})) << at;

    const std::string broken = join({"a = {", before, "\n"});
    LineStream second(join({"b", after, "}\n"}));
    line.Set(broken);
    EXPECT_TRUE(ReadFieldValue(line, second, value));
    EXPECT_EQ(value, join({before, " b", after})) << at;
  }
}

TEST(FindValueStop, StopsAtTheClosingBraceALineFeedOrTheEnd) {
  struct Stop {
    std::string_view text;
    int depth;
    std::size_t stop;
    int depth_there;
  };
  const Stop cases[] = {
      {"ab}c", 1, 2, 0},     {"a{b}c}d", 1, 5, 0}, {"a}b}c", 2, 3, 0},
      {"a{b\nc}}", 1, 3, 2}, {"a{b}c", 1, 5, 1},   {"", 1, 0, 1},
      {"\n", 3, 0, 3},       {"}", 1, 0, 0},       {"{{{}}}}}", 1, 6, 0},
  };
  for (const Stop& c : cases) {
    int depth = c.depth;
    EXPECT_EQ(FindValueStop(c.text, 0, depth), c.stop) << c.text;
    EXPECT_EQ(depth, c.depth_there) << c.text;
  }
  int depth = 1;
  EXPECT_EQ(FindValueStop("}}x}", 2, depth), 3U) << "what stands before is not looked at";
}

TEST(SkipContinuationBlanks, PassesOverControlsAndBytesAbove127ButNoZero) {
  EXPECT_EQ(SkipContinuationBlanks(" \t\r\n\x01\x1f\x80\xff"
                                   "x ",
                                   0),
            8U);
  EXPECT_EQ(SkipContinuationBlanks(std::string_view("\0 ", 2), 0), 0U);
  EXPECT_EQ(SkipContinuationBlanks("\x7f", 0), 0U);
  EXPECT_EQ(SkipContinuationBlanks("  x", 1), 2U);
  EXPECT_EQ(SkipContinuationBlanks("x  ", 1), 3U);
  EXPECT_EQ(SkipContinuationBlanks("", 0), 0U);
}

TEST(TextAfterValue, IsWhatFollowsTheClosingBrace) {
  struct After {
    std::string_view line, text, says;
  };
  const After cases[] = {
      {"a = {b},\n", "", "blanks and commas at the ends are left out"},
      {"a = {b}, year = 2001,\r\n", "year = 2001", ""},
      {"a = {b {c}} d", "d", "inner braces belong to the value"},
      {"a = {b}}\n", "}", "the brace that ends the entry counts"},
      {"a = {b {c}\n", "", "the value does not close"},
      {"a = b, c\n", "", "there is no value"},
      {"}a = {b} c {d}", "c {d}", "it begins at the first opening brace"},
  };
  for (const After& c : cases) EXPECT_EQ(TextAfterValue(c.line), c.text) << c.line << c.says;
}

}  // namespace
}  // namespace tarvel
