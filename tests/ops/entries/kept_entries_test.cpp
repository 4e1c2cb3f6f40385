// SPDX-License-Identifier: MIT
#include "ops/entries/kept_entries.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvel {
namespace {

struct Group {
  std::string_view id;
  int size = 0;
};

TEST(GroupTable, TakesAnyNumberOfGroupsAndLeavesThemInTheirPlaces) {
  std::vector<std::string> ids;
  for (int i = 0; i < 1000; ++i) ids.push_back("key" + std::to_string(i));
  GroupTable<Group> groups;
  EXPECT_EQ(groups.Find("key0"), nullptr);
  std::vector<Group*> offsets;
  for (const std::string& id : ids) {
    offsets.push_back(&groups.FindOrAdd(id));
    offsets.back()->size = static_cast<int>(offsets.size());
  }
  for (std::size_t i = 0; i < ids.size(); ++i) {
    EXPECT_EQ(groups.Find(ids[i]), offsets[i]);
    EXPECT_EQ(&groups.FindOrAdd(ids[i]), offsets[i]);
    EXPECT_EQ(offsets[i]->size, static_cast<int>(i) + 1);
  }
  EXPECT_EQ(groups.Find("key1000"), nullptr);
}

/// A book as the rule of its type compares it: by author, title and year.
EntryRecord Book(std::string_view key, std::string_view title) {
  EntryRecord record;
  record.Start("@BOOK{" + std::string(key) + ",");
  record[Field::kAuthor].SetView("A");
  record[Field::kTitle].SetView(title);
  record[Field::kYear].SetView("2001");
  return record;
}

constexpr std::size_t kAll = static_cast<std::size_t>(-1);

TEST(KeptEntries, FindTheFirstThatIsLeft) {
  KeptEntries entries;
  const TypeRule<DoublesRule> rule = DoublesRuleFor("BOOK");
  const EntryRecord book = Book("k", "T");
  const ComparedValues values = ComparedValuesOf(rule.rule->group, book);
  for (const std::size_t head : {100U, 200U, 300U}) entries.Add(book, head, head + 50);
  entries.Add(Book("l", "U"), 400, 450);

  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 100U);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule)->head, 100U);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 3U);
  entries.Remove(0, 200);
  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 200U);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule)->head, 200U);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 2U);
  entries.Remove(200, 301);
  EXPECT_EQ(entries.FirstEqual(rule, values), nullptr);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule), nullptr);
  EXPECT_EQ(entries.FirstWithKey("k"), nullptr);
  EXPECT_EQ(entries.FirstWithKey("l")->head, 400U);

  entries.Add(book, 210, 260);
  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 210U);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule)->head, 210U);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 1U);
}

TEST(KeptEntries, HideThoseFromAnOffsetOn) {
  KeptEntries entries;
  const TypeRule<DoublesRule> rule = DoublesRuleFor("BOOK");
  const EntryRecord book = Book("k", "T");
  const ComparedValues values = ComparedValuesOf(rule.rule->group, book);
  for (const std::size_t head : {100U, 200U}) entries.Add(book, head, head + 50);
  entries.HideFrom(200);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 1U);
  entries.HideFrom(100);
  EXPECT_EQ(entries.FirstEqual(rule, values), nullptr);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule), nullptr);
  EXPECT_EQ(entries.FirstWithKey("k"), nullptr);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 0U);
  entries.HideFrom(kAll);
  EXPECT_EQ(entries.FirstEqual(DoublesRuleFor("COMMENT"), values), nullptr) << "of no group";
  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 100U);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 2U);
}

TEST(EntryList, HoldsOneOrSeveral) {
  TextStore texts;
  const KeptEntry one(Book("k", "T"), 10, 20, texts);
  const KeptEntry two(Book("k", "U"), 20, 30, texts);
  const KeptEntry three(Book("k", "V"), 30, 40, texts);
  const auto any = [](const KeptEntry&) { return true; };
  const auto none = [](const KeptEntry&) { return false; };
  const auto later = [](const KeptEntry& entry) { return entry.head > 10; };
  EntryList list;
  EXPECT_EQ(list.CountBefore(kAll), 0U);
  EXPECT_EQ(list.First(any), nullptr);
  list.Remove(one);
  list.Add(two);
  list.Remove(one);
  EXPECT_EQ(list.CountBefore(20), 0U);
  EXPECT_EQ(list.CountBefore(21), 1U);
  EXPECT_EQ(list.First(any), &two);
  EXPECT_EQ(list.First(none), nullptr);
  list.Add(three);
  list.Add(one);
  EXPECT_EQ(list.CountBefore(kAll), 3U);
  EXPECT_EQ(list.CountBefore(21), 2U);
  EXPECT_EQ(list.First(), &one);
  EXPECT_EQ(list.First(later), &two);
  EXPECT_EQ(list.First(none), nullptr);
  list.Remove(one);
  list.Remove(three);
  EXPECT_EQ(list.First(), &two);
  EXPECT_EQ(list.CountBefore(kAll), 1U);
}

}  // namespace
}  // namespace tarvel
