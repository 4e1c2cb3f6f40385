// SPDX-License-Identifier: MIT
#include "core/name_matcher.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "core/text_primitives.h"

namespace tarvel {
namespace {

TEST(NameMatcher, FindsNamesAnywhereInAnyCase) {
  constexpr std::array<std::string_view, 3> kNames{"title", "booktitle", "url"};
  const NameMatcher matcher(kNames);
  EXPECT_EQ(matcher.Find("  BookTitle = {x}"), 0b011U) << "a name inside another is found as well";
  EXPECT_EQ(matcher.First("  BookTitle = {x}"), 0) << "the first of the list wins";
  EXPECT_EQ(matcher.First("URL title"), 0) << "wherever it stands";
  EXPECT_EQ(matcher.First("x"), -1);
  EXPECT_EQ(matcher.First(""), -1);
  EXPECT_TRUE(matcher.Any("CiteseerURL"));
  EXPECT_FALSE(matcher.Any("titl e"));
}

TEST(NameMatcher, AgreesWithContainsNoCaseForEachName) {
  std::mt19937 random(4);
  const std::string_view alphabet = "abcAB\xe4";
  for (int run = 0; run < 3000; ++run) {
    std::vector<std::string> names(1 + random() % 5);
    for (std::string& name : names) {
      for (auto i = 1 + random() % 4; i > 0; --i) name += alphabet[random() % alphabet.size()];
    }
    const std::vector<std::string_view> views(names.begin(), names.end());
    const NameMatcher matcher(views);
    for (int texts = 0; texts < 10; ++texts) {
      std::string text;
      for (auto i = random() % 40; i > 0; --i) text += alphabet[random() % alphabet.size()];
      int first = -1;
      for (std::size_t i = names.size(); i-- > 0;) {
        const bool found = ContainsNoCase(text, names[i]);
        if (found) first = static_cast<int>(i);
        ASSERT_EQ((matcher.Find(text) >> i & 1) != 0, found) << text << " " << names[i];
      }
      ASSERT_EQ(matcher.First(text), first) << text;
      ASSERT_EQ(matcher.Any(text), first >= 0) << text;
    }
  }
}

TEST(NameMatcher, FindsTheSameNamesInLongTextsAsWithoutVectorCode) {
  std::mt19937 random(8);
  const std::string_view alphabet = "abcABC\xe4{ ";
  for (int run = 0; run < 2000; ++run) {
    std::vector<std::string> names(1 + random() % 12);
    for (std::string& name : names) {
      for (auto i = 3 + random() % 5; i > 0; --i) name += alphabet[random() % 3];
    }
    const std::vector<std::string_view> views(names.begin(), names.end());
    const NameMatcher matcher(views);
    for (int texts = 0; texts < 10; ++texts) {
      std::string text;
      for (auto i = random() % 80; i > 0; --i) text += alphabet[random() % alphabet.size()];
      std::uint64_t found = 0;
      for (std::size_t i = 0; i < names.size(); ++i) {
        if (ContainsNoCase(text, names[i])) found |= std::uint64_t{1} << i;
      }
      ASSERT_EQ(matcher.Find(text), found) << text;
      ASSERT_EQ(matcher.FindPlain(text), found) << text;
      ASSERT_EQ(matcher.First(text), found == 0 ? -1 : std::countr_zero(found)) << text;
      ASSERT_EQ(matcher.Any(text), found != 0) << text;
    }
  }
}

TEST(NameMatcher, FindsTagsAtEveryOffsetOfALine) {
  constexpr std::array<std::string_view, 12> kNames{"journal", "year",  "pages",       "volume",
                                                    "author",  "title", "note",        "url",
                                                    "number",  "doi",   "nationality", "comment"};
  const NameMatcher matcher(kNames);
  std::mt19937 random(5);
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    for (std::size_t before = 0; before < 40; ++before) {
      for (std::size_t after = 0; after < 6; ++after) {
        std::string name(kNames[i]);
        if (random() % 2 == 0) StringToUpper(name);
        const std::string line = std::string(before, ' ') + name + std::string(after, '=');
        EXPECT_EQ(matcher.First(line), static_cast<int>(i)) << line;
        std::string other = line;
        other[before + random() % name.size()] ^= 0x40;  // the same lower five bits, no letter
        EXPECT_EQ(matcher.First(other), -1) << other;
      }
    }
  }
}

TEST(NameMatcher, TakesSixtyFourNames) {
  std::vector<std::string> names;
  for (char first = 'a'; first < 'i'; ++first) {
    for (char second = 's'; second <= 'z'; ++second) names.push_back({first, 'q', second});
  }
  ASSERT_EQ(names.size(), 64U);
  const NameMatcher matcher(std::vector<std::string_view>(names.begin(), names.end()));
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(matcher.Find("x " + names[i] + "x"), std::uint64_t{1} << i) << names[i];
    EXPECT_EQ(matcher.Find("x" + names[i]), std::uint64_t{1} << i) << names[i];
    EXPECT_EQ(matcher.Find(std::string(30, 'x') + names[i]), std::uint64_t{1} << i) << names[i];
  }
}

}  // namespace
}  // namespace tarvel
