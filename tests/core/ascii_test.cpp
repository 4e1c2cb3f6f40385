// SPDX-License-Identifier: MIT
#include "core/ascii.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvel {
namespace {

TEST(Ascii, KnowsNoLetterAndNoBlankBeyondItself) {
  const std::string upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::string lower = "abcdefghijklmnopqrstuvwxyz";
  for (int code = 0; code < 256; ++code) {
    const char byte = static_cast<char>(code);
    const std::size_t letter = lower.find(byte);
    EXPECT_EQ(ToUpper(byte), letter == std::string::npos ? byte : upper[letter]) << code;
    EXPECT_EQ(IsLetter(byte), (upper + lower).find(byte) != std::string::npos) << code;
    EXPECT_EQ(IsBlank(byte), kBlanks.find(byte) != std::string_view::npos) << code;
    EXPECT_EQ(IsBlankOrTab(byte), code == 9 || code == 32) << code;
  }
}

TEST(Ascii, TrimsOnlyTheEnds) {
  EXPECT_EQ(Trim(" a b ", " "), "a b");
  EXPECT_EQ(Trim("~ a~", " ~"), "a");
  EXPECT_EQ(Trim("   ", " "), "");
  EXPECT_EQ(Trim("", " "), "");
  EXPECT_EQ(Trim(" a", "b"), " a");
  EXPECT_EQ(TrimEnd(" a\n", IsBlank), " a");
  EXPECT_EQ(TrimEnd("\t\n", IsBlank), "");
}

TEST(Ascii, SkipsBlanksFromAnOffsetOn) {
  EXPECT_EQ(SkipBlanks("a \t\r\nb", 1), 5U);
  EXPECT_EQ(SkipBlanks("a ", 1), 2U);
  EXPECT_EQ(SkipBlanks("a", 0), 0U);
  EXPECT_EQ(SkipBlanks("a", 7), 1U) << "an offset beyond the end gives the end";
  EXPECT_EQ(SkipBlanks("\xA0", 0), 0U) << "a byte above 127 is no blank";
}

TEST(Ascii, ComparesWithoutLetterCase) {
  EXPECT_TRUE(EqualNoCase("aBc1", "AbC1"));
  EXPECT_FALSE(EqualNoCase("abc", "abcd"));
  EXPECT_FALSE(EqualNoCase("[", "{")) << "they differ as two cases of a letter do";
  EXPECT_FALSE(EqualNoCase("\xE4", "\xC4"));
  EXPECT_TRUE(EqualNoCase("", ""));
}

}  // namespace
}  // namespace tarvel
