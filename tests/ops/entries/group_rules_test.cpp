// SPDX-License-Identifier: MIT
#include "ops/entries/group_rules.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/support/memory_files.h"

namespace tarvel::testing {

namespace {

/// What `write` writes.
template <typename Write>
std::string Written(Write write) {
  MemoryFiles files;
  OutputFile out(files.CreateSink("/log", CreateMode::kWrite), "/log");
  write(out);
  EXPECT_TRUE(out.Close());
  return files.files["/log"];
}

EntryRecord FullRecord(const std::string& end) {
  EntryRecord record;
  const std::array<std::string, kFieldCount> names{"j", "y", "p",   "v",  "a", "t",
                                                   "n", "u", "num", "na", "c"};
  for (std::size_t i = 0; i < kFieldCount; ++i) record.fields[i].SetJoined() = names[i] + end;
  return record;
}

template <typename Rule>
std::string DetailsOf(const TypeRule<Rule>& found) {
  const EntryRecord one = FullRecord("1");
  const EntryRecord two = FullRecord("2");
  return Written([&](OutputFile& out) {
    WriteDetails(out, found.rule->group, ComparedValuesOf(found.rule->group, one),
                 ComparedValuesOf(found.rule->group, two));
  });
}

}  // namespace

TEST(GroupRules, TypeWordsAreTakenWhole) {
  for (const std::string_view type : {"", "ARTICLE ", "ARTICLES", "article", "BOOKS", "COMMENT",
                                      "MASTERSTHESIS", " BOOK", "STRING"}) {
    EXPECT_EQ(CompareRuleFor(type).rule, nullptr) << type;
    EXPECT_EQ(DoublesRuleFor(type).rule, nullptr) << type;
  }
}

TEST(GroupRules, FiveTypesAreInAGroupInCompareOnly) {
  std::set<std::string_view> compare, doubles;
  for (const CompareRule& rule : kCompareRules) {
    compare.insert(rule.group.types.begin(), rule.group.types.end());
  }
  for (const DoublesRule& rule : kDoublesRules) {
    doubles.insert(rule.group.types.begin(), rule.group.types.end());
  }
  EXPECT_EQ(compare.size(), 24u);
  EXPECT_EQ(doubles.size(), 19u);
  for (const std::string_view type :
       {"PROCEEDINGSPAPER", "MEETINGABSTRACT", "EDITORIALMATERIAL", "REVIEW", "LETTER"}) {
    EXPECT_NE(CompareRuleFor(type).rule, nullptr) << type;
    EXPECT_EQ(DoublesRuleFor(type).rule, nullptr) << type;
    compare.erase(type);
  }
  EXPECT_EQ(compare, doubles);
}

TEST(GroupRules, TheTypeFoundIsTheTables) {
  const std::string type = "LETTER";
  const auto found = CompareRuleFor(type);
  EXPECT_EQ(found.type, "LETTER");
  EXPECT_NE(found.type.data(), type.data());
}

TEST(GroupRules, ShowTheComparedTags) {
  struct Case {
    std::string_view type, compare, doubles;  // of the first line; empty: no lines
  };
  constexpr Case kCases[] = {
      {"BOOK", "Author: a1 Title: t1\n", "Author: a1 Title: t1 Year: y1\n"},
      {"ARTICLE", "Volume: v1 Pages: p1 Journal: j1 Year: y1\n",
       "Journal: j1 Volume: v1 Year: y1 Pages: p1\n"},
      {"MANUAL", "Title: t1\n", "Title: t1 \n"},
      {"ELECTRONIC", "URL: u1\n", "URL: u1 \n"},
      {"MISC", "Note: n1\n", "Note: n1 \n"},
      {"PERIODICAL", "Title: t1 Year: y1\n", "Title: t1 Year: y1\n"},
      {"PATENT", "Nationality: na1 Number: num1 Year: y1\n",
       "Nationality: na1 Number: num1 Year: y1\n"},
      {"OTHER", "", ""},
  };
  const auto both = [](std::string_view line) {
    if (line.empty()) return std::string();
    std::string second(line);
    for (char& byte : second) byte = byte == '1' ? '2' : byte;
    return "     1.: " + std::string(line) + "     2.: " + second;
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(DetailsOf(CompareRuleFor(c.type)), both(c.compare)) << c.type;
    EXPECT_EQ(DetailsOf(DoublesRuleFor(c.type)), both(c.doubles)) << c.type;
  }
}

TEST(GroupRules, ClosingLinesOfDoublesNameTheKeysInTheirOwnOrder) {
  struct Case {
    std::string_view type;
    ClosingKeys keys;
    std::string_view probable, closing;
  };
  constexpr std::string_view kStays = "     Bibitem %s stays, item %s out\n\n";
  constexpr std::string_view kOneStays = "     One BibTeX entry stays\n\n";
  constexpr std::string_view kSame = "Probably the same: %s %s\n";
  constexpr std::string_view kSameAnd = "Probably the same : %s and %s\n";
  constexpr Case kCases[] = {
      {"BOOK", ClosingKeys::kLaterThenEarlier, kSame, kStays},
      {"ARTICLE", ClosingKeys::kEarlierThenLater, kSame, kStays},
      {"STANDARD", ClosingKeys::kLaterThenEarlier, kSame, kStays},
      {"ELECTRONIC", ClosingKeys::kNone, kSameAnd, kOneStays},
      {"MISC", ClosingKeys::kNone, kSameAnd, kOneStays},
      {"PROCEEDINGS", ClosingKeys::kNone, kSameAnd, kOneStays},
      {"PATENT", ClosingKeys::kNone, kSameAnd, kOneStays},
      {"OTHER", ClosingKeys::kNone, "", ""},
  };
  for (const Case& c : kCases) {
    const DoublesRule& rule = *DoublesRuleFor(c.type).rule;
    EXPECT_EQ(rule.closing_keys, c.keys) << c.type;
    EXPECT_EQ(rule.probable, c.probable) << c.type;
    EXPECT_EQ(rule.closing, c.closing) << c.type;
    EXPECT_EQ(rule.same_key_note,
              c.type == "OTHER"
                  ? "............. The item (@OTHER) names are equal (%s and %s), but "
                    "not the content.\n"
                  : "")
        << c.type;
  }
  EXPECT_EQ(kDoublesExactHeadline, "Exactly the same : %s and %s\n");
  EXPECT_EQ(kDoublesExactClosing, kOneStays);
  EXPECT_EQ(kDoublesConflictHeadline,
            "Two identical bibitems (%s and %s) were found with different content:\n");
}

TEST(GroupRules, ContentIsJudgedByPresenceFirst) {
  const TypeGroup& group = CompareRuleFor("PATENT").rule->group;
  const EntryRecord full = FullRecord("");
  for (const Field field : group.compared) {
    EntryRecord lacking = full;
    lacking[field].Clear();
    EntryRecord changed = full;
    changed[field].SetJoined() += " ";
    const ComparedValues values = ComparedValuesOf(group, full);
    EXPECT_EQ(JudgeContent(values, ComparedValuesOf(group, lacking)), Content::kTagMissing);
    EXPECT_EQ(JudgeContent(ComparedValuesOf(group, lacking), values), Content::kTagMissing);
    EXPECT_EQ(JudgeContent(ComparedValuesOf(group, lacking), ComparedValuesOf(group, lacking)),
              Content::kTagMissing);
    EXPECT_EQ(JudgeContent(values, ComparedValuesOf(group, changed)), Content::kDifferent);
    EXPECT_EQ(JudgeContent(values, values), Content::kEqual);
  }
  EntryRecord elsewhere = full;
  elsewhere[Field::kTitle].Clear();
  EXPECT_EQ(JudgeContent(ComparedValuesOf(group, full), ComparedValuesOf(group, elsewhere)),
            Content::kEqual);
}

TEST(GroupRules, KeptValuesOutliveTheEntry) {
  TextStore store;
  EntryRecord record = FullRecord("x");
  const ComparedValues kept = KeepComparedValues(CompareRuleFor("BOOK").rule->group, record, store);
  const std::size_t hash = ContentHash("BOOK", kept);
  record = EntryRecord();
  EXPECT_EQ(kept.values[0], "ax");
  EXPECT_EQ(kept.values[1], "tx");
  EXPECT_EQ(kept.count, 2u);
  EXPECT_EQ(ContentHash("BOOK", kept), hash);
}

TEST(GroupRules, FormatsHoldNothingButPlaceholders) {
  struct Case {
    std::string_view format, written;
  };
  for (const Case& c : {Case{"%s - %s.\n", "a%s - b.\n"}, Case{"%s", "a%s"}, Case{"x", "x"},
                        Case{"", ""}, Case{"%d %% %s", "%d %% a%s"}, Case{"%s%s%s", "a%sb%s"}}) {
    EXPECT_EQ(Written([&](OutputFile& out) {
                WriteFormat(out, c.format, {"a%s", "b"});
              }),
              c.written)
        << c.format;
  }
}

}  // namespace tarvel::testing
