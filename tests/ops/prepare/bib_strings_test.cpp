// SPDX-License-Identifier: MIT
#include "ops/prepare/bib_strings.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(BibStrings, KnowTheMonthsInAnyLetterCase) {
  const BibStrings strings;
  ASSERT_NE(strings.Find("Sep", 0), nullptr);
  EXPECT_EQ(*strings.Find("Sep", 0), "September");
  EXPECT_EQ(strings.Find("september", 0), nullptr);
}

TEST(BibStrings, AreKnownFromTheirDefinitionOn) {
  BibStrings strings;
  strings.Define("JCO", "first", 10);
  strings.Define("jco", "second", 20);
  EXPECT_EQ(strings.Find("jco", 9), nullptr);
  EXPECT_EQ(*strings.Find("jco", 10), "first");
  EXPECT_EQ(*strings.Find("Jco", 19), "first");
  EXPECT_EQ(*strings.Find("jco", 20), "second");
}

TEST(BibStrings, MayDefineAMonthAnew) {
  BibStrings strings;
  strings.Define("jan", "Januar", 5);
  EXPECT_EQ(*strings.Find("jan", 4), "January");
  EXPECT_EQ(*strings.Find("jan", 5), "Januar");
}

}  // namespace
}  // namespace tarvel
