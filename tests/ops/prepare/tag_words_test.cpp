// SPDX-License-Identifier: MIT
#include "ops/prepare/tag_words.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ops/prepare/name_tables.h"
#include "ops/references/reference_walk.h"

namespace tarvel {
namespace {

constexpr std::array kTypes{"ARTICLE",          "BOOK",       "PHDTHESIS",  "INCOLLECTION",
                            "INPROCEEDINGS",    "MISC",       "OTHER",      "PROCEEDINGS",
                            "ELECTRONIC",       "BOOKLET",    "INBOOK",     "MASTERTHESIS",
                            "CONFERENCE",       "MANUAL",     "TECHREPORT", "UNPUBLISHED",
                            "STANDARD",         "PERIODICAL", "PATENT",     "MEETINGABSTRACT",
                            "PROCEEDINGSPAPER", "LETTER",     "REVIEW",     "EDITORIALMATERIAL"};

WordSet Set(std::initializer_list<std::string_view> words) {
  WordSet set = 0;
  for (const std::string_view word : words) {
    for (std::size_t i = 0; i < kWords.size(); ++i) {
      if (kWords[i] == word) set |= WordBit(i);
    }
  }
  return set;
}

TEST(TagWords, WhatIsPrintedIsWhatExtractAndTextLookFor) {
  for (const char* type : kTypes) {
    const EntryKind* const kind = FindEntryKind(type);
    WordSet wanted = 0;
    if (kind) {
      for (const TagRead& tag : kind->tags) wanted |= Set({tag.name});
    }
    EXPECT_EQ(PrintedWords(type), wanted) << type;
  }
}

TEST(TagWords, WhatIsComparedIsWhatCompareAndCleanDoublesCompare) {
  EXPECT_EQ(ComparedWords("ARTICLE"), Set({"volume", "pages", "journal", "year"}));
  EXPECT_EQ(ComparedWords("BOOK"), Set({"author", "title", "year"})) << "year: Clean doubles only";
  EXPECT_EQ(ComparedWords("LETTER"), ComparedWords("ARTICLE")) << "Compare only";
  EXPECT_EQ(ComparedWords("PATENT"), Set({"nationality", "number", "year"}));
  EXPECT_EQ(ComparedWords("ELECTRONIC"), Set({"url"}));
  EXPECT_EQ(ComparedWords("MISC"), Set({"note"}));
  EXPECT_EQ(ComparedWords("OTHER"), Set({"comment"}));
  EXPECT_EQ(ComparedWords("ARTICLES"), 0U);
}

TEST(TagWords, AWordDoesHarmWhereItComesBeforeTheTagsOwn) {
  const WordSet always = Set({"journal", "timestamp"});
  const WordSet compared = Set({"journal", "year", "pages", "volume", "author", "title", "note",
                                "url", "number", "nationality", "comment"});
  const auto harmful = [](std::string_view name, std::string_view type) {
    return HarmfulWords(WordsInName(name), PrintedWords(type));
  };
  EXPECT_EQ(harmful("journal", "MISC"), Set({"timestamp"}));
  EXPECT_EQ(harmful("title", "MISC"), always | Set({"year", "pages", "volume", "author"}));
  EXPECT_EQ(harmful("title", "BOOK"),
            always | Set({"year", "pages", "volume", "author", "publisher", "address"}));
  EXPECT_EQ(harmful("note", "MISC"), always | Set({"year", "pages", "volume", "author", "title"}));
  EXPECT_EQ(harmful("publisher", "MISC"), always | compared);
  EXPECT_EQ(harmful("publisher", "BOOK"), always | compared | Set({"address"}));
  EXPECT_EQ(harmful("booktitle", "INPROCEEDINGS"),
            always | Set({"year", "pages", "volume", "author", "editor", "address"}));
  EXPECT_EQ(harmful("timestamp", "MISC"), Set({"journal"}) | compared);
  EXPECT_TRUE(WinsOver(0, WordsInName("note")));
  EXPECT_FALSE(WinsOver(7, WordsInName("note"))) << "url comes after note";
}

TEST(TagWords, NamesThatAreTakenForOthers) {
  for (const char* name : {"numpages", "fjournal", "shortauthor", "subtitle", "urldate", "volumes",
                           "annote", "yearfiled", "citeseerurl", "eprinttype", "mrreviewer",
                           "bdsk-file-1", "jour.nal", "e@mail", "title:x"}) {
    EXPECT_TRUE(IsMisreadName(name)) << name;
  }
  for (const char* name : {"booktitle", "title", "date", "isbn", "keywords", "doi", "annotation",
                           "lastchecked", "archiveprefix", "howpublished", "organization"}) {
    EXPECT_FALSE(IsMisreadName(name)) << name;
  }
}

TEST(TagWords, FindsWordsWithBlanksWithin) {
  EXPECT_EQ(FindSpacedJournal("a j o\tur nal", 0, 'j').begin, 2U);
  EXPECT_EQ(FindSpacedJournal("a j o\tur nal", 0, 'j').size, 10U);
  EXPECT_EQ(FindSpacedJournal("a j o\tur nal", 0, 'J').size, 0U);
  EXPECT_EQ(FindSpacedJournal("jjournal", 0, 'j').begin, 1U);
  EXPECT_EQ(FindSpacedJournal("journa", 0, 'j').size, 0U);
}

TEST(NameTables, EveryChangedTagIsMarked) {
  for (const TagChange& change : TagChanges()) {
    const TagRow* const row = FindTag(change.from);
    ASSERT_TRUE(row) << change.from;
    EXPECT_TRUE(row->is_renamed) << change.from;
    EXPECT_FALSE(IsMisreadName(change.to)) << change.to;
  }
  EXPECT_FALSE(FindTag("x"));
  EXPECT_FALSE(FindTag(""));
  EXPECT_FALSE(FindTag("titel"));
  EXPECT_EQ(FindTag("title")->use, TagRow::Use::kNeeded);
}

TEST(NameTables, TypesAreThoseThatOperationsKnow) {
  for (const char* type : kTypes) {
    EXPECT_EQ(FindKnownType(type, "").type, type);
    EXPECT_TRUE(FindKnownType(type, "").is_same);
  }
  const struct {
    const char* word;
    const char* thesis_type;
    const char* type;
    bool is_in_table;
  } cases[] = {{"article", "", "ARTICLE", true},
               {"MastersThesis", "", "MASTERTHESIS", true},
               {"online", "", "ELECTRONIC", true},
               {"report", "", "TECHREPORT", true},
               {"collection", "", "BOOK", true},
               {"thesis", "", "PHDTHESIS", true},
               {"thesis", "mathesis", "MASTERTHESIS", true},
               {"thesis", "Diplomarbeit", "MASTERTHESIS", true},
               {"thesis", "phdthesis", "PHDTHESIS", true},
               {"dataset", "", "MISC", true},
               {"articles", "", "MISC", false},
               {"nonsense", "", "MISC", false}};
  for (const auto& one : cases) {
    const KnownType known = FindKnownType(one.word, one.thesis_type);
    EXPECT_EQ(known.type, one.type) << one.word;
    EXPECT_EQ(known.is_in_table, one.is_in_table) << one.word;
  }
}

}  // namespace
}  // namespace tarvel
