// SPDX-License-Identifier: MIT
#include "batch/suggestions.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace tarvel {
namespace {

constexpr std::array<std::string_view, 5> kNames{"author", "title", "booktitle", "year",
                                                 "keywords"};

TEST(NearestName, TakesTheFewestChanges) {
  EXPECT_EQ(NearestName("autor", kNames), "author") << "a byte left out";
  EXPECT_EQ(NearestName("authhor", kNames), "author") << "a byte added";
  EXPECT_EQ(NearestName("outhor", kNames), "author") << "a byte replaced";
  EXPECT_EQ(NearestName("auhtor", kNames), "author") << "two bytes swapped";
  EXPECT_EQ(NearestName("YEAR", kNames), "year");
  EXPECT_EQ(NearestName("bookttle", kNames), "booktitle");
  EXPECT_EQ(NearestName("key", kNames), "keywords") << "the only one that begins so";
  EXPECT_EQ(NearestName("yaers", kNames), "") << "two changes are too many for four bytes";
  EXPECT_EQ(NearestName("", kNames), "");
  EXPECT_EQ(NearestName(std::string(100000, 'a'), kNames), "");
}

TEST(Suggestion, ListsFewNames) {
  constexpr std::array<std::string_view, 7> kMany{"a-one", "a-two", "b", "c", "d", "e", "f"};
  EXPECT_EQ(Suggestion("a-", kMany), "; one of: a-one, a-two");
  EXPECT_EQ(Suggestion("xyz", kMany), "");
  EXPECT_EQ(Suggestion("xyz", std::span(kMany).last(2)), "; one of: e, f");
}

TEST(Suggestion, IsAQuestion) { EXPECT_EQ(Suggestion("yer", kNames), "; did you mean 'year'?"); }

}  // namespace
}  // namespace tarvel
