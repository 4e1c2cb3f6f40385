// SPDX-License-Identifier: MIT
#include "ops/references/reference_warnings.h"

#include <gtest/gtest.h>

#include "tests/support/recording_warnings.h"

namespace tarvel::testing {
namespace {

using Lines = std::vector<std::string>;
using enum ReferenceValue;

class ReferenceWarningsTest : public ::testing::Test {
 protected:
  Lines Reported() { return std::exchange(to_.lines, {}); }

  RecordingWarnings to_;
  FileWarnings file_{&to_, "l", "one\ntwo\nthree\n"};
  ReferenceWarnings warnings_{file_};
  EntryValues values_;
};

TEST_F(ReferenceWarningsTest, NothingPrintedIsReportedOfTheEntry) {
  warnings_.StartEntry("a", 4);
  warnings_.ReportNothingPrinted("of the weather");
  EXPECT_EQ(Reported(), Lines{"nothing-printed l:2 [a] no reference was printed: of the weather"});
}

TEST_F(ReferenceWarningsTest, AValueThatWasNotReadIsAnEarlierEntrys) {
  const ReferenceValue shown[] = {kBibitem, kAuthor, kVolume};
  values_[kBibitem] = "name";
  values_[kAuthor] = "A";
  values_[kVolume] = "1";
  warnings_.StartEntry("a", 0);
  warnings_.NoteRead(kAuthor, "author", "author = {A},\n", 4);
  warnings_.NoteRead(kVolume, "volume", " Volume={1}\n", 4);
  warnings_.ReportValues(shown, values_, "");
  EXPECT_EQ(Reported(), Lines()) << "values of its own, and a name";

  warnings_.StartEntry("b", 4);
  warnings_.NoteRead(kVolume, "volume", "volume = {1},\n", 4);
  warnings_.ReportValues(shown, values_, "");
  EXPECT_EQ(Reported(), Lines{"carried-over l:2 [b] shows the author of the earlier entry 'a'"});

  warnings_.StartEntry("c", 8);
  warnings_.ReportValues(std::span(shown).first(2), values_, "");
  EXPECT_EQ(Reported(), Lines{"carried-over l:3 [c] shows the author of the earlier entry 'a'"})
      << "a value that is not shown is no matter";
  warnings_.ReportValues(shown, values_, "");
  EXPECT_EQ(Reported().back(), "carried-over l:3 [c] shows the volume of the earlier entry 'b'");
}

TEST_F(ReferenceWarningsTest, ATagThatStandsTwiceIsReported) {
  const ReferenceValue shown[] = {kBibitem, kYear};
  values_[kYear] = "2";
  const Lines twice{
      "tag-twice l:3 [a] the tag 'year' stands twice in the entry: the reference shows the last "
      "one"};
  const auto read = [&](std::string_view first, std::string_view second, std::string_view text) {
    warnings_.StartEntry("a", 3);
    warnings_.NoteRead(kYear, "year", first, 4);
    warnings_.NoteRead(kYear, "year", "title = {of the year}", 6);
    warnings_.NoteRead(kYear, "year", second, 9);
    warnings_.ReportValues(shown, values_, text);
    return Reported();
  };
  EXPECT_EQ(read("year = {1}", "Year = {2}", "two\nthree\n"), twice);
  EXPECT_EQ(read("year = {1}", "year = {2}", "a{\n}b"), twice) << "a brace of a value's";
  EXPECT_EQ(read("yearfiled = {1}", "year = {2}", "two\nthree\n"), Lines());
  EXPECT_EQ(read("year = {1}", "year = {2}", "\n}\nree\n"), Lines()) << "after the entry's end";
  EXPECT_EQ(read("year = {1}", "year = {2}", "\n@x\ne\n"), Lines()) << "of another entry";
  warnings_.StartEntry("b", 8);
  warnings_.NoteRead(kYear, "year", "year = {1}, year = {2}", 9);
  warnings_.NoteRead(kYear, "year", "year = {1}, year = {2}", 9);
  warnings_.ReportValues(shown, values_, "");
  EXPECT_EQ(Reported(), Lines()) << "read twice from one line";
}

TEST_F(ReferenceWarningsTest, ValuesThatAreMissingAreNamedAtOnce) {
  const ReferenceValue shown[] = {kBibitem, kAuthor, kYear, kPages};
  warnings_.StartEntry("a", 4);
  values_[kAuthor] = "A";
  warnings_.NoteRead(kAuthor, "author", "author = {A},\n", 4);
  warnings_.ReportValues(shown, values_, " Crossref = {x},\n");
  EXPECT_EQ(Reported(),
            Lines{"value-missing l:2 [a] the reference shows nothing for 'year', 'pages'; "
                  "'crossref' is not followed"});
  values_[kYear] = "1";
  warnings_.NoteRead(kYear, "year", "year = {1},\n", 4);
  warnings_.ReportValues(shown, values_, "");
  EXPECT_EQ(Reported(), Lines{"detail-missing l:2 [a] the reference shows nothing for 'pages'"});
}

TEST_F(ReferenceWarningsTest, ValuesOfOtherTagsAreReportedWhereTheyAreShown) {
  const ReferenceValue shown[] = {kPages, kYear, kAuthor};
  values_[kPages] = values_[kYear] = values_[kAuthor] = "5";
  warnings_.StartEntry("a", 0);
  warnings_.NoteRead(kPages, "pages", "pages = {1},\n", 4);
  warnings_.NoteRead(kPages, "pages", "numpages = {5},\n", 8);
  warnings_.NoteRead(kYear, "year", "in the year of {5}\n", 8);
  warnings_.NoteRead(kAuthor, "author", " title = {5}, author = {6}\n", 4);
  warnings_.NoteRead(kTitle, "title", " booktitle = {5}\n", 4);
  warnings_.ReportValues(shown, values_, "");
  EXPECT_EQ(Reported(),
            (Lines{"other-tag l:3 [a] the value of 'pages' is read from the line of 'numpages'",
                   "other-tag l:3 [a] the value of 'year' is read from a line of text that "
                   "mentions it",
                   "other-tag l:2 [a] the value of 'author' is read from the line of 'title', "
                   "which it shares"}));
  warnings_.NoteRead(kPages, "pages", "pages = {1},\n", 4);
  warnings_.ReportValues(std::span(shown).first(1), values_, "");
  EXPECT_EQ(Reported(), Lines()) << "the later line has it";
}

TEST_F(ReferenceWarningsTest, BracesThatDoNotMatchAndRawEditorsAreReported) {
  warnings_.StartEntry("a", 0);
  for (const std::string_view good : {"", "x", "{A} b {\\'e}", "a \\{ b", "{a {b}}"}) {
    values_[kTitle] = good;
    warnings_.ReportUnbalanced(std::array{kTitle}, values_);
    EXPECT_EQ(Reported(), Lines()) << good;
  }
  for (const std::string_view bad : {"of {DNA", "DNA} and {RNA}", "a}{b"}) {
    values_[kTitle] = bad;
    warnings_.ReportUnbalanced(std::array{kTitle}, values_);
    EXPECT_EQ(Reported(), Lines{"unbalanced l:1 [a] the braces of the 'title' do not match, which "
                                "stops LaTeX: '" +
                                std::string(bad) + "'"});
  }
  values_[kEditor] = "A. Moe";
  warnings_.ReportRawEditors(values_);
  EXPECT_EQ(Reported(), Lines()) << "no list";
  values_[kEditor] = "Moe, A. and Zoe, B.";
  warnings_.ReportRawEditors(values_);
  EXPECT_EQ(Reported(), Lines{"raw-editors l:1 [a] the 'editor' is printed as it is, not in the "
                              "form of the style: 'Moe, A. and Zoe, B.'"});
}

TEST_F(ReferenceWarningsTest, ACommandThatWasCutIsNamed) {
  warnings_.StartEntry("a", 0);
  warnings_.NoteCut(kTitle, "\\slash");
  values_[kTitle] = "ash";
  warnings_.ReportCommands(std::array{kTitle, kAuthor}, values_);
  EXPECT_EQ(Reported(),
            Lines{"command-cut l:1 [a] only the beginning of '\\slash' was replaced in the "
                  "'title'"});
}

TEST_F(ReferenceWarningsTest, TheFirstCommandOfAValueIsNamed) {
  struct Case {
    std::string_view value, command;
  };
  for (const Case& c : {Case{"a \\foo b \\bar", "\\foo"}, Case{"\\'e", "\\'"}, Case{"x\\", "\\"},
                        Case{"\\a1", "\\a"}, Case{"\\\xC3\xA9", "\\\xC3"}}) {
    values_[kTitle] = c.value;
    values_[kBibitem] = "\\bibitem{a}";
    warnings_.StartEntry("a", 0);
    warnings_.ReportCommands(std::array{kBibitem, kTitle}, values_);
    EXPECT_EQ(Reported(),
              Lines{"command-left l:1 [a] '" + std::string(c.command) + "' is left in the title"});
  }
  values_[kTitle] = "plain";
  warnings_.ReportCommands(std::array{kBibitem, kTitle}, values_);
  EXPECT_EQ(Reported(), Lines());
}

}  // namespace
}  // namespace tarvel::testing
