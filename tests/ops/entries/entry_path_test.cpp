// SPDX-License-Identifier: MIT
#include "ops/entries/entry_path.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace tarvel {
namespace {

constexpr unsigned kBlockBits = 6;

/// Entries, each of which leads to the next, and the path among them.
struct Steps {
  EntriesByOffset<KeptEntry> entries;
  EntryPath path{entries, kBlockBits};

  KeptEntry& Add(std::size_t head, std::size_t next) {
    KeptEntry& added = entries.Add({head, head + 1, next});
    path.NoteReach(added);
    return added;
  }
  /// Leads the path from an entry to the end; the offset at which it joined the old path, or 0.
  std::size_t Follow(KeptEntry* from, std::size_t first, std::size_t settled) {
    KeptEntry* next = entries.Find(from ? from->next : first);
    while (next) {
      if (path.Lead(from, *next, settled)) return next->head;
      from = &path.GoOnFrom(*next);
      next = entries.Find(from->next);
    }
    path.End(from);
    return 0;
  }
  std::set<std::size_t> Held() {
    std::set<std::size_t> held;
    entries.ForEach(0, EntryPath::kNowhere, [&](KeptEntry& entry) {
      if (path.Holds(entry)) held.insert(entry.head);
    });
    return held;
  }
};

TEST(EntryPath, HoldsWhatEachEntryLeadsTo) {
  Steps steps;
  KeptEntry& first = steps.Add(10, 30);
  KeptEntry& inside = steps.Add(20, 40);
  steps.Add(30, 350);
  steps.Add(40, 360);
  steps.Add(350, 400);
  steps.Add(360, 410);
  EXPECT_EQ(steps.Follow(nullptr, 10, 0), 0U);
  EXPECT_EQ(steps.Held(), (std::set<std::size_t>{10, 30, 350}));
  EXPECT_EQ(steps.path.SearchFrom(inside), 21U) << "the path goes on in this block";
  first.next = 20;
  EXPECT_EQ(steps.Follow(&first, 10, 15), 0U);
  EXPECT_EQ(steps.Held(), (std::set<std::size_t>{10, 20, 40, 360}));
  EXPECT_EQ(steps.path.SearchFrom(*steps.entries.Find(350)), 360U);
  steps.path.End(&first);
  EXPECT_EQ(steps.Held(), (std::set<std::size_t>{10}));
  EXPECT_EQ(steps.path.SearchFrom(*steps.entries.Find(350)), EntryPath::kNowhere);
}

TEST(EntryPath, SaysWhereItJoinsTheOldOne) {
  Steps steps;
  KeptEntry& first = steps.Add(10, 30);
  steps.Add(20, 210);
  steps.Add(30, 210);
  steps.Add(210, 300);
  steps.Follow(nullptr, 10, 0);
  first.next = 20;
  EXPECT_EQ(steps.Follow(&first, 10, 12), 210U);
  EXPECT_EQ(steps.Held(), (std::set<std::size_t>{10, 20, 210}));
}

TEST(EntryPath, KnowsWhichEntriesReachAfterAnOffset) {
  Steps steps;
  KeptEntry& far = steps.Add(10, 500);
  steps.Add(20, 140);
  KeptEntry& near = steps.Add(130, 160);
  steps.Add(150, 170);
  const std::vector<KeptEntry*> reaching = steps.path.TakeReaching(140);
  EXPECT_EQ(std::set<KeptEntry*>(reaching.begin(), reaching.end()),
            (std::set<KeptEntry*>{&far, &near}));
  for (KeptEntry* const entry : reaching) entry->next = 140;
  EXPECT_TRUE(steps.path.TakeReaching(140).empty());
}

/// Leads entries elsewhere, removes some and adds others, and compares the path with a walk over
/// single entries.
TEST(EntryPath, HoldsWhatAWalkFromTheBeginningFinds) {
  std::mt19937 random(9);
  std::size_t joined = 0;
  for (int run = 0; run < 300; ++run) {
    Steps steps;
    std::map<std::size_t, std::size_t> plain;  // the next of each head
    const auto add = [&](std::size_t head) {
      const std::size_t next = head + 1 + random() % (random() % 8 == 0 ? 400 : 40);
      if (!plain.emplace(head, next).second) return;
      steps.Add(head, next);
    };
    for (std::size_t head = 0; head < 2000; ++head) {
      if (head == 0 || random() % 100 != 0) add(head);
    }
    steps.Follow(nullptr, 0, 0);
    for (int change = 0; change < 20; ++change) {
      std::set<std::size_t> walked;
      for (std::size_t head = 0; plain.contains(head); head = plain[head]) walked.insert(head);
      ASSERT_EQ(steps.Held(), walked);

      // What stands from here on is written anew.
      const std::size_t from =
          *std::next(walked.begin(), static_cast<long>(random() % walked.size()));
      const std::size_t begin = from + 1;
      const std::size_t end = begin + random() % 60 + 1;
      for (KeptEntry* const entry : steps.path.TakeReaching(begin)) {
        entry->next = plain[entry->head] = begin;
      }
      steps.entries.Remove(begin, end, [&](const KeptEntry& entry) { plain.erase(entry.head); });
      steps.path.Forget(begin, end);
      for (std::size_t head = begin; head < end; ++head) {
        if (head == begin || random() % 100 != 0) add(head);
      }
      if (steps.Follow(steps.entries.Find(from), 0, end) != 0) ++joined;
    }
  }
  EXPECT_GT(joined, 1000U);
}

}  // namespace
}  // namespace tarvel
