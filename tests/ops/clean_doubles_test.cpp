// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ops/operations.h"
#include "tests/support/memory_files.h"
#include "tests/support/outcome.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using namespace tarvel::testing;
using std::string_view_literals::operator""sv;

using Tags = std::map<std::string, std::string>;

struct Cleaned {
  int result = 0;
  std::string log;      // after the header
  std::string library;  // after the header
  std::vector<std::string> warnings;
  std::string printed;
};

Cleaned Clean(const std::string& library) {
  RecordingReporter reporter;
  MemoryFiles files;
  files.files["/d/lit.bib"] = library;
  Cleaned outcome;
  RecordingWarnings warnings;
  RunContext run = MemoryRun(files, "/d/lit.bib");
  run.warnings = &warnings;
  outcome.result = RunCleanDoubles(run);
  outcome.log = WithoutStart(files.files["/d/lit_double.log"], kLogHeader);
  outcome.library = WithoutStart(files.files["/d/lit_double.bib"], kBibHeader);
  outcome.warnings = warnings.TextsOf(WarningKind::kOverwritten);
  outcome.printed = reporter.printed;
  EXPECT_EQ(files.files["/d/lit.bib"], library) << "the input is never changed";
  return outcome;
}

std::string Summary(int count) {
  return "\n\n\n" + std::to_string(count) +
         " BibTeX entries from the BibTeX file\n    '/d/lit.bib'\n"
         "were not written into the new BibTeX file\n    '/d/lit_double.bib'.";
}

std::string Entry(const std::string& type, const std::string& key, const Tags& tags) {
  std::string text = "@" + type + "{" + key + ",\n";
  for (const auto& [name, value] : tags) text.append("  " + name + " = {" + value + "},\n");
  return text + "}\n";
}

/// What the log must say of a group, with names of tags between "<" and ">" for their values.
struct Row {
  std::vector<std::string> types;
  std::vector<std::string> compared;
  std::string detail;
  std::string probable;  // with "<A>" and "<B>" for the keys of the later and the earlier entry
  std::string closing;
};

const std::vector<Row> kRows = {
    {{"BOOK", "INCOLLECTION", "INPROCEEDINGS", "CONFERENCE", "UNPUBLISHED", "INBOOK", "TECHREPORT",
      "PHDTHESIS", "MASTERTHESIS"},
     {"author", "title", "year"},
     "Author: <author> Title: <title> Year: <year>\n",
     "Probably the same: <A> <B>\n",
     "     Bibitem <A> stays, item <B> out\n\n"},
    {{"ARTICLE"},
     {"journal", "volume", "year", "pages"},
     "Journal: <journal> Volume: <volume> Year: <year> Pages: <pages>\n",
     "Probably the same: <A> <B>\n",
     "     Bibitem <B> stays, item <A> out\n\n"},
    {{"BOOKLET", "MANUAL", "STANDARD"},
     {"title"},
     "Title: <title> \n",
     "Probably the same: <A> <B>\n",
     "     Bibitem <A> stays, item <B> out\n\n"},
    {{"ELECTRONIC"},
     {"url"},
     "URL: <url> \n",
     "Probably the same : <A> and <B>\n",
     "     One BibTeX entry stays\n\n"},
    {{"MISC"},
     {"note"},
     "Note: <note> \n",
     "Probably the same : <A> and <B>\n",
     "     One BibTeX entry stays\n\n"},
    {{"PERIODICAL", "PROCEEDINGS"},
     {"title", "year"},
     "Title: <title> Year: <year>\n",
     "Probably the same : <A> and <B>\n",
     "     One BibTeX entry stays\n\n"},
    {{"PATENT"},
     {"nationality", "number", "year"},
     "Nationality: <nationality> Number: <number> Year: <year>\n",
     "Probably the same : <A> and <B>\n",
     "     One BibTeX entry stays\n\n"},
};

const std::vector<std::string> kTypesWithoutGroup = {"PROCEEDINGSPAPER",
                                                     "MEETINGABSTRACT",
                                                     "EDITORIALMATERIAL",
                                                     "REVIEW",
                                                     "LETTER",
                                                     "ARTICLE ",
                                                     "BOOKS"};

Tags AllTags() {
  return {{"journal", "vj"}, {"year", "vy"},       {"pages", "vp"}, {"volume", "vv"},
          {"author", "va"},  {"title", "vt"},      {"url", "vu"},   {"note", "vn"},
          {"number", "vm"},  {"nationality", "vl"}};
}

