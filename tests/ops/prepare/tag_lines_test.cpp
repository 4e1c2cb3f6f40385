// SPDX-License-Identifier: MIT
#include "ops/prepare/tag_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "core/line_stream.h"
#include "core/value_reader.h"

namespace tarvel {
namespace {

std::string Lines(const std::string& name, const std::string& value) {
  std::string library;
  TagNames names;
  AppendTag(library, names.Get(name), value);
  EXPECT_TRUE(library.ends_with(",\n"));
  return library.substr(0, library.size() - 2);
}

/// What an operation reads of the lines.
std::string ReadBack(const std::string& lines) {
  LineStream stream(lines);
  Line line;
  std::string value;
  EXPECT_TRUE(ReadLine(stream, limits::kShortLine, line));
  EXPECT_TRUE(ReadFieldValue(line, stream, value));
  return value;
}

std::size_t LongestLine(const std::string& lines) {
  std::istringstream stream(lines);
  std::size_t longest = 0;
  for (std::string line; std::getline(stream, line);) longest = std::max(longest, line.size() + 1);
  return longest;
}

std::string Repeat(const std::string& text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i) repeated += text;
  return repeated;
}

TEST(TagLines, AShortValueStandsOnOneLine) {
  EXPECT_EQ(Lines("title", "A title"), "  title = {A title}");
  EXPECT_EQ(Lines("title", ""), "  title = {}");
  const std::string fits(999 - std::string("  title = {},\n").size(), 'x');
  EXPECT_EQ(FitOf("title", fits), LineFit::kOneLine);
  EXPECT_EQ(FitOf("title", fits + "x"), LineFit::kTooLong);
}

TEST(TagLines, ALongValueIsBrokenAndReadsTheSame) {
  const std::string words = Repeat("word and ", 500) + "end";
  EXPECT_EQ(FitOf("author", words), LineFit::kManyLines);
  EXPECT_EQ(ReadBack(Lines("author", words)), words);
  EXPECT_LT(LongestLine(Lines("author", words)), 1000U);
  EXPECT_NE(Lines("author", words).find("\n    word"), std::string::npos);
}

TEST(TagLines, ItIsBrokenOnlyWhereNothingIsLost) {
  const std::string high = Repeat("\xc3\xa4 \xc3\xb6 a ", 300) + "b";
  EXPECT_EQ(ReadBack(Lines("title", high)), high) << "a line's first bytes from 128 on would go";
  const std::string all_high = Repeat("\xc3\xa4 ", 600) + "b";
  EXPECT_EQ(FitOf("title", all_high), LineFit::kTooLong);
  const std::string authors = Repeat("a u t h o r = x ", 200);
  std::istringstream stream(Lines("note", authors));
  std::string line;
  std::getline(stream, line);
  while (std::getline(stream, line)) EXPECT_NE(line.substr(4, 5), "a u t") << line;
}

TEST(TagLines, BracesAreKeptTogether) {
  const std::string outside = Repeat("{a b} c ", 300);
  EXPECT_EQ(FitOf("note", outside), LineFit::kManyLines);
  std::istringstream stream(Lines("note", outside + "d"));
  for (std::string line; std::getline(stream, line);) {
    const auto opens = std::count(line.begin(), line.end(), '{');
    const auto closes = std::count(line.begin(), line.end(), '}');
    EXPECT_LE(opens - closes, line.starts_with("  note") ? 1 : 0) << line;
  }
  EXPECT_EQ(FitOf("note", "{" + Repeat("a b ", 600) + "}"), LineFit::kTangledLines);
}

TEST(TagLines, ATagThatCleanCharactersLeavesOutStaysOnOneLine) {
  const std::string paths = Repeat("/home/papers/a.pdf ", 100);
  EXPECT_EQ(FitOf("file", paths), LineFit::kOneLine);
  EXPECT_EQ(Lines("file", paths), "  file = {" + paths + "}");
  EXPECT_EQ(FitOf("file", Repeat(paths, 3)), LineFit::kTooLong) << "longer than Compare reads";
  EXPECT_EQ(FitOf("url", std::string(1500, 'x')), LineFit::kOneLine);
}

TEST(TagLines, APreambleIsBrokenLikeAValue) {
  std::string library;
  AppendPreamble(library, "\\newcommand{\\x}{y}");
  EXPECT_EQ(library, "@PREAMBLE{{\\newcommand{\\x}{y}}}\n");
  library.clear();
  AppendPreamble(library, Repeat("\\def\\a{b} ", 300));
  EXPECT_LT(LongestLine(library), 1000U);
}

TEST(TagLines, ItIsBrokenBeforeAWordThatOnlyBeginsLikeATag) {
  for (const std::string_view end : {" author", " au thor", " a", " ", " author=x"}) {
    for (std::size_t size = 960; size < 1000; ++size) {
      const std::string value = std::string(size, 'x').append(end);
      if (FitOf("note", value) == LineFit::kTooLong) continue;
      EXPECT_EQ(ReadBack(Lines("note", value)), value) << size << end;
    }
  }
  EXPECT_EQ(FitOf("note", std::string(985, 'x') + " author"), LineFit::kManyLines);
  EXPECT_EQ(FitOf("note", std::string(985, 'x') + " author=x"), LineFit::kTooLong);
}

}  // namespace
}  // namespace tarvel
