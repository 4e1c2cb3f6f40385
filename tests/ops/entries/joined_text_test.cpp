// SPDX-License-Identifier: MIT
#include "ops/entries/joined_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>

#include "core/line_stream.h"
#include "core/value_reader.h"
#include "tests/support/hostile_library.h"

namespace tarvel {
namespace {

/// Reads the file in lines of at most `limit - 1` bytes and holds the value after the first brace
/// of each line that goes on to a line feed against the one that reading gives. Gives the number of
/// values that were looked up.
int ExpectValuesAsRead(const std::string& file, std::size_t limit) {
  const JoinedText joined(file);
  LineStream lines(file);
  LineStream stream(file);
  int looked_up = 0;
  for (std::size_t start = 0;; start = lines.Position()) {
    const auto text = lines.ReadLine(limit);
    if (!text) break;
    const std::size_t brace = text->find('{');
    if (brace == std::string_view::npos || text->back() != '\n') continue;
    std::string value;
    stream.SetPosition(start);
    Line line(*stream.ReadLine(limit));
    ReadFieldValue(line, stream, value);
    if (stream.Position() == start + text->size() && !stream.AtEnd()) continue;  // ends on its line

    const JoinedText::FoundValue found = joined.ValueAfter(start + brace);
    ++looked_up;
    EXPECT_EQ(found.text, value) << "after byte " << start + brace;
    lines.SetPosition(found.line);
    (void)lines.ReadLine(found.limit);
    EXPECT_EQ(lines.Position(), stream.Position()) << "after byte " << start + brace;
    EXPECT_EQ(lines.AtEnd(), stream.AtEnd()) << "after byte " << start + brace;
    lines.SetPosition(start + text->size());
  }
  if (::testing::Test::HasFailure()) ADD_FAILURE() << file;
  return looked_up;
}

TEST(JoinedText, EndsAValueAtItsBrace) {
  EXPECT_EQ(ExpectValuesAsRead("a {1\n 2\n3} 4\n", limits::kPairLine), 1);
  EXPECT_EQ(ExpectValuesAsRead("a {1 {\nb {2\n}c\n} d } e\n", limits::kPairLine), 2);
  EXPECT_EQ(ExpectValuesAsRead("x } }\na {1\n}\n", limits::kPairLine), 1);
}

TEST(JoinedText, EndsAValueThatNeverClosesWithTheFile) {
  for (const char* end : {"", "\n", "\n\n", "\n \n", "\n  ", "\n\t\n\xff\n"}) {
    EXPECT_GE(ExpectValuesAsRead(std::string("a {1\nb {2\n c {3\n4") + end, limits::kPairLine), 2);
  }
  EXPECT_EQ(ExpectValuesAsRead("a {\n", limits::kPairLine), 1);
  EXPECT_EQ(ExpectValuesAsRead("a {\n\n b", limits::kPairLine), 1);
}

TEST(JoinedText, EndsAValueWithALineOverTheLimit) {
  for (const std::size_t size : {998U, 999U, 1000U, 24998U, 24999U, 25000U, 60000U}) {
    for (const char* before :
         {"a {1\n", "a {1\n\n", "a {1\n \n\xe4\n", "a {1\nx\n", "a {1\n\nx\n"}) {
      for (const char* after : {"", "\n", "}\n", "\nc {2\nd\n}\n", "{2\nd\n}\n"}) {
        ExpectValuesAsRead(before + std::string(size, 'x') + after, limits::kPairLine);
        ExpectValuesAsRead(before + std::string(size, ' ') + after, limits::kPairLine);
        ExpectValuesAsRead(before + std::string(size - 1, ' ') + "}" + after, limits::kPairLine);
      }
    }
  }
}

/// A file of little but what counts here: braces, blanks, line breaks, now and then a long line.
std::string MadeFile(std::mt19937_64& random) {
  constexpr std::array<std::string_view, 14> kPieces{"{", "{", "}",  "}",    "\n", "\n",   "\n",
                                                     " ", "a", "bc", "\n\n", "\t", "\xe4", "{\n"};
  std::string file;
  const std::size_t pieces = random() % 60;
  for (std::size_t i = 0; i < pieces; ++i) {
    if (random() % 40 == 0) {
      constexpr std::array<std::size_t, 6> kSizes{997, 998, 999, 4990, 24995, 25000};
      file.append(kSizes[random() % kSizes.size()], random() % 3 == 0 ? ' ' : 'y');
    }
    file += kPieces[random() % kPieces.size()];
  }
  return file;
}

TEST(JoinedText, GivesTheValuesThatReadingGives) {
  std::mt19937_64 random(20);
  const int runs = testing::RandomRuns(20000);
  int looked_up = 0;
  for (int run = 0; run < runs && !HasFailure(); ++run) {
    looked_up += ExpectValuesAsRead(MadeFile(random), limits::kPairLine);
  }
  EXPECT_GT(looked_up, runs);
}

TEST(JoinedText, GivesTheValuesOfHostileLibraries) {
  testing::HostileLibraries libraries(21);
  const int runs = testing::RandomRuns(1000);
  for (int run = 0; run < runs && !HasFailure(); ++run) {
    ExpectValuesAsRead(libraries.Next(), limits::kPairLine);
  }
}

}  // namespace
}  // namespace tarvel
