// SPDX-License-Identifier: MIT
#include "ops/entries/untagged_lines.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(UntaggedLines, AreSkippedUpToTheTagAfterThem) {
  UntaggedLines lines;
  lines.Start(1000);
  lines.End(3000);
  EXPECT_EQ(lines.SkipFrom(999), 999U);
  EXPECT_EQ(lines.SkipFrom(1000), 3000U);
  EXPECT_EQ(lines.SkipFrom(2999), 3000U);
  EXPECT_EQ(lines.SkipFrom(3000), 3000U);
  EXPECT_EQ(lines.SkipFrom(3001), 3001U);
}

TEST(UntaggedLines, AreNotTheLinesInsideAValue) {
  UntaggedLines lines;
  lines.Start(1000);
  lines.Pass(1500, 2000);
  lines.Pass(2000, 2500);
  lines.End(3000);
  EXPECT_EQ(lines.SkipFrom(1500), 3000U) << "the value's first line";
  EXPECT_EQ(lines.SkipFrom(1501), 1501U);
  EXPECT_EQ(lines.SkipFrom(1999), 1999U);
  EXPECT_EQ(lines.SkipFrom(2000), 3000U);
  EXPECT_EQ(lines.SkipFrom(2400), 2400U);
  EXPECT_EQ(lines.SkipFrom(2500), 3000U);
}

TEST(UntaggedLines, AreReadAnewWhereTheyAreFew) {
  UntaggedLines lines;
  lines.Start(1000);
  lines.End(1499);
  EXPECT_EQ(lines.SkipFrom(1000), 1000U);
  lines.Start(1000);
  lines.End(1500);
  EXPECT_EQ(lines.SkipFrom(1000), 1500U);
  lines.Start(500);
  lines.End(1500);
  EXPECT_EQ(lines.SkipFrom(500), 1500U) << "with those that were known";
  EXPECT_EQ(lines.SkipFrom(1200), 1500U);
}

}  // namespace
}  // namespace tarvel