std::string Filled(std::string text, const Tags& values) {
  for (const auto& [name, value] : values) {
    const std::size_t at = text.find("<" + name + ">");
    if (at != std::string::npos) text.replace(at, name.size() + 2, value);
  }
  return text;
}

std::string Details(const Row& row, const Tags& later, const Tags& earlier) {
  return "     1.: " + Filled(row.detail, later) + "     2.: " + Filled(row.detail, earlier);
}

/// Calls `check` with every group and each of its types.
template <typename Check>
void ForEveryType(Check check) {
  for (const Row& row : kRows) {
    for (const std::string& type : row.types) {
      SCOPED_TRACE(type);
      check(row, type);
    }
  }
}

TEST(CleanDoubles, DropsAnEntryWithTheSameKeyAndTheSameContent) {
  ForEveryType([](const Row& row, const std::string& type) {
    const std::string first = Entry(type, "k", AllTags());
    Tags other = AllTags();
    for (auto& [name, value] : other) value += "2";
    for (const std::string& name : row.compared) other[name] = AllTags()[name];
    const Cleaned out = Clean(first + Entry(type, "k", other));
    EXPECT_EQ(out.result, 1);
    EXPECT_EQ(out.library, first + "\n");
    EXPECT_EQ(out.log, "Exactly the same : k and k\n" + Details(row, other, AllTags()) +
                           "     One BibTeX entry stays\n\n" + Summary(1));
  });
}

TEST(CleanDoubles, RenamesAnEntryWithTheSameKeyAndAnyDifferentTag) {
  ForEveryType([](const Row& row, const std::string& type) {
    for (const std::string& name : row.compared) {
      SCOPED_TRACE(name);
      Tags other = AllTags();
      other[name] = "else";
      const Cleaned out = Clean(Entry(type, "k", AllTags()) + Entry(type, "k", other));
      EXPECT_EQ(out.result, 1);
      // After the first entry, over its empty line.
      EXPECT_EQ(out.library, Entry(type, "k", AllTags()) + Entry(type, "k_a", other) + "\n");
      EXPECT_EQ(out.log, "Two identical bibitems (k and k) were found with different content:\n" +
                             Details(row, other, AllTags()) +
                             "     New name for bibitem No.1: from k to k_a\n\n" + Summary(1));
      EXPECT_TRUE(out.warnings.empty());
    }
  });
}

TEST(CleanDoubles, KeepsBothWhenEitherLacksAComparedTag) {
  ForEveryType([](const Row& row, const std::string& type) {
    for (const std::string& name : row.compared) {
      for (const std::string second_key : {"k", "l"}) {
        SCOPED_TRACE(name + " " + second_key);
        Tags missing = AllTags();
        missing.erase(name);
        const std::string whole = Entry(type, "k", AllTags());
        const std::string lacking = Entry(type, second_key, missing);
        EXPECT_EQ(Clean(whole + lacking).library, whole + "\n" + lacking + "\n");
        EXPECT_EQ(Clean(lacking + whole).library, lacking + "\n" + whole + "\n");
        EXPECT_EQ(Clean(lacking + lacking).library, lacking + "\n" + lacking + "\n");
        EXPECT_EQ(Clean(whole + lacking).log, Summary(0));
        EXPECT_EQ(Clean(lacking + whole).log, Summary(0));
        Tags empty = AllTags();
        empty[name] = "";
        EXPECT_EQ(Clean(whole + Entry(type, second_key, empty)).log, Summary(0)) << "empty value";
      }
    }
  });
}

TEST(CleanDoubles, DropsAnEntryOfTheSameTypeWithTheSameContentUnderAnotherKey) {
  ForEveryType([](const Row& row, const std::string& type) {
    const std::string first = Entry(type, "old", AllTags());
    Tags other = AllTags();
    for (auto& [name, value] : other) value += "2";
    for (const std::string& name : row.compared) other[name] = AllTags()[name];
    const Cleaned out = Clean(first + Entry(type, "new", other));
    EXPECT_EQ(out.library, first + "\n");
    const Tags keys = {{"A", "new"}, {"B", "old"}};
    EXPECT_EQ(out.log, Filled(row.probable, keys) + Details(row, other, AllTags()) +
                           Filled(row.closing, keys) + Summary(1));
  });
}

