// SPDX-License-Identifier: MIT
#include "ops/entries/kept_entries.h"

#include <gtest/gtest.h>

#include <map>
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

/// Entries whose records stay, as in a library, and how often one was read again.
struct Kept {
  std::map<std::size_t, EntryRecord> records;  // by head
  int read = 0;
  KeptEntry* last = nullptr;
  KeptEntries entries{[this](const KeptEntry& entry) {
    ++read;
    return records.at(entry.head);
  }};

  /// Adds an entry to which the path leads.
  void Add(const EntryRecord& record, std::size_t head, const LackingSizes& lacking = {}) {
    KeptEntry& added = entries.Add(record, head, head + 50, lacking);
    records.try_emplace(head, record);
    entries.Path().Lead(last, added, EntryPath::kNowhere);
    if (last) last->next = head;
    last = &added;
  }
};

TEST(KeptEntries, FindTheFirstThatIsLeft) {
  Kept kept;
  const KeptEntries& entries = kept.entries;
  const TypeRule<DoublesRule> rule = DoublesRuleFor("BOOK");
  const EntryRecord book = Book("k", "T");
  const ComparedValues values = ComparedValuesOf(rule.rule->group, book);
  for (const std::size_t head : {100U, 200U, 300U}) kept.Add(book, head);
  kept.Add(Book("l", "U"), 400);

  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 100U);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule)->head, 100U);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 3U);
  kept.entries.Remove(0, 200);
  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 200U);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule)->head, 200U);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 2U);
  kept.entries.Remove(200, 301);
  EXPECT_EQ(entries.FirstEqual(rule, values), nullptr);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule), nullptr);
  EXPECT_EQ(entries.FirstWithKey("k"), nullptr);
  EXPECT_EQ(entries.FirstWithKey("l")->head, 400U);

  kept.Add(book, 210);
  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 210U);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule)->head, 210U);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 1U);
}

TEST(KeptEntries, FindOnlyThoseOnThePath) {
  Kept kept;
  const KeptEntries& entries = kept.entries;
  const TypeRule<DoublesRule> rule = DoublesRuleFor("BOOK");
  const EntryRecord book = Book("k", "T");
  const ComparedValues values = ComparedValuesOf(rule.rule->group, book);
  for (const std::size_t head : {100U, 200U, 300U, 400U}) kept.Add(book, head);
  EntryPath& path = kept.entries.Path();
  kept.entries.At(100)->next = 300;
  EXPECT_TRUE(path.Lead(kept.entries.At(100), *kept.entries.At(300), 250));
  EXPECT_EQ(entries.CountWithKey("k", kAll), 3U);
  EXPECT_EQ(entries.CountWithKey("k", 400), 2U);
  EXPECT_FALSE(path.Lead(nullptr, *kept.entries.At(400), 50));
  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 400U);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule)->head, 400U);
  EXPECT_EQ(entries.FirstWithKey("k")->head, 400U);
  path.End(nullptr);
  EXPECT_EQ(entries.FirstEqual(rule, values), nullptr);
  EXPECT_EQ(entries.FirstComplete("k", *rule.rule), nullptr);
  EXPECT_EQ(entries.FirstWithKey("k"), nullptr);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 0U);
  EXPECT_FALSE(path.Lead(nullptr, *kept.entries.At(100), 50));
  EXPECT_EQ(entries.FirstEqual(DoublesRuleFor("COMMENT"), values), nullptr) << "of no group";
  EXPECT_EQ(entries.FirstEqual(rule, values)->head, 100U);
  EXPECT_EQ(entries.CountWithKey("k", kAll), 3U);
}

