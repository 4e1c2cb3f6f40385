// SPDX-License-Identifier: MIT
#include "ops/prepare/name_tables.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(NameTables, KnowATagByItsWholeName) {
  ASSERT_NE(FindTag("author"), nullptr);
  EXPECT_EQ(FindTag("author")->use, TagRow::Use::kNeeded);
  EXPECT_EQ(FindTag("owner")->use, TagRow::Use::kBookkeeping);
  EXPECT_TRUE(FindTag("url")->is_verbatim);
  EXPECT_TRUE(FindTag("date")->is_renamed);
  for (const char* name : {"", "a", "au", "autho", "authorx", "Author", "numpages"}) {
    EXPECT_EQ(FindTag(name), nullptr) << name;
  }
}

TEST(NameTables, EveryChangeIsOfARenamedTagAndOfKnownNames) {
  for (const TagChange& change : TagChanges()) {
    ASSERT_NE(FindTag(change.from), nullptr) << change.from;
    EXPECT_TRUE(FindTag(change.from)->is_renamed) << change.from;
  }
}

TEST(NameTables, KnownTypesStayAndOthersBecomeThem) {
  EXPECT_EQ(FindKnownType("aRTICLE", "").type, "ARTICLE");
  EXPECT_TRUE(FindKnownType("aRTICLE", "").is_same);
  EXPECT_EQ(FindKnownType("Online", "").type, "ELECTRONIC");
  EXPECT_FALSE(FindKnownType("Online", "").is_same);
  EXPECT_TRUE(FindKnownType("Online", "").is_in_table);
  EXPECT_EQ(FindKnownType("articles", "").type, "MISC");
  EXPECT_FALSE(FindKnownType("articles", "").is_in_table);
}

TEST(NameTables, TheTypeOfAThesisSaysWhatItIs) {
  EXPECT_EQ(FindKnownType("thesis", "mathesis").type, "MASTERTHESIS");
  EXPECT_EQ(FindKnownType("thesis", "Diplomarbeit").type, "MASTERTHESIS");
  EXPECT_EQ(FindKnownType("thesis", "phdthesis").type, "PHDTHESIS");
  EXPECT_EQ(FindKnownType("thesis", "").type, "PHDTHESIS");
  EXPECT_TRUE(IsThesis("MASTERTHESIS"));
  EXPECT_FALSE(IsThesis("BOOK"));
}

}  // namespace
}  // namespace tarvel
