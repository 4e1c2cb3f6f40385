// SPDX-License-Identifier: MIT
#include "ops/entries/hidden_ranges.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(HiddenRanges, HideWhatTheLargestHides) {
  HiddenRanges ranges;
  EXPECT_EQ(ranges.RangeAt(10), std::nullopt);
  ranges.Add(10, 20);
  ranges.Add(30, HiddenRanges::kOpen);
  EXPECT_EQ(ranges.VisibleFrom(9), 9U);
  EXPECT_EQ(ranges.VisibleFrom(10), 20U);
  EXPECT_EQ(ranges.VisibleFrom(20), 20U);
  EXPECT_EQ(ranges.VisibleFrom(1000), HiddenRanges::kOpen);
  ranges.Close(30, 40);
  EXPECT_EQ(ranges.VisibleFrom(39), 40U);
  ranges.Add(5, 40);
  EXPECT_EQ(ranges.RangeAt(15), 5U);
  EXPECT_EQ(ranges.RangeAt(25), 5U);
  ranges.Close(10, 22);
  ranges.Remove(5);
  EXPECT_EQ(ranges.VisibleFrom(15), 22U) << "it had got another end inside the larger one";
  EXPECT_EQ(ranges.RangeAt(25), std::nullopt);
  EXPECT_EQ(ranges.RangeAt(35), 30U);
}

TEST(HiddenRanges, StayInsideThoseThatStay) {
  HiddenRanges ranges;
  ranges.Add(12, 14);
  ranges.Add(10, 20);
  ranges.Add(5, 30);
  ranges.Remove(5);
  EXPECT_EQ(ranges.VisibleFrom(13), 20U);
  ranges.Remove(10);
  EXPECT_EQ(ranges.VisibleFrom(13), 14U);
}

TEST(HiddenRanges, AreRemovedWithThoseInside) {
  HiddenRanges ranges;
  ranges.Add(12, 14);
  ranges.Add(10, 20);
  ranges.Add(30, 40);
  ranges.RemoveAll(10, 30);
  EXPECT_EQ(ranges.RangeAt(13), std::nullopt);
  EXPECT_EQ(ranges.RangeAt(35), 30U);
}

}  // namespace
}  // namespace tarvel