TEST(KeptEntries, ReadAnEntryAgainOnlyOnce) {
  Kept kept;
  const TypeRule<DoublesRule> rule = DoublesRuleFor("BOOK");
  const EntryRecord book = Book("k", "T");
  const ComparedValues values = ComparedValuesOf(rule.rule->group, book);
  kept.Add(book, 100);
  kept.Add(Book("l", "U"), 200);
  EXPECT_EQ(kept.entries.FirstWithKey("k")->Key(), "k");
  EXPECT_EQ(kept.entries.FirstComplete("k", *rule.rule)->head, 100U);
  EXPECT_EQ(kept.read, 0) << "no values were asked for";
  for (int i = 0; i < 2; ++i) {
    const KeptEntry* const equal = kept.entries.FirstEqual(rule, values);
    ASSERT_NE(equal, nullptr);
    EXPECT_EQ(kept.entries.ValuesOf(*equal).Type(), "BOOK");
    EXPECT_EQ(kept.entries.ValuesOf(*equal).ComparedValuesOf(rule.rule->group), values);
    EXPECT_EQ(kept.read, 1);
  }
}

TEST(KeptEntries, ReadLongValuesOnlyForThoseOfTheirSize) {
  Kept kept;
  const TypeRule<DoublesRule> rule = DoublesRuleFor("BOOK");
  const EntryRecord whole = Book("k", "a long title");
  kept.records[100] = kept.records[200] = whole;
  LackingSizes lacking{};
  lacking[static_cast<std::size_t>(Field::kTitle)] = whole[Field::kTitle].Text().size();
  kept.Add(Book("k", ""), 100, lacking);
  kept.Add(Book("k", ""), 200, lacking);
  EXPECT_EQ(kept.entries.FirstComplete("k", *rule.rule)->head, 100U) << "the title is present";
  for (const EntryRecord& other : {Book("l", "T"), Book("l", "another long title")}) {
    EXPECT_EQ(kept.entries.FirstEqual(rule, ComparedValuesOf(rule.rule->group, other)), nullptr);
  }
  EXPECT_EQ(kept.read, 0);
  kept.entries.Remove(100, 101);
  const ComparedValues values = ComparedValuesOf(rule.rule->group, whole);
  EXPECT_EQ(kept.entries.FirstEqual(rule, values)->head, 200U);
  EXPECT_EQ(kept.read, 2) << "once to find it and once to compare it";
  EXPECT_EQ(kept.entries.FirstEqual(rule, values)->head, 200U);
  EXPECT_EQ(kept.read, 2);
}

TEST(KeptEntries, AreCompleteForARuleWithAllItsTags) {
  Kept kept;
  EntryRecord book = Book("k", "T");
  book[Field::kYear].SetView("");
  kept.Add(book, 100);
  book[Field::kNote].SetView("N");
  kept.Add(book, 200);
  const auto first = [&](std::string_view type) {
    const KeptEntry* const entry = kept.entries.FirstComplete("k", *DoublesRuleFor(type).rule);
    return entry ? entry->head : kAll;
  };
  EXPECT_EQ(first("BOOK"), kAll) << "no year";
  EXPECT_EQ(first("MISC"), 200U) << "which compares notes";
  EXPECT_EQ(first("OTHER"), kAll) << "which compares nothing";
}

TEST(EntryList, HoldsOneOrSeveral) {
  const KeptEntry one{10, 20};
  const KeptEntry two{20, 30};
  const KeptEntry three{30, 40};
  EntryList list;
  EXPECT_EQ(list.FirstFrom(0), nullptr);
  list.Remove(one);
  list.Add(two);
  list.Remove(one);
  EXPECT_EQ(list.FirstFrom(20), &two);
  EXPECT_EQ(list.FirstFrom(21), nullptr);
  list.Add(three);
  list.Add(one);
  EXPECT_EQ(list.FirstFrom(0), &one);
  EXPECT_EQ(list.FirstFrom(11), &two);
  EXPECT_EQ(list.FirstFrom(30), &three);
  EXPECT_EQ(list.FirstFrom(31), nullptr);
  list.Remove(one);
  list.Remove(three);
  EXPECT_EQ(list.FirstFrom(0), &two);
  EXPECT_EQ(list.FirstFrom(21), nullptr);
}

}  // namespace
}  // namespace tarvel
