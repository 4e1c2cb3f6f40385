// SPDX-License-Identifier: MIT
#include "ops/entries/entries_by_offset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace tarvel {
namespace {

struct Range {
  std::size_t head = 0;
  std::size_t end = 0;
  int number = 0;

  bool operator==(const Range&) const = default;
};
using Ranges = std::vector<Range>;

Ranges Removed(EntriesByOffset<Range>& entries, std::size_t begin, std::size_t end) {
  Ranges removed;
  entries.Remove(begin, end, [&](const Range& entry) { removed.push_back(entry); });
  std::sort(removed.begin(), removed.end(),
            [](const Range& one, const Range& other) { return one.head < other.head; });
  return removed;
}

TEST(EntriesByOffset, RemovesThoseWhoseHeadsStandInARange) {
  EntriesByOffset<Range> entries;
  for (const std::size_t head : {10U, 20U, 30U, 40U}) entries.Add({head, head + 9});
  EXPECT_EQ(Removed(entries, 11, 20), Ranges());
  EXPECT_EQ(Removed(entries, 20, 31), (Ranges{{20, 29}, {30, 39}}));
  EXPECT_EQ(Removed(entries, 20, 31), Ranges());
  EXPECT_EQ(Removed(entries, 0, 100), (Ranges{{10, 19}, {40, 49}}));
}

TEST(EntriesByOffset, TakesEntriesInAnyOrder) {
  EntriesByOffset<Range> entries;
  for (const std::size_t head : {10U, 20U, 30U}) entries.Add({head, head + 9});
  EXPECT_EQ(Removed(entries, 20, 21), (Ranges{{20, 29}}));
  entries.Add({20, 25, 1});
  entries.Add({26, 27, 2});
  EXPECT_EQ(entries.HeadOfEntryAt(9), 9U);
  EXPECT_EQ(entries.HeadOfEntryAt(18), 10U);
  EXPECT_EQ(entries.HeadOfEntryAt(19), 19U) << "after the last byte";
  EXPECT_EQ(entries.HeadOfEntryAt(20), 20U);
  EXPECT_EQ(entries.HeadOfEntryAt(24), 20U);
  EXPECT_EQ(entries.HeadOfEntryAt(25), 25U);
  EXPECT_EQ(Removed(entries, 20, 50), (Ranges{{20, 25, 1}, {26, 27, 2}, {30, 39}}));
}

/// Adds entries at the end and over others, and removes what they share a byte with.
TEST(EntriesByOffset, GivesWhatAPlainListGives) {
  std::mt19937 random(11);
  for (int run = 0; run < 200; ++run) {
    EntriesByOffset<Range> entries;
    Ranges plain;
    std::size_t size = 0;
    for (int i = 0; i < 60; ++i) {
      const std::size_t begin = random() % 3 == 0 ? random() % (size + 1) : size;
      const std::size_t end = begin + 1 + random() % 20;
      Ranges met;
      Ranges left;
      for (const Range& entry : plain) {
        (entry.head < end && entry.end > begin ? met : left).push_back(entry);
      }
      ASSERT_EQ(Removed(entries, entries.HeadOfEntryAt(begin), end), met);
      const Range added{begin, end, i};
      const Range& kept = entries.Add(added);
      ASSERT_EQ(kept, added);
      const auto later = std::find_if(left.begin(), left.end(),
                                      [&](const Range& entry) { return entry.head > begin; });
      left.insert(later, added);
      plain = left;
      size = std::max(size, end + random() % 2);
    }
  }
}

}  // namespace
}  // namespace tarvel