TEST(CleanDoubles, KeepsBothUnderDifferentKeysWhenAnyTagOrTheTypeDiffers) {
  ForEveryType([](const Row& row, const std::string& type) {
    const std::string first = Entry(type, "old", AllTags());
    for (const std::string& name : row.compared) {
      Tags other = AllTags();
      other[name] = "V" + other[name].substr(1);  // letter case counts
      const Cleaned out = Clean(first + Entry(type, "new", other));
      EXPECT_EQ(out.library, first + "\n" + Entry(type, "new", other) + "\n") << name;
      EXPECT_EQ(out.log, Summary(0)) << name;
    }
    for (const Row& other_row : kRows) {
      for (const std::string& other_type : other_row.types) {
        if (other_type == type) continue;
        const std::string second = Entry(other_type, "new", AllTags());
        EXPECT_EQ(Clean(first + second).library, first + "\n" + second + "\n") << other_type;
        EXPECT_EQ(Clean(first + second).log, Summary(0)) << other_type;
      }
    }
  });
}

TEST(CleanDoubles, UnderTheSameKeyOnlyTheTypeOfTheLaterEntryDecides) {
  ForEveryType([](const Row& row, const std::string& type) {
    for (const std::string earlier_type : {"ARTICLE", "BOOK", "OTHER", "LETTER", "PATENT"}) {
      SCOPED_TRACE(earlier_type);
      const std::string first = Entry(earlier_type, "k", AllTags());
      EXPECT_EQ(Clean(first + Entry(type, "k", AllTags())).log,
                "Exactly the same : k and k\n" + Details(row, AllTags(), AllTags()) +
                    "     One BibTeX entry stays\n\n" + Summary(1));
      Tags other = AllTags();
      other[row.compared.back()] = "else";
      EXPECT_EQ(Clean(first + Entry(type, "k", other)).log,
                "Two identical bibitems (k and k) were found with different content:\n" +
                    Details(row, other, AllTags()) +
                    "     New name for bibitem No.1: from k to k_a\n\n" + Summary(1));
    }
  });
}

TEST(CleanDoubles, TypesWithoutAGroupAreNeverDoubles) {
  for (const std::string& type : kTypesWithoutGroup) {
    const std::string entry = Entry(type, "k", AllTags());
    const std::string other = Entry(type, "l", AllTags());
    const Cleaned out = Clean(entry + entry + other);
    EXPECT_EQ(out.library, entry + "\n" + entry + "\n" + other + "\n") << type;
    EXPECT_EQ(out.log, Summary(0)) << type;
    // Nor does an entry of a group become one by such an entry under another key.
    EXPECT_EQ(Clean(entry + Entry("ARTICLE", "l", AllTags())).log, Summary(0)) << type;
  }
}

TEST(CleanDoubles, OtherIsNotedUnderTheSameKeyWhateverTheContentAndAlwaysKept) {
  const std::string note =
      "............. The item (@OTHER) names are equal (k and k), but not the content.\n";
  const std::string other = Entry("OTHER", "k", AllTags());
  const Cleaned twice = Clean(other + other + other);
  EXPECT_EQ(twice.library, other + "\n" + other + "\n" + other + "\n");
  EXPECT_EQ(twice.log, note + note + note + Summary(0)) << "one for each earlier entry";
  EXPECT_EQ(Clean(Entry("LETTER", "k", {}) + other).log, note + Summary(0))
      << "the type of the earlier entry does not matter";
  EXPECT_EQ(Clean(other + Entry("LETTER", "k", {})).log, Summary(0));
  EXPECT_EQ(Clean(other + Entry("OTHER", "l", AllTags())).log, Summary(0));
}

TEST(CleanDoubles, KeysKeepTheirLetterCaseAndAreComparedWithIt) {
  const std::string first = Entry("BOOK", "Smith2001", AllTags());
  const Cleaned out = Clean(first + Entry("BOOK", "smith2001", AllTags()));
  EXPECT_EQ(out.library, first + "\n");
  EXPECT_TRUE(out.log.starts_with("Probably the same: smith2001 Smith2001\n")) << out.log;
}

