// SPDX-License-Identifier: MIT
#include "warnings/tag_warnings.h"

#include <gtest/gtest.h>

#include "app/texts.h"
#include "tests/support/recording_warnings.h"

namespace tarvel::testing {
namespace {

using Lines = std::vector<std::string>;

/// A library of ten lines of ten bytes: the byte at 10 * n stands in line n + 1.
const std::string kTenLines = [] {
  std::string lines;
  for (int i = 0; i < 10; ++i) lines += "123456789\n";
  return lines;
}();

class TagWarningsTest : public ::testing::Test {
 protected:
  Lines Reported() { return std::exchange(to_.lines, {}); }

  RecordingWarnings to_;
  FileWarnings file_{&to_, "l", kTenLines};
  TagWarnings warnings_{file_};
};

TEST_F(TagWarningsTest, AHeadLosesItsLastTwoBytes) {
  warnings_.StartEntry("@MISC{a,\n", 0);
  EXPECT_EQ(Reported(), Lines()) << "a comma and a line break";
  const Lines lost{
      "text-lost l:3 [b] the first line does not end with a comma and a line break: its last two "
      "bytes were cut"};
  for (const std::string_view head : {"@MISC{b,", "@MISC{b\n"}) {
    warnings_.StartEntry(head, 20);
    EXPECT_EQ(Reported(), lost) << head;
  }
  for (const std::string_view head : {"@MISC{b, \n", "@MISC{b, x = {1},"}) {
    warnings_.StartEntry(head, 20);
    EXPECT_EQ(Reported(),
              Lines{"broken-head l:3 [b] the first line does not end with the comma after the key: "
                    "without its last two bytes, which Clean tags cuts, BibTeX cannot read the "
                    "entry; delete what follows "
                    "the comma"})
        << head;
  }
}

TEST_F(TagWarningsTest, DroppedEntriesAreReportedWhenTheyHadMore) {
  const std::string library(41, 'x');
  warnings_.NoteDroppedWithoutKey(library, 30);
  EXPECT_EQ(Reported(), Lines{"entry-dropped l:4 [] an entry without a key was dropped"});
  const std::string closed = library + "}\n";
  const std::string blank_line = library + "\n  note = {x}";
  const std::string more = library + "  note = {x}\n}\n";
  warnings_.NoteDroppedAsEmpty("k", 40, closed, library.size());
  warnings_.NoteDroppedAsEmpty("k", 40, blank_line, library.size());
  warnings_.NoteDroppedAsEmpty("k", 40, library, library.size());
  EXPECT_EQ(Reported(), Lines()) << "only the next line counts";
  warnings_.NoteDroppedAsEmpty("k", 40, more, library.size());
  EXPECT_EQ(
      Reported(),
      Lines{
          "entry-dropped l:5 [k] the entry was dropped as empty, although it has the tag 'note'"});
  const std::string misread = library + "\n  title = {The owner},\n  Author = {Timestamp, A.}\n}\n";
  warnings_.NoteDroppedAsEmpty("k", 40, misread, misread.size() - 2);
  EXPECT_EQ(
      Reported(),
      Lines{
          "entry-dropped l:5 [k] the entry was dropped as empty, although it has the tag 'title'"});
  const std::string usual = library + "\n  OWNER = {x},\n  timestamp = {y}\n}\n";
  warnings_.NoteDroppedAsEmpty("k", 40, usual, usual.size() - 2);
  EXPECT_EQ(Reported(), Lines());
}

TEST_F(TagWarningsTest, WhatFollowsADroppedEntryIsText) {
  const std::string reported = "text-not-copied l:1 [] text outside tags was not copied: ";
  const std::string dropped = "entry-dropped l:1 [] an entry without a key was dropped";
  std::string library = "@MISC{,\n} % end\ntext\n@MISC{a,\n";
  warnings_.NoteDroppedWithoutKey(library, 7);
  warnings_.NoteSkippedOutside("} % end\ntext\n", 8);
  EXPECT_EQ(Reported(), (Lines{dropped, reported + "'% end'",
                               "text-not-copied l:2 [] text outside tags was not copied: "
                               "'text'"}))
      << "the next lines are a text of their own";
  warnings_.StartEntry("@MISC{a,\n", 29);
  warnings_.NoteDroppedWithoutKey(library, 7);
  warnings_.StartEntry("@MISC{a,\n", 29);
  EXPECT_EQ(Reported(), (Lines{dropped, reported + "'% end'"}));
  library = "@MISC{, {\nx\n@y\n} text\n";
  warnings_.NoteDroppedWithoutKey(library, 9);
  warnings_.NoteSkippedOutside("x\n@y\n", 10);
  EXPECT_EQ(Reported().size(), 2U) << "it ends before a line that begins with an @";
  warnings_.StartEntry("@MISC{a,\n", 29);
  library = "@MISC{, a = {b}}\n@x\n";
  warnings_.NoteDroppedWithoutKey(library, 16);
  warnings_.NoteSkippedOutside("@x\n", 17);
  EXPECT_EQ(Reported().size(), 2U) << "an entry of one line ends with it";
}

TEST_F(TagWarningsTest, TextBeforeTheFirstEntryIsReportedButNotTheHeader) {
  warnings_.NoteSkippedOutside(BibFileHeader, 0);
  warnings_.NoteSkippedOutside(std::string(BibFileHeader) + "\n% Encoding: UTF-8\n", 0);
  EXPECT_EQ(Reported(), Lines()) << "the header, also of an earlier run, and the encoding";
  warnings_.NoteSkippedOutside("text\nmore\n\nagain\n@STRING{x = {y}}\n", 20);
  EXPECT_EQ(Reported(), (Lines{"text-not-copied l:3 [] text outside tags was not copied: 'text'",
                               "text-not-copied l:4 [] text outside tags was not copied: 'again'"}))
      << "a text of several lines once, and no definition of a string";
  warnings_.NoteSkippedOutside("},\n,\n)\n", 20);
  EXPECT_EQ(Reported(), Lines()) << "what ends an entry or a tag is no text";
  warnings_.NoteSkippedOutside("  ,\nmore\n", 20);
  EXPECT_EQ(Reported(), Lines{"text-not-copied l:3 [] text outside tags was not copied: 'more'"});
  warnings_.StartEntry("@MISC{a,\n", 50);
  warnings_.NoteSkippedOutside("text\n", 60);
  EXPECT_EQ(Reported(), Lines()) << "what follows the first head is passed line by line";
}

TEST_F(TagWarningsTest, TextIsReportedOnceUpToTheNextTag) {
  const std::string reported = "text-not-copied l:2 [a] text outside tags was not copied: ";
  warnings_.StartEntry("@MISC{a,\n", 0);
  for (const std::string_view line : {"\n", "}\n", " },\n", "}"}) warnings_.NoteSkipped(line, 10);
  EXPECT_EQ(Reported(), Lines()) << "lines that say nothing";
  warnings_.NoteSkipped(" stray \n", 10);
  warnings_.NoteSkipped("more\n", 20);
  EXPECT_EQ(Reported(), Lines{reported + "'stray'"});
  warnings_.NoteTag("year = {1},\n", "year", true, 10);
  warnings_.NoteSkipped("again\n", 10);
  EXPECT_EQ(Reported(), Lines{reported + "'again'"});
  warnings_.NoteSkipped("isbn = {1},\n", 10);
  warnings_.NoteSkipped("and again\n", 10);
  EXPECT_EQ(Reported(), Lines{reported + "'and again'"})
      << "an unknown tag ends the text before it, too";
  warnings_.NoteSkipped(") after an entry\n", 10);
  EXPECT_EQ(Reported(), Lines{reported + "') after an entry'"});
  warnings_.StartEntry("@MISC{a,\n", 0);
  warnings_.NoteSkipped("anew\n", 10);
  EXPECT_EQ(Reported(), Lines{reported + "'anew'"});
}

TEST_F(TagWarningsTest, LinesOfADroppedValueAreNoText) {
  warnings_.StartEntry("@MISC{a,\n", 0);
  warnings_.NoteSkipped("  isbn = {1\n", 10);
  warnings_.NoteSkipped("  isbn = {2\n", 20);
  warnings_.NoteSkippedTag("  x = {3\n", 30);
  warnings_.NoteSkipped("}\n", 40);
  warnings_.NoteSkipped("}\n", 50);
  warnings_.NoteSkipped("stray\n", 60);
  warnings_.ReportTags();
  EXPECT_EQ(Reported(),
            (Lines{"text-not-copied l:7 [a] text outside tags was not copied: 'stray'",
                   "unknown-tag l:2 [] the tag 'isbn' is unknown and was dropped, times: 1"}));
}

TEST_F(TagWarningsTest, UnknownTagsAreCountedByTheirNames) {
  warnings_.StartEntry("@MISC{a,\n", 0);
  warnings_.NoteSkipped("isbn = {1},\n", 10);
  warnings_.NoteSkippedTag("keywords = {1},\n", 20);
  warnings_.NoteSkipped(" keywords={1},\n", 30);
  warnings_.NoteSkipped("KEYWORDS = {1},\n", 40);
  warnings_.NoteSkippedTag("no tag\n", 50);
  warnings_.ReportTags();
  EXPECT_EQ(
      Reported(),
      (Lines{"text-not-copied l:6 [a] text outside tags was not copied: 'no tag'",
             "unknown-tag l:3 [] the tag 'keywords' is never kept and was dropped, times: 2",
             "unknown-tag l:2 [] the tag 'isbn' is unknown and was dropped, times: 1",
             "unknown-tag l:5 [] the tag 'KEYWORDS' is never kept and was dropped, times: 1"}));
}

TEST_F(TagWarningsTest, NothingIsDoneForNobody) {
  FileWarnings nobody(nullptr, "l", kTenLines);
  TagWarnings warnings(nobody);
  warnings.NoteSkippedOutside("text\n", 0);
  warnings.StartEntry("@MISC{a\n", 0);
  warnings.NoteSkipped("isbn = {1}\n", 0);
  warnings.NoteSkippedTag("stray\n", 0);
  warnings.NoteTag("numpages = {1}\n", "pages", true, 0);
  warnings.ReportTags();
}

TEST_F(TagWarningsTest, TagsUnderOtherNamesAndTwiceAreReported) {
  warnings_.StartEntry("@MISC{a,\n", 0);
  warnings_.NoteTag(" Pages = {1},\n", "pages", true, 10);
  warnings_.NoteTag(" urldate = {1},\n", "url", false, 10);
  EXPECT_EQ(Reported(), Lines()) << "its own name, and a tag that is not written";
  warnings_.NoteTag(" numpages = {1},\n", "pages", true, 20);
  EXPECT_EQ(Reported(),
            (Lines{"renamed-tag l:3 [a] the tag 'numpages' was written as the tag 'pages'",
                   "tag-twice l:3 [a] the entry has the tag 'pages' twice now, from "
                   "'Pages' and from 'numpages'"}));
  warnings_.NoteTag("say the year of = x\n", "year", true, 30);
  EXPECT_EQ(Reported(), Lines{"renamed-tag l:4 [a] a line of text was written as the tag 'year'"});
  warnings_.StartEntry("@MISC{b,\n", 40);
  warnings_.NoteTag("pages = {1},\n", "pages", true, 50);
  EXPECT_EQ(Reported(), Lines()) << "of another entry";
}

TEST_F(TagWarningsTest, DefinitionsAreLostWhereNoEntryFollows) {
  warnings_.StartEntry("@MISC{a,\n", 0);
  warnings_.NoteSkipped("@STRING{x = {y}}\n", 10);
  warnings_.EndEntry(true);
  EXPECT_EQ(Reported(), Lines()) << "it is read again";
  warnings_.NoteSkipped("@STRING{x = {y}}\n", 10);
  warnings_.EndEntry(false);
  EXPECT_EQ(Reported().back(),
            "text-not-copied l:2 [] no entry follows the definition, and it was not copied: "
            "'@STRING{x = {y}}'");
}

}  // namespace
}  // namespace tarvel::testing
