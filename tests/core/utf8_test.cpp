// SPDX-License-Identifier: MIT
#include "core/utf8.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace tarvel {
namespace {

using namespace std::string_literals;

TEST(DecodeUtf8, TakesValidCharactersOnly) {
  struct Case {
    std::string text;
    std::size_t size;
  };
  const Case cases[] = {{"", 0},
                        {"a", 1},
                        {"\0"s, 1},
                        {"\xC3\xBCx", 2},
                        {"\xE2\x82\xAC", 3},
                        {"\xF0\x9F\x98\x80", 4},
                        {"\xF4\x8F\xBF\xBF", 4},
                        {"\x80", 0},
                        {"\xC3", 0},
                        {"\xC3x", 0},
                        {"\xE2\x82", 0},
                        {"\xE2\x82x", 0},
                        {"\xC0\x80", 0},
                        {"\xC1\xBF", 0},
                        {"\xE0\x9F\xBF", 0},
                        {"\xED\xA0\x80", 0},
                        {"\xF0\x8F\xBF\xBF", 0},
                        {"\xF4\x90\x80\x80", 0},
                        {"\xF5\x80\x80\x80", 0},
                        {"\xFF", 0}};
  for (const Case& c : cases) EXPECT_EQ(DecodeUtf8(c.text).size, c.size) << c.text;
}

TEST(DecodeUtf8, ReadsEachCodePointAsItIsWritten) {
  // The writer is the plain rule; every code point but the surrogates is read back from it.
  const auto write = [](char32_t code) {
    std::string text;
    if (code < 0x80) return text += static_cast<char>(code);
    std::string rest;
    char32_t lead = 0x40;
    do {
      rest.insert(rest.begin(), static_cast<char>(0x80 | (code & 0x3FU)));
      code >>= 6U;
      lead /= 2;
    } while (code >= lead);
    text += static_cast<char>((0x100 - 2 * lead) | code);
    return text + rest;
  };
  EXPECT_EQ(write(0xFC), "\xC3\xBC");
  EXPECT_EQ(write(0x20AC), "\xE2\x82\xAC");
  EXPECT_EQ(write(0x1F600), "\xF0\x9F\x98\x80");
  for (char32_t code = 0; code <= 0x10FFFF; ++code) {
    const Utf8Character character = DecodeUtf8(write(code));
    if (code >= 0xD800 && code <= 0xDFFF) {
      ASSERT_EQ(character.size, 0U) << std::uint32_t{code};
    } else {
      ASSERT_EQ(character.size, write(code).size()) << std::uint32_t{code};
      ASSERT_TRUE(character.code == code) << std::uint32_t{code};
    }
  }
}

TEST(IsUtf8, TakesWholeTexts) {
  EXPECT_TRUE(IsUtf8(""));
  EXPECT_TRUE(IsUtf8("caf\xC3\xA9 \xE2\x82\xAC"));
  EXPECT_FALSE(IsUtf8("caf\xE9"));
  EXPECT_FALSE(IsUtf8("caf\xC3"));
  EXPECT_FALSE(IsUtf8("\xC3\xA9\xA9"));
}

TEST(FindBadUtf8, FindsTheFirstByteThatIsOfNoCharacter) {
  constexpr std::array<std::string_view, 9> kPieces{
      "a",        "\n",           "plain text of some length",
      "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
      "\xE9",     "\xA9",         "\xE2\x82"};
  std::mt19937 random(3);
  for (int run = 0; run < 20000; ++run) {
    std::string text;
    const auto bad = random() % 2 == 0 ? 3 : 0;
    for (auto count = random() % 12; count > 0; --count) {
      text += kPieces[random() % (kPieces.size() - 3 + bad)];
    }
    std::size_t plain = 0;
    while (plain < text.size()) {
      const std::size_t size = DecodeUtf8(std::string_view(text).substr(plain)).size;
      if (size == 0) break;
      plain += size;
    }
    ASSERT_EQ(FindBadUtf8(text, 0), plain) << text;
    ASSERT_EQ(FindBadUtf8(text, plain), plain) << text;
  }
}

}  // namespace
}  // namespace tarvel