TEST(CleanDoubles, ASecondConflictAnywhereGetsTheNextLetter) {
  const auto misc = [](const std::string& key, const std::string& note) {
    return Entry("MISC", key, {{"note", note}});
  };
  // The second conflict is after the last entry, so nothing is lost.
  const Cleaned out = Clean(misc("k", "1") + misc("k", "2") + misc("l", "3") + misc("l", "4"));
  EXPECT_EQ(out.library,
            misc("k", "1") + misc("k_a", "2") + "\n" + misc("l", "3") + misc("l_b", "4") + "\n");
  EXPECT_TRUE(out.log.ends_with("from l to l_b\n\n" + Summary(2))) << out.log;
  EXPECT_TRUE(out.warnings.empty());
}

TEST(CleanDoubles, EveryPairOfEmptyKeysIsLogged) {
  const std::string line = "There are empty bibitems!\n";
  const std::string none = Entry("BOOK", "", {});
  EXPECT_EQ(Clean(none + none).log, line + Summary(0));
  EXPECT_EQ(Clean(none + none + none).log, line + line + line + Summary(0));
  EXPECT_EQ(Clean(none + none + none).library, none + "\n" + none + "\n" + none + "\n");
  EXPECT_EQ(Clean(none + Entry("OTHER", "", {})).log, line + Summary(0));
  EXPECT_EQ(Clean(none + Entry("BOOK", "k", {}) + none).log, line + Summary(0));
}

TEST(CleanDoubles, EmptyKeysAreLoggedOnlyUpToTheEntryThatStopsTheSearch) {
  const std::string line = "There are empty bibitems!\n";
  const std::string none = Entry("LETTER", "", {});
  const std::string booklet = Entry("BOOKLET", "", {{"title", "t"}});
  const std::string stop =
      "Probably the same:  \n     1.: Title: t \n     2.: Title: t \n"
      "     Bibitem  stays, item  out\n\n";
  EXPECT_EQ(Clean(booklet + none + booklet).log, line + line + stop + Summary(1));
  EXPECT_EQ(Clean(none + booklet + none + booklet).log,
            line + line + line + line + line + stop + Summary(1));
}

TEST(CleanDoubles, TheFirstEntryOfTheNewLibraryThatDecidesIsTheOneThatDoes) {
  const auto book = [](const std::string& key, const std::string& title) {
    return Entry("BOOKLET", key, {{"title", title}});
  };
  EXPECT_TRUE(Clean(book("a", "1") + book("b", "2") + book("b", "1"))
                  .log.starts_with("Probably the same: b a\n"))
      << "equal content under another key stands before the same key";
  EXPECT_TRUE(Clean(book("b", "2") + book("a", "1") + book("b", "1"))
                  .log.starts_with("Two identical bibitems (b and b)"))
      << "and after it";
  EXPECT_TRUE(Clean(Entry("BOOKLET", "b", {}) + book("a", "1") + book("b", "1"))
                  .log.starts_with("Probably the same: b a\n"))
      << "the same key without a title decides nothing";
}

TEST(CleanDoubles, OnlyTheFirstPageIsCompared) {
  const auto article = [](const std::string& key, const std::string& pages) {
    Tags tags = AllTags();
    tags["pages"] = pages;
    return Entry("ARTICLE", key, tags);
  };
  EXPECT_TRUE(Clean(article("k", "100-110") + article("l", "100--115")).log.find("Pages: 100\n") !=
              std::string::npos);
  EXPECT_EQ(Clean(article("k", "-3") + article("l", "-3")).log, Summary(0)) << "no first page";
}

TEST(CleanDoubles, TheFirstTagNameOnALineDecidesWhoseValueItIs) {
  // In this order, so that each line belongs to the first name.
  const std::vector<std::string> order = {"journal", "year", "pages", "volume", "author",
                                          "title",   "url",  "note",  "number", "nationality"};
  const std::map<std::string, std::pair<std::string, Tags>> told_by = {
      {"journal", {"ARTICLE", {{"volume", "1"}, {"year", "1"}, {"pages", "1"}}}},
      {"year", {"PERIODICAL", {{"title", "1"}}}},
      {"pages", {"ARTICLE", {{"volume", "1"}, {"year", "1"}, {"journal", "1"}}}},
      {"volume", {"ARTICLE", {{"pages", "1"}, {"year", "1"}, {"journal", "1"}}}},
      {"author", {"BOOK", {{"title", "1"}, {"year", "1"}}}},
      {"title", {"BOOKLET", {}}},
      {"url", {"ELECTRONIC", {}}},
      {"note", {"MISC", {}}},
      {"number", {"PATENT", {{"nationality", "1"}, {"year", "1"}}}},
      {"nationality", {"PATENT", {{"number", "1"}, {"year", "1"}}}}};
  for (std::size_t first = 0; first < order.size(); ++first) {
    for (std::size_t second = first + 1; second < order.size(); ++second) {
      auto [type, tags] = told_by.at(order[first]);
      // Both names stand on the line, the later one of the order in front.
      tags[order[second] + " or " + order[first]] = "value";
      const Cleaned out = Clean(Entry(type, "k", tags) + Entry(type, "l", tags));
      EXPECT_TRUE(out.log.starts_with("Probably the same")) << order[first] << " " << order[second];
    }
  }
}

