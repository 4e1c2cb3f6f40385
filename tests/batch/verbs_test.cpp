// SPDX-License-Identifier: MIT
#include "batch/verbs.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(VerbTable, BeginsWithTheOperationsAndHasOneWayToRunEach) {
  for (std::size_t i = 0; i < kVerbRows.size(); ++i) {
    const VerbRow& row = kVerbRows[i];
    EXPECT_EQ(FindVerb(row.name), &row) << "names are unique";
    EXPECT_EQ(row.operation, i < kOperations.size() ? &kOperations[i] : nullptr);
    EXPECT_EQ(row.run != nullptr, row.operation == nullptr) << row.name;
    EXPECT_TRUE(row.fewest >= 1 && row.fewest <= row.most) << row.name;
    EXPECT_TRUE(row.example.starts_with(row.name)) << row.name;
    EXPECT_TRUE(row.summary.ends_with('.')) << row.name;
    EXPECT_EQ((kEveryOperation & VerbsOf(row.verb)) != 0, row.operation != nullptr);
  }
  EXPECT_EQ(FindVerb("Extract"), nullptr);
  EXPECT_EQ(FindVerb(""), nullptr);
}

}  // namespace
}  // namespace tarvel
