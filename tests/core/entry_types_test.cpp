// SPDX-License-Identifier: MIT
#include "core/entry_types.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvel {
namespace {

TEST(FindEntryType, TakesWholeWordsInAnyCase) {
  for (const std::string_view type : kEntryTypes) {
    EXPECT_EQ(FindEntryType(type), type);
    std::string lower(type);
    for (char& byte : lower) byte = static_cast<char>(byte + ('a' - 'A'));
    EXPECT_EQ(FindEntryType(lower), type);
    EXPECT_EQ(FindEntryType(lower + " "), "") << "blanks belong to the word";
    EXPECT_EQ(FindEntryType(lower.substr(1)), "") << lower;
  }
  for (const std::string_view word : {"", "MASTERSTHESIS", "ARTICLES", "ONLINE", "B@OK"}) {
    EXPECT_EQ(FindEntryType(word), "") << word;
  }
}

}  // namespace
}  // namespace tarvel