TEST(CleanDoubles, LinesOutsideEntriesAreNotCopied) {
  const std::string entry = Entry("LETTER", "k", {{"title", "t"}});
  const Cleaned out = Clean("% text\n@STRING{a = {b}}\n@preamble{\"x\"}\n" + entry +
                            "free text\n\n@string{c = {d}}\n" + entry + "@comment{x}\n");
  EXPECT_EQ(out.library, entry + "\n" + entry + "\n");
}

TEST(CleanDoubles, EveryCopiedLineHasItsTypeWordsUpperCased) {
  const Cleaned out = Clean("@book{Key,\n  title = {mail x@y {z}},\n@comment{jabref-x}\n}\n");
  EXPECT_EQ(out.library, "@BOOK{Key,\n  title = {mail x@Y {z}},\n@COMMENT{jabref-x}\n}\n\n");
}

TEST(CleanDoubles, ValuesAreComparedAsTheyStandInEachLibrary) {
  // The copy of the first entry has "X@Y {z}" where the second still has "X@y {z}".
  const std::string title = "  title = {X@y {z}},\n}\n";
  const Cleaned out = Clean("@booklet{k,\n" + title + "@booklet{k,\n" + title);
  EXPECT_EQ(out.log,
            "Two identical bibitems (k and k) were found with different content:\n"
            "     1.: Title: X@y {z} \n     2.: Title: X@Y {z} \n"
            "     New name for bibitem No.1: from k to k_a\n\n" +
                Summary(1));
}

TEST(CleanDoubles, AnEntryIsCopiedUpToTheFirstBraceLineEvenIfItGoesOn) {
  // "} title" names a tag: it does not end the reading of the tags, but it ends the copy.
  const Cleaned out = Clean("@misc{k,\n} title\n  note = {n},\n}\n@misc{l,\n  note = {n},\n}\n");
  EXPECT_EQ(out.library, "@MISC{k,\n} title\n\n@MISC{l,\n  note = {n},\n}\n\n");
  EXPECT_EQ(out.log, Summary(0)) << "the first entry of the new library reads on into the second";
}

TEST(CleanDoubles, AfterADroppedEntryTheInputIsReadOnWhereItsTagsEnded) {
  const std::string misc = Entry("misc", "k", {{"note", "n"}});
  const Cleaned out =
      Clean(misc + "@misc{k,\n  note = {n},\n@letter{inside,\n}\n" + Entry("LETTER", "l", {}));
  EXPECT_EQ(out.library, "@MISC{k,\n  note = {n},\n}\n\n" + Entry("LETTER", "l", {}) + "\n");
}

TEST(CleanDoubles, AConflictInTheMiddleIsWrittenOverWhatFollowsAndReportsWhatIsLost) {
  const auto misc = [](const std::string& key, const std::string& note) {
    return Entry("MISC", key, {{"note", note}});
  };
  const Cleaned out = Clean(misc("k", "1") + misc("l", "22") + misc("m", "3") + misc("k", "4"));
  // The new entry ends 3 bytes before the end of the line after "l"; what follows is cut nowhere.
  const std::string after_k = "\n" + misc("l", "22") + "\n" + misc("m", "3") + "\n";
  const std::string written = misc("k_a", "4") + "\n";
  EXPECT_EQ(out.library, misc("k", "1") + written + after_k.substr(written.size()));
  EXPECT_EQ(out.warnings,
            std::vector<std::string>{"the new entry 'k_a' was written over the kept entry 'l'"});
  EXPECT_EQ(out.result, 1);
}

