// SPDX-License-Identifier: MIT
#include "ops/prepare/text_facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include "core/text_primitives.h"

namespace tarvel {
namespace {

using namespace std::string_view_literals;

bool Holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// The facts, one question after the other.
TextFacts PlainFacts(std::string_view text) {
  TextFacts facts;
  for (std::size_t word = 0; word < kWords.size(); ++word) {
    if (ContainsNoCase(text, kWords[word])) facts.words |= WordBit(word);
  }
  facts.is_plain =
      !Holds(text, "\t") && !Holds(text, "\r") && !Holds(text, "\n") && !Holds(text, "  ");
  facts.has_brace = Holds(text, "{");
  facts.has_at = Holds(text, "@");
  facts.has_equals = Holds(text, "=");
  for (const std::string_view begin : {"jo", "j ", "j\t", "j\r", "j\n"}) {
    if (ContainsNoCase(text, begin)) facts.may_journal = true;
  }
  return facts;
}

void ExpectSame(const TextFacts& facts, const TextFacts& plain, std::string_view text) {
  EXPECT_EQ(facts.words, plain.words) << text;
  EXPECT_EQ(facts.is_plain, plain.is_plain) << text;
  EXPECT_EQ(facts.has_brace, plain.has_brace) << text;
  EXPECT_EQ(facts.has_at, plain.has_at) << text;
  EXPECT_EQ(facts.has_equals, plain.has_equals) << text;
  EXPECT_EQ(facts.may_journal, plain.may_journal) << text;
}

std::size_t PlainDelimiter(std::string_view bytes, std::size_t from, std::size_t limit,
                           char delimiter) {
  int depth = 0;
  for (std::size_t at = from; at < limit; ++at) {
    const char byte = bytes[at];
    if (depth == 0 && (byte == delimiter || byte == '}')) return at;
    if (byte == '{') ++depth;
    if (byte == '}') --depth;
  }
  return limit;
}

/// A text of pieces of words, braces, white space and other bytes.
std::string RandomText(std::mt19937& random) {
  constexpr std::array kPieces{"jo"sv, "j "sv, "{"sv, "}"sv, "\""sv,       " "sv,  "\t"sv,
                               "\n"sv, "@"sv,  "="sv, "x"sv, "\xc3\xa9"sv, "\0"sv, "rl"sv};
  std::string text;
  for (auto pieces = random() % 12; pieces > 0; --pieces) {
    if (random() % 3 != 0) {
      text += kPieces[random() % kPieces.size()];
      continue;
    }
    std::string word(kWords[random() % kWords.size()]);
    if (random() % 2 == 0) StringToUpper(word);
    if (random() % 3 == 0) word.erase(random() % word.size(), 1);
    text += word;
  }
  return text;
}

TEST(TextFacts, FindsWordsInAnyCase) {
  for (std::size_t word = 0; word < kWords.size(); ++word) {
    EXPECT_NE(FactsOf(kWords[word]).words & WordBit(word), 0U) << kWords[word];
    EXPECT_NE(FactsOf(InCapitals(kWords[word])).words & WordBit(word), 0U) << kWords[word];
  }
  EXPECT_EQ(FactsOf("jour nal").words, 0U);
  EXPECT_TRUE(FactsOf("jour nal").may_journal);
}

TEST(TextFacts, AreThoseOfOneQuestionAfterTheOther) {
  std::mt19937 random(7);
  for (int i = 0; i < 20'000; ++i) {
    const std::string text = RandomText(random);
    ExpectSame(FactsOf(text), PlainFacts(text), text);
  }
}

TEST(TextFacts, TheDelimiterIsTheFirstOutsideOfBraces) {
  std::mt19937 random(8);
  for (int i = 0; i < 20'000; ++i) {
    const std::string text = "{" + RandomText(random) + RandomText(random);
    const std::size_t limit = 1 + random() % text.size();
    for (const char delimiter : {'}', '"'}) {
      TextFacts facts;
      const std::size_t end = PlainDelimiter(text, 1, limit, delimiter);
      EXPECT_EQ(FindDelimiter(text, 1, limit, delimiter, facts), end) << text;
      EXPECT_EQ(FindDelimiter(text, 1, limit, delimiter), end) << text;
      if (end < limit) ExpectSame(facts, PlainFacts(text.substr(1, end - 1)), text);
    }
  }
}

TEST(TextFacts, OddWhiteIsFoundAtEachOffsetOfALongText) {
  for (std::size_t at = 0; at < 200; ++at) {
    for (const std::string_view white : {"  ", "\n", "\t", "\r"}) {
      EXPECT_EQ(FindOddWhite(std::string(200, 'x').replace(at, 1, white), 0), at) << white.size();
    }
    const std::string single = std::string(200, 'x').replace(at, 1, " ");
    EXPECT_EQ(FindOddWhite(single, 0), single.size());
  }
}

TEST(TextFacts, OddWhiteIsMoreThanASingleBlank) {
  EXPECT_EQ(FindOddWhite("", 0), 0U);
  EXPECT_EQ(FindOddWhite("a b ", 0), 4U);
  EXPECT_EQ(FindOddWhite("a  b", 0), 1U);
  EXPECT_EQ(FindOddWhite("a \nb", 0), 2U);
  std::mt19937 random(9);
  for (int i = 0; i < 20'000; ++i) {
    const std::string text = RandomText(random) + RandomText(random);
    const std::size_t from = random() % (text.size() + 1);
    const std::size_t odd =
        std::min({text.find("  ", from), text.find_first_of("\t\r\n", from), text.size()});
    EXPECT_EQ(FindOddWhite(text, from), odd) << text;
  }
}

}  // namespace
}  // namespace tarvel
