// SPDX-License-Identifier: MIT
#include "ops/entries/entry_warnings.h"

#include <gtest/gtest.h>

#include "core/line_stream.h"
#include "tests/support/recording_warnings.h"

namespace tarvel::testing {
namespace {

using Lines = std::vector<std::string>;

const TypeGroup& GroupOf(std::string_view type) { return DoublesRuleFor(type).rule->group; }

std::vector<Misread> MisreadOf(std::string_view type, const std::string& library) {
  LineStream stream(library);
  EntryRecord record;
  record.Start(*stream.ReadLine(limits::kPairLine));
  TagReader(kDoublesTags).ReadEntry(stream, record);
  return MisreadValues(GroupOf(type), record, stream.Bytes());
}

TEST(MisreadValues, AreOfTheComparedTagsOnly) {
  const std::string entry =
      "@article{a,\n journal = {J},\n volume = {1},\n year = {2},\n pages = {3},\n";
  EXPECT_TRUE(MisreadOf("ARTICLE", entry + "}\n").empty());
  EXPECT_TRUE(MisreadOf("ARTICLE", entry + " shortauthor = {X},\n}\n").empty());
  const auto misread = MisreadOf("ARTICLE", entry + " numpages = {5},\n}\n");
  ASSERT_EQ(misread.size(), 1U);
  EXPECT_EQ(misread[0].tag, "pages");
  EXPECT_EQ(misread[0].offset, entry.size());
  RecordingWarnings to;
  FileWarnings warnings(&to, "l", entry);
  ReportMisread({{"pages", "numpages", 0}, {"title", "booktitle", 0}, {"year", "", 14}}, "a",
                warnings);
  EXPECT_EQ(to.lines,
            (Lines{"other-tag l:1 [a] the value of 'pages' is read from the line of 'numpages'",
                   "other-tag l:2 [a] the value of 'year' is read from a line of text that "
                   "mentions it"}));
}

std::vector<std::string_view> DifferingTags(std::string_view dropped, std::string_view kept) {
  return KeptEntryFacts(kept).DifferingTags(dropped);
}

TEST(DifferingTags, AreThoseThatBothHave) {
  const std::string one = "@misc{a,\n title = {A {B}: c},\n year = 2001,\n doi = {1},\n}\n";
  using Names = std::vector<std::string_view>;
  EXPECT_EQ(DifferingTags(one, "@misc{b,\n Title = \"a b, C\",\n year = {2001},\n doi = {1}\n"),
            Names());
  EXPECT_EQ(DifferingTags(one, "@misc{b,\n title = {Other},\n doi = {2},\n eprint = {3}\n"),
            (Names{"title", "year", "doi"}));
  EXPECT_EQ(DifferingTags("@misc", "@misc{b"), Names());
}

TEST(DifferingTags, AreNoneForAnyOfSeveralValues) {
  const std::string kept = "@misc{a,\n doi = {2},\n doi = {1},\n doi = {3},\n}\n";
  for (const std::string doi : {"1", "2", "3"}) {
    EXPECT_TRUE(DifferingTags("@misc{b,\n doi = {" + doi + "},\n}\n", kept).empty()) << doi;
  }
  EXPECT_FALSE(DifferingTags("@misc{b,\n doi = {4},\n}\n", kept).empty());
}

TEST(DifferingTags, HoldAllPiecesOfAValue) {
  EXPECT_EQ(DifferingTags("@misc{a,\n doi = {1} # {2},\n}\n", "@misc{a,\n doi = {1},\n}\n"),
            std::vector<std::string_view>{"doi"});
}

/// The tags that BibTeX does not read of the first entry, and why.
std::string Unread(std::string_view kept, std::string_view dropped) {
  const UnreadTags unread = KeptEntryFacts(kept).UnreadOf(dropped);
  std::string text;
  for (const std::string& tag : unread.tags) text += tag + " ";
  return unread.tags.empty() ? "" : text + "| " + unread.why;
}

TEST(UnreadOf, IsWhatBibTeXReadsOfTheOtherOnly) {
  const std::string whole = "@misc{a,\n title = {T},\n year = 2001,\n note = {n}\n}\n";
  EXPECT_EQ(Unread(whole, "@misc{b,\n title = {T},\n doi = {1},\n}\n"), "")
      << "what it does not hold it need not show";
  EXPECT_EQ(Unread("@misc{a, % mine\n title = {T},\n}\n", whole),
            "title | the name of a tag was expected");
  EXPECT_EQ(Unread("@misc{a\n title = {T},\n}\n", "@misc{b\n title = {T},\n}\n"), "")
      << "neither can be read";
  EXPECT_EQ(Unread("@misc{a % mine\n , title = {T}\n}\n", "@misc{b\n , title = {T}\n}\n"),
            "title | a comma, or the end of the entry, is missing after the key");
  EXPECT_EQ(Unread("@misc{a,\n note = {n}},\n title = {T},\n}\n", whole),
            "title | the entry ends before them");
  EXPECT_EQ(Unread("@misc{a, % mine\n title = {T},\n}\n", "@misc{b, % mine\n title = {T},\n}\n"),
            "")
      << "copies";
  EXPECT_EQ(Unread("no entry, a = {b}", whole), "");
}

TEST(ReportUnread, NamesTheTags) {
  RecordingWarnings to;
  FileWarnings warnings(&to, "l", "one\ntwo\n");
  const EqualEntries equal{"a", "b", 4, "was dropped as a duplicate of"};
  ReportUnread(equal, {}, warnings);
  EXPECT_EQ(to.lines, Lines());
  ReportUnread(equal, {{"title", "year"}, "why"}, warnings);
  EXPECT_EQ(to.lines,
            Lines{"dropped-differs l:2 [a] the entry was dropped as a duplicate of 'b', of "
                  "which BibTeX reads no 'title', 'year': why"});
}

TEST(ParentOf, IsTheValueOfTheTagOnly) {
  EXPECT_EQ(ParentOf("@misc{a,\n CrossRef = {p},\n}"), "p");
  EXPECT_EQ(ParentOf("@misc{a,\n crossref = \"p\"\n}"), "p");
  EXPECT_EQ(ParentOf("@misc{crossref,\n note = {crossref = {p}},\n}"), std::nullopt);
  EXPECT_EQ(ParentOf("@misc{a,\n note = {n},\n}"), std::nullopt);
}

TEST(KeysAnyCase, IgnoreLetterCase) {
  KeysAnyCase keys;
  keys.Add("Doe:2001");
  EXPECT_TRUE(keys.Has("doe:2001"));
  EXPECT_FALSE(keys.Has("doe:2002"));
}

TEST(ReportCutEntry, NamesTheTagsThatAreLost) {
  const std::string library = "@misc{a,\n note = {x%\n}},\n title = {T},\n}\n";
  const std::size_t end = library.find(" title");
  RecordingWarnings to;
  FileWarnings warnings(&to, "l", library);
  ReportCutEntry(library, {std::string_view(library).substr(0, end), end}, warnings);
  EXPECT_EQ(to.lines, Lines{"cut-entry l:3 [a] the entry was copied only up to a '}' that begins a "
                            "line inside a value; the rest is not in the new library: 'title'"});
  ReportCutEntry("@misc{a,\n note = {x}\n}\n", {"@misc{a,\n note = {x}\n}\n", 23}, warnings);
  EXPECT_EQ(to.lines.size(), 1U);
}

TEST(EntryTextAt, EndsBeforeTheClosingLine) {
  const std::string library = "x\n@misc{a,\n y = {z}\n}\nmore\n";
  EXPECT_EQ(EntryTextAt(library, {2, library.find("more")}), "@misc{a,\n y = {z}");
}

TEST(EntryTextAt, GoesOnInAValueToTheNextEntryAtMost) {
  const std::string open = "@misc{a,\n y = {z\n}\n w\n";
  const auto text = [&](const std::string& rest) {
    return std::string(EntryTextAt(open + rest, {0, open.find(" w")}));
  };
  EXPECT_EQ(text("}\nmore\n"), open.substr(0, open.size() - 1));
  EXPECT_EQ(text("@comment{c}\n}\n"), open);
  EXPECT_EQ(text(" @misc{b,\n}\n"), open);
  EXPECT_EQ(text(" me@home\n}\n"), open + " me@home");
  EXPECT_EQ(text("v"), open + "v");
}

TEST(EntryTextAt, GoesNoFurtherThanAPieceOfALongLine) {
  const std::string library = "@misc{a, y = {{{z} } @misc{b, y = {w}\n}\n";
  const std::size_t end = library.find("@misc{b");
  EXPECT_EQ(EntryTextAt(library, {0, end}), library.substr(0, end));
}

TEST(ReportVerdict, NamesWhatMakesItDoubtful) {
  RecordingWarnings to;
  FileWarnings warnings(&to, "l", "");
  const EqualEntries entries{.key = "b", .other = "a", .offset = 0, .verdict = "equals"};
  ReportVerdict(entries, {}, {}, warnings);
  EXPECT_EQ(to.lines, Lines());
  ReportVerdict(entries, {{"title", "booktitle", 0}}, {"title", "year"}, warnings);
  EXPECT_EQ(to.lines,
            (Lines{"weak-verdict l:1 [b] the entry equals 'a', but 'title' is read from the line "
                   "of 'booktitle'",
                   "dropped-differs l:1 [b] the entry equals 'a', but they differ in 'title', "
                   "'year'; check whether it is another work"}));
}

}  // namespace
}  // namespace tarvel::testing