TEST(CleanDoubles, EveryEntryThatIsWrittenOverIsToldOnce) {
  const auto misc = [](const std::string& key, const std::string& note) {
    return Entry("MISC", key, {{"note", note}});
  };
  const std::string lost = misc("l", "2") + misc("m", "3") + misc("o", "4") + misc("p", "5");
  const Cleaned out = Clean(misc("k", "1") + lost + misc("k", std::string(30, '6')) +
                            misc("k", std::string(30, '7')) + misc("k", "8"));
  EXPECT_EQ(out.warnings, (std::vector<std::string>{
                              "the new entry 'k_a' was written over the kept entry 'l'",
                              "the new entry 'k_a' was written over the kept entry 'm'",
                              "the new entry 'k_a' was written over the kept entry 'o'",
                              "the new entry 'k_b' was written over the kept entry 'k_a'",
                              "the new entry 'k_c' was written over the kept entry 'k_b'"}));
}

TEST(CleanDoubles, AnEntryCanBeWrittenOverFromItsOwnMiddle) {
  // The value's second line is read up to the limit of 24,999 bytes, which ends the value and makes
  // a line of the rest. That line ends the entry where it is read, but not its copy, which is made
  // in pieces of 4,999.
  const std::string to_limit = "  note = {a\n" + std::string(24999, 'f');
  const std::string rest = "} tail\n  year = {1}\n}\n";
  const Cleaned out = Clean("@MISC{k,\n" + to_limit + rest + Entry("MISC", "k", {{"note", "b"}}));
  const std::string written = Entry("MISC", "k_a", {{"note", "b"}}) + "\n";
  EXPECT_EQ(out.library, "@MISC{k,\n" + to_limit + "} tail\n" + written);
  EXPECT_EQ(out.warnings,
            std::vector<std::string>{"the new entry 'k_a' was written over the kept entry 'k'"});
}

TEST(CleanDoubles, AValueThatBeginsOnTheNextLineHasNoBlankBeforeIt) {
  // The piece ends after the brace, so the value begins with the next piece. The "@" has the copy
  // read once more.
  const std::string piece = "  note = " + std::string(4999 - 10, ' ') + "{";
  const Cleaned out = Clean("@MISC{k,\n  doi = {m@n},\n" + piece + "  n},\n}\n" +
                            Entry("MISC", "k", {{"note", "n"}}));
  EXPECT_EQ(out.log,
            "Exactly the same : k and k\n     1.: Note: n \n     2.: Note: n \n"
            "     One BibTeX entry stays\n\n" +
                Summary(1));
}

TEST(CleanDoubles, WhatAnOverwrittenEntryLeavesIsReadAsWhatItIsThen) {
  const auto misc = [](const std::string& key, const std::string& note) {
    return Entry("MISC", key, {{"note", note}});
  };
  // Entry "l" is overwritten up to a line that starts an entry of its own: "m" is found there.
  const std::string hiding =
      "@MISC{l,\n  note = {" + std::string(20, 'x') + "\n@MISC{m,\n  " + "note = {y}\n},\n}\n";
  const Cleaned out = Clean(misc("k", "1") + hiding + misc("k", "2") + misc("n", "y"));
  EXPECT_TRUE(out.log.find("Probably the same : n and m\n") != std::string::npos) << out.log;
}

TEST(CleanDoubles, AfterTheLastLetterComeTheNextBytes) {
  std::string library = "@misc{k,\nnote = {0}\n}\n";
  for (int i = 1; i <= 200; ++i) library += "@misc{k,\nnote = {" + std::to_string(i) + "}\n}\n";
  const Cleaned out = Clean(library);
  for (int i = 0; i < 200; ++i) {
    const std::string letter(1, static_cast<char>(static_cast<unsigned char>(97 + i)));
    EXPECT_NE(out.log.find("from k to k_" + letter + "\n\n"), std::string::npos) << i;
  }
  EXPECT_NE(out.log.find("from k to k_z\n\n"), std::string::npos);
  EXPECT_NE(out.log.find("from k to k_{\n\n"), std::string::npos) << "the byte after 'z'";
  EXPECT_NE(out.log.find(std::string("from k to k_\0\n\n", 15)), std::string::npos)
      << "only the low byte of the count";
  EXPECT_TRUE(out.log.ends_with(Summary(200)));
}

TEST(CleanDoubles, ARenamedKeyIsNotCheckedAgainstThoseThatAreThere) {
  const auto misc = [](const std::string& key, const std::string& note) {
    return Entry("MISC", key, {{"note", note}});
  };
  const Cleaned out = Clean(misc("k_a", "0") + misc("k", "1") + misc("k", "2"));
  EXPECT_EQ(out.library, misc("k_a", "0") + "\n" + misc("k", "1") + misc("k_a", "2") + "\n");
}

