// SPDX-License-Identifier: MIT
#include "warnings/tally.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(Occurrences, KeepTheFirst) {
  Occurrences found;
  found.Add(0);
  found.Add(7);
  EXPECT_EQ(found.count, 2U);
  EXPECT_EQ(found.first, 0U);
}

TEST(Tally, SortsByCountAndThenByTheFirst) {
  Tally tally;
  EXPECT_TRUE(tally.ByCount().empty());
  tally.Add("late", 5);
  tally.Add("often", 30);
  tally.Add("early", 2);
  tally.Add("often", 40);
  tally.Add("often", 50);
  tally.Add("late", 60);
  tally.Add("early", 70);
  tally.Add("", 1);
  std::string sorted;
  for (const auto& [name, found] : tally.ByCount()) {
    sorted += std::string(name) + " " + std::to_string(found.count) + " " +
              std::to_string(found.first) + "\n";
  }
  EXPECT_EQ(sorted, "often 3 30\nearly 2 2\nlate 2 5\n 1 1\n");
}

}  // namespace
}  // namespace tarvel
