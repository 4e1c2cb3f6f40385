// SPDX-License-Identifier: MIT
#include "app/settings.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace tarvel {
namespace {

TEST(Settings, StartAtTheirDefaults) {
  const Settings settings;
  EXPECT_EQ(settings.StyleAPS, 1);
  EXPECT_EQ(settings.StyleACS, 0);
  EXPECT_EQ(settings.StyleIOP, 0);
  EXPECT_EQ(settings.StyleNature, 0);
  EXPECT_EQ(settings.StyleWiley, 0);
  EXPECT_EQ(settings.StyleSpringerCompSci, 0);
  EXPECT_EQ(settings.PagesRange, 0);
  EXPECT_EQ(settings.PagesFirstOnly, 0);
  EXPECT_EQ(settings.PrintTitle, 1);
  EXPECT_EQ(settings.PrintBibitem, 0);
  EXPECT_EQ(settings.UseLaTeXCode, 0);
  EXPECT_EQ(settings.JournalAbbreviated, 0);
  EXPECT_EQ(settings.JournalFullNames, 1);
  EXPECT_EQ(settings.UseOwnJournalFile, 0);
  EXPECT_EQ(settings.RemoveEmptyEntries, 1);
  EXPECT_EQ(settings.RemoveJournalStrings, 1);
  EXPECT_EQ(settings.RemoveJabRefStructure, 1);
}

TEST(Settings, KeepSixTagsAtStart) {
  const Settings settings;
  const std::set<std::string> kept{"author", "title", "journal", "year", "volume", "pages"};
  for (std::size_t i = 0; i < kTagCount; ++i) {
    EXPECT_EQ(settings.RemoveTag[i], kept.contains(std::string(kTagRules[i].name)) ? 0 : 1)
        << kTagRules[i].name;
  }
}

TEST(TagRules, StandInTheirOrder) {
  const std::string_view names[] = {
      "author",      "booktitle", "title",        "volume",      "pages",     "year",
      "journal",     "month",     "abstract",     "note",        "owner",     "timestamp",
      "url",         "comment",   "number",       "eid",         "keywords",  "crossref",
      "review",      "doi",       "file",         "editor",      "publisher", "address",
      "edition",     "school",    "series",       "citeseerurl", "type",      "chapter",
      "nationality", "yearfiled", "organization", "institution"};
  ASSERT_EQ(std::size(names), kTagCount);
  for (std::size_t i = 0; i < kTagCount; ++i) {
    EXPECT_EQ(kTagRules[i].name, names[i]);
    EXPECT_EQ(TagIndex(names[i]), i);
    EXPECT_EQ(kTagRules[i].in_line_filter, names[i] != "keywords") << names[i];
    EXPECT_EQ(kTagRules[i].doubles_braces, names[i] == "title") << names[i];
  }
  EXPECT_EQ(TagIndex("isbn"), kTagCount);
}

TEST(Choose, KeepsAGroupExclusive) {
  Settings settings;
  Choose(settings, kStyleFlags, &Settings::StyleNature);
  EXPECT_EQ(settings.StyleAPS, 0);
  EXPECT_EQ(settings.StyleNature, 1);
  Choose(settings, kPagesFlags, &Settings::PagesRange);
  EXPECT_EQ(settings.PagesRange, 1);
  EXPECT_EQ(settings.PagesFirstOnly, 0);
  Choose(settings, kPagesFlags, &Settings::PagesFirstOnly);
  EXPECT_EQ(settings.PagesRange, 0);
  EXPECT_EQ(settings.PagesFirstOnly, 1);
  Choose(settings, kJournalFlags, &Settings::JournalAbbreviated);
  EXPECT_EQ(settings.JournalAbbreviated, 1);
  EXPECT_EQ(settings.JournalFullNames, 0);
}

}  // namespace
}  // namespace tarvel