TEST(CleanDoubles, ARenamedHeadWithoutACommaIsReplacedUpToTheLineBreak) {
  const Cleaned out = Clean("@misc{k\nnote = {1}\n}\n@misc{k\nnote = {2}\n}\n");
  EXPECT_EQ(out.library, "@MISC{k\nnote = {1}\n}\n@MISC{k_a\nnote = {2}\n}\n\n");
}

struct EndRow {
  std::string library;
  int result;
  std::string kept;
  std::string says;
};

TEST(CleanDoubles, AnInputThatEndsInsideAnEntryFailsInSilenceOrEndsIt) {
  const std::string first = "@LETTER{k,\n}\n";
  const EndRow rows[] = {
      {first + "@book{x,\n title = {t}}\n", 0, first + "\n", "the last brace ends a tag line"},
      {first + "@book{x,\n", 0, first + "\n", "the last line starts an entry"},
      {first + "@book{x,", 1, first + "\n@BOOK{x,", "a last line without a line break ends it"},
      {first + "@book{x,\n title = {t}}", 1, first + "\n@BOOK{x,\n title = {t}}",
       "so does a tag line"},
      {first + "@book{x,\n title = {t\n", 1, first + "\n@BOOK{x,\n title = {t\n",
       "a value that meets the end of the file ends it"},
      {first + "@book{x,\n}", 1, first + "\n@BOOK{x,\n}\n", "a closing line without a line break"},
      {first + "@book{x,\n" + std::string(4999, 'f'), 0, first + "\n",
       "a piece that takes the last bytes does not meet the end"},
      {first + "@book{x,\n" + std::string(4998, 'f'), 1,
       first + "\n@BOOK{x,\n" + std::string(4998, 'f'), "a shorter one does"},
      {first + "@comment{jabref-meta: groupsversion:3;}\n", 1, first + "\n",
       "a JabRef block starts no entry"},
      {first + "text", 1, first + "\n", "text after the last entry"},
      {"", 1, "", "an empty library"},
      {"no entry\n", 1, "", "a library without an entry"},
  };
  for (const EndRow& row : rows) {
    const Cleaned out = Clean(row.library);
    EXPECT_EQ(out.result, row.result) << row.says;
    EXPECT_EQ(out.library, row.kept) << row.says;
    EXPECT_EQ(out.log, row.result == 1 ? Summary(0) : "") << row.says;
    EXPECT_EQ(out.printed, "") << row.says;
  }
}

TEST(CleanDoubles, LinesAreReadInPiecesOf4999Bytes) {
  // The second piece of the line begins with "}" and ends the entry, in the copy too.
  const std::string line(4999, 'f');
  const Cleaned out = Clean("@letter{k,\n" + line + "} rest\n  note = {n}\n}\n");
  EXPECT_EQ(out.library, "@LETTER{k,\n" + line + "} rest\n\n");
  EXPECT_EQ(Clean("@letter{k,\n" + line.substr(1) + "} rest\n}\n").library,
            "@LETTER{k,\n" + line.substr(1) + "} rest\n}\n\n");
}

TEST(CleanDoubles, BytesOfAllKindsAreCopied) {
  const std::string entry("@BOOK{k\xc3\xa4\0y,\r\n  title = {\0\xff}\r\n}\r\n"sv);
  EXPECT_EQ(Clean(entry).library, entry + "\n");
}

// Libraries that would take minutes if any entry were looked at for every other one.

TEST(CleanDoubles, ManyEntriesThatGoOnIntoEachOtherAreReadOnce) {
  std::string library;
  for (int i = 0; i < 20000; ++i) {
    library += "@book{k" + std::to_string(i) + ",\n  title = {t},\n  year = {1},\n} author\n";
  }
  EXPECT_EQ(Clean(library + "}\n").log, Summary(0));
}

TEST(CleanDoubles, ManyEntriesInsideTheValueOfTheFirstAreReadOnce) {
  std::string library = "@book{k,\n  title = {{{\n}\n";
  for (int i = 0; i < 20000; ++i) {
    library += "@book{k" + std::to_string(i) + ",\n  title = {t},\n  year = {1},\n}\n";
  }
  EXPECT_EQ(Clean(library).log, Summary(0));
}

TEST(CleanDoubles, ManyEntriesWithOneKeyAndWithoutTagsAreNotCompared) {
  std::string library;
  for (int i = 0; i < 20000; ++i) library += "@book{k,\n  title = {t},\n}\n";
  EXPECT_EQ(Clean(library).log, Summary(0));
}

TEST(CleanDoubles, ManyConflictsInTheMiddleCostWhatTheyWriteOver) {
  std::string library;
  for (int i = 0; i < 10000; ++i) {
    library += "@misc{k" + std::to_string(i) + ",\n  note = {" + std::to_string(i) + "}\n}\n";
  }
  for (int i = 0; i < 10000; ++i) {
    library +=
        "@misc{k" + std::to_string(i % 5) + ",\n  note = {again " + std::to_string(i) + "}\n}\n";
  }
  EXPECT_EQ(Clean(library).result, 1);
}

// Failures

struct FailureRow {
  std::string path;
  std::string not_there;
  std::string not_creatable;
  std::string says;
};

TEST(CleanDoubles, EveryFailureHasItsText) {
  const FailureRow rows[] = {
      {"", "", "", "Function Clean_double()_1 => LaTeX file does not exist?"},
      {"/d/none.bib", "", "", "Function Clean_double()_2 => Could not open the BibTeX file?"},
      {"/d/lit.bib", "", "/d/lit_double.log",
       "Function Clean_double()_3 => Could not open the log file!"},
      {"/d/lit", "", "", "Function Clean_double()_3 => Could not open the log file!"},
      {"/d/lit.bib", "", "/d/lit_double.bib",
       "Function Clean_double()_4 => Could not create the new BibTeX file!"},
  };
  for (const FailureRow& row : rows) {
    RecordingReporter reporter;
    MemoryFiles files;
    files.files["/d/lit.bib"] = "@BOOK{k,\n}\n";
    files.files["/d/lit"] = "@BOOK{k,\n}\n";
    files.not_creatable.insert(row.not_creatable);
    EXPECT_EQ(RunCleanDoubles(MemoryRun(files, row.path)), 0) << row.says;
    EXPECT_EQ(reporter.printed, Printed(row.says));
    EXPECT_TRUE(reporter.boxes.empty());
  }
}

TEST(CleanDoubles, WithoutTheNewLibraryTheLogHoldsItsHeader) {
  RecordingReporter reporter;
  MemoryFiles files;
  files.files["/d/lit.bib"] = "@BOOK{k,\n}\n";
  files.not_creatable.insert("/d/lit_double.bib");
  RunCleanDoubles(MemoryRun(files, "/d/lit.bib"));
  EXPECT_EQ(files.files["/d/lit_double.log"], kLogHeader);
}

TEST(CleanDoubles, AReadOnlyLibraryIsEnough) {
  RecordingReporter reporter;
  MemoryFiles files;
  files.files["/d/lit.bib"] = "@BOOK{k,\n}\n";
  files.read_only.insert("/d/lit.bib");
  EXPECT_EQ(RunCleanDoubles(MemoryRun(files, "/d/lit.bib")), 1);
}

TEST(CleanDoubles, APickedFileIsNeverWrittenOver) {
  for (const std::string output : {"/d/lit_double.log", "/d/lit_double.bib"}) {
    RecordingReporter reporter;
    MemoryFiles files;
    files.files["/d/lit.bib"] = "@BOOK{k,\n}\n";
    files.files[output] = "picked";
    EXPECT_EQ(RunCleanDoubles(MemoryRun(files, "/d/lit.bib", output)), 0);
    EXPECT_EQ(files.files[output], "picked");
  }
}

TEST(CleanDoubles, AFileThatCannotBeWrittenWholeFailsTheRun) {
  for (const std::string output : {"/d/lit_double.log", "/d/lit_double.bib"}) {
    for (const bool at_close : {false, true}) {
      RecordingReporter reporter;
      MemoryFiles files;
      files.files["/d/lit.bib"] = "@BOOK{k,\n}\n";
      if (at_close) {
        files.close_fails.insert(output);
      } else {
        files.room[output] = 50;
      }
      EXPECT_EQ(RunCleanDoubles(MemoryRun(files, "/d/lit.bib")), 0);
      EXPECT_EQ(reporter.printed,
                Printed("Could not write the file '" + output +
                        "': " + (at_close ? "Input/output error" : "No space left on device")));
    }
  }
}

}  // namespace
}  // namespace tarvel
