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

namespace tarvel::testing {

namespace {

constexpr std::string_view kOne = "/lit/one.bib";
constexpr std::string_view kTwo = "/lit/two.bib";
constexpr std::string_view kLog = "/lit/one_comp.log";
constexpr std::string_view kMissing = "/lit/one_comp_missing.bib";
constexpr std::string_view kEqual = "/lit/one_comp_equal.bib";

constexpr std::string_view kStored =
    "     The BibTeX entry is stored in /lit/one_comp_equal.bib.\n\n";
constexpr std::string_view kSecurity =
    "     For security, the BibTeX entry is stored in /lit/one_comp_equal.bib.\n\n";
constexpr std::string_view kMarked = "     The BibTeX entry is marked as missing.\n";

struct Result {
  int result;
  std::string log;      // without the header and the summary
  std::string summary;  // "missing exact probable"
  std::string missing;  // without the header
  std::string equal;

  bool operator==(const Result&) const = default;
};

std::string Summary(int missing, int exact, int probable) {
  return "\n\n\n" + std::to_string(missing) +
         " BibTeX entries from the BibTeX file\n    '/lit/two.bib'\ndo not appear in the BibTeX "
         "file\n    '/lit/one.bib'.\nThey are stored in the new BibTeX file\n    "
         "'/lit/one_comp_missing.bib'.\nFurthemore, " +
         std::to_string(exact) + " and " + std::to_string(probable) +
         " entries of both BibTeX libraries were exactly or probably the same, respectively. They "
         "are all stored in the new BibTeX file\n    '/lit/one_comp_equal.bib'.";
}

MemoryFiles Libraries(std::string_view first, std::string_view second) {
  MemoryFiles files;
  files.files = {{std::string(kOne), std::string(first)}, {std::string(kTwo), std::string(second)}};
  return files;
}

/// What Compare makes of two libraries; `log` keeps its summary.
Result Compared(std::string_view first, std::string_view second) {
  MemoryFiles files = Libraries(first, second);
  RecordingReporter reporter;
  Result got{};
  got.result = RunCompare(MemoryRun(files, kOne, kTwo));
  EXPECT_EQ(reporter.printed, "");
  EXPECT_TRUE(reporter.boxes.empty());
  got.log = WithoutStart(files.files[std::string(kLog)], kLogHeader);
  got.missing = WithoutStart(files.files[std::string(kMissing)], kBibHeader);
  got.equal = WithoutStart(files.files[std::string(kEqual)], kBibHeader);
  return got;
}

using Tags = std::map<std::string, std::string>;

std::string Entry(const std::string& type, const std::string& key, const Tags& tags) {
  std::string text = "@" + type + "{" + key + ",\n";
  for (const auto& [name, value] : tags) text += "  " + name + " = {" + value + "},\n";
  return text + "}\n";
}

/// One row of the decision tables. A "%t" stands for the type; the keys are K1 and K2.
struct Row {
  std::vector<std::string> types;
  std::vector<std::string> compared;  // in the order of the detail lines
  std::string lacks;                  // one entry lacks a tag
  std::string exact;
  std::string differs;
  std::string probable;
  std::string detail;  // the values stand as "{name}"; empty: no details
};

const std::vector<Row>& Rows() {
  static const std::vector<Row> rows{
      {{"BOOK", "INCOLLECTION", "INPROCEEDINGS", "CONFERENCE", "UNPUBLISHED", "INBOOK",
        "TECHREPORT", "PHDTHESIS", "MASTERTHESIS", "PROCEEDINGSPAPER"},
       {"author", "title"},
       "%t - One of the two entries (K and K)\n"
       "does not have one of the following tags: author or title\n\n",
       "%t - Exactly the same : K and K\n",
       "%t - Same item (K) but not the same tags (author and title)\n",
       "%t - Probably the same : K1 and K2\n",
       "Author: {author} Title: {title}"},
      {{"ARTICLE", "MEETINGABSTRACT", "EDITORIALMATERIAL", "REVIEW", "LETTER"},
       {"volume", "pages", "journal", "year"},
       "ARTICLE - One of the two entries (K and K)\n"
       "does not have one of the following tags: volume, pages, journal or year\n\n",
       "ARTICLE - Exactly the same : K and K\n",
       "%t - Same item (K) but not the same tags (volume, pages, journal and year)\n",
       "ARTICLE - Probably the same : K1 and K2\n",
       "Volume: {volume} Pages: {pages} Journal: {journal} Year: {year}"},
      {{"BOOKLET", "MANUAL", "STANDARD"},
       {"title"},
       "%t - One of the two entries (K and K)\ndoes not have the following tag: title\n\n",
       "%t - Exactly the same : K and K\n",
       "%t - Same item (K) but not the same tag (title)\n",
       "%t - Probably the same : K1 and K2\n",
       "Title: {title}"},
      {{"ELECTRONIC"},
       {"url"},
       "%t - One of the two entries (K and K)\ndoes not have the following tag: url\n\n",
       "%t - Exactly the same : K and K\n",
       "%t - Same item (K) but not the same tag (url)\n",
       "%t - Probably the same : K1 and K2\n",
       "URL: {url}"},
      {{"PERIODICAL", "PROCEEDINGS"},
       {"title", "year"},
       "%t - One of the two entries (K and K)\n"
       "does not have the following tags: title or year\n\n",
       "%t - Exactly the same : K and K\n",
       "%t - Same item (K) but not the same tags (title and year)\n",
       "%t - Probably the same : K1 and K2\n",
       "Title: {title} Year: {year}"},
      {{"PATENT"},
       {"nationality", "number", "year"},
       "PATENT - One of the two entries (K and K)\n"
       "does not have the following tags: nationality, number, year\n\n",
       "PATENT - Exactly the same : K and K\n",
       "PATENT - Same item (K) but not the same tags (nationality, number and year)\n",
       "PATENT - Probably the same : K1 and K2\n",
       "Nationality: {nationality} Number: {number} Year: {year}"},
      {{"MISC"},
       {"note"},
       "MISC - One of the two entries (K and K)\ndoes not have the following tag: note\n\n",
       "MISC - Exactly the same : K and K\n",
       "MISC - Same item (K) but not the same tag (note)\n",
       "MISC - Probably the same : K1 and K2\n",
       "Note: {note}"},
      {{"OTHER"},
       {"comment"},
       "OTHER - One of the two entries (K and K)\ndoes not have the tag comment\n\n",
       "OTHER - Exactly the same : K and K\n",
       "OTHER - Same item (K) but not the same tag (comment)\n",
       "OTHER - Probably the same : K1 and K2\n",
       ""},
  };
  return rows;
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

std::string DetailLine(const Row& row, const char* number, Tags tags) {
  if (row.detail.empty()) return "";
  std::string line = std::string("     ") + number + ".: " + row.detail + "\n";
  for (const std::string& name : row.compared) line = Replaced(line, "{" + name + "}", tags[name]);
  return line;
}

std::string Details(const Row& row, const Tags& one, const Tags& two) {
  return DetailLine(row, "1", one) + DetailLine(row, "2", two);
}

Tags Complete(const Row& row) {
  Tags tags;
  for (const std::string& name : row.compared) tags[name] = "v" + name;
  return tags;
}

/// Every row with every type of it.
template <typename Check>
void ForEachType(Check check) {
  for (const Row& row : Rows()) {
    for (const std::string& type : row.types) {
      SCOPED_TRACE(type);
      check(row, type);
    }
  }
}

constexpr std::string_view kMissingK = "----    - Missing entry: K\n\n";
constexpr std::string_view kMissingK2 = "----    - Missing entry: K2\n\n";

}  // namespace

// The decision tables

TEST(CompareSameKey, AnEntryThatLacksATagStopsAndIsStoredForSecurity) {
  ForEachType([](const Row& row, const std::string& type) {
    for (const std::string& name : row.compared) {
      for (const bool first_lacks : {true, false}) {
        Tags one = Complete(row);
        Tags two = one;
        (first_lacks ? one : two).erase(name);
        const std::string first = Entry(type, "k", one);
        const Result got = Compared(first, Entry(type, "k", two));
        EXPECT_EQ(got.log, Replaced(row.lacks, "%t", type) + Details(row, one, two) +
                               std::string(kSecurity) + Summary(0, 1, 0));
        EXPECT_EQ(got.missing, "");
        EXPECT_EQ(got.equal, first);
        EXPECT_EQ(got.result, 1);
      }
    }
  });
}

TEST(CompareSameKey, EqualTagsAreExactlyTheSame) {
  ForEachType([](const Row& row, const std::string& type) {
    const Tags tags = Complete(row);
    const std::string entry = Entry(type, "k", tags);
    const Result got = Compared(entry, entry);
    const std::string headline = Replaced(row.exact, "%t", type);
    if (type == "OTHER") {
      // Counted, but the search goes on and finds nothing that stops it.
      EXPECT_EQ(got.log, headline + std::string(kMissingK) + Summary(1, 1, 0));
      EXPECT_EQ(got.missing, entry);
      EXPECT_EQ(got.equal, "");
    } else {
      EXPECT_EQ(got.log,
                headline + Details(row, tags, tags) + std::string(kStored) + Summary(0, 1, 0));
      EXPECT_EQ(got.missing, "");
      EXPECT_EQ(got.equal, entry);
    }
  });
}

TEST(CompareSameKey, ADifferentTagMarksTheEntryAsMissing) {
  ForEachType([](const Row& row, const std::string& type) {
    for (const std::string& name : row.compared) {
      const Tags one = Complete(row);
      Tags two = one;
      two[name] = "other";
      const std::string second = Entry(type, "k", two);
      const Result got = Compared(Entry(type, "k", one), second);
      EXPECT_EQ(got.log, Replaced(row.differs, "%t", type) + Details(row, one, two) +
                             std::string(kMarked) + std::string(kMissingK) + Summary(1, 0, 0));
      EXPECT_EQ(got.missing, second);
      EXPECT_EQ(got.equal, "");
    }
  });
}

TEST(CompareSameKey, TagsThatDifferInLetterCaseAreDifferent) {
  ForEachType([](const Row& row, const std::string& type) {
    for (const std::string& name : row.compared) {
      if (name == "pages" || name == "volume" || name == "year" || name == "number") continue;
      Tags one = Complete(row);
      Tags two = one;
      one[name] = "On alpha";
      two[name] = "On Alpha";
      const std::string second = Entry(type, "k", two);
      const Result got = Compared(Entry(type, "k", one), second);
      EXPECT_EQ(got.log, Replaced(row.differs, "%t", type) + Details(row, one, two) +
                             std::string(kMarked) + std::string(kMissingK) + Summary(1, 0, 0));
      EXPECT_EQ(got.missing, second);
      EXPECT_EQ(got.equal, "");
    }
  });
}

TEST(CompareSameKey, TheTypeOfTheFirstEntryAloneDecides) {
  ForEachType([](const Row& row, const std::string& type) {
    const Tags tags = Complete(row);
    for (const std::string second_type : {"LETTER", "BOOK", "OTHER", "ARTICLES"}) {
      const std::string first = Entry(type, "k", tags);
      const Result got = Compared(first, Entry(second_type, "k", tags));
      EXPECT_TRUE(got.log.starts_with(Replaced(row.exact, "%t", type))) << got.log;
      EXPECT_EQ(got.equal, type == "OTHER" ? "" : first);
    }
  });
}

TEST(CompareSameKey, ATypeOfNoGroupGivesNoVerdict) {
  for (const std::string type : {"ARTICLES", "article ", "COMMENT", "bookshelf"}) {
    const Tags tags{{"author", "a"}, {"title", "t"}, {"volume", "1"},
                    {"pages", "1"},  {"year", "1"},  {"journal", "j"}};
    const std::string second = Entry("book", "k", tags);
    // A known entry in front: a block of another type does not begin a library.
    const std::string first = Entry("misc", "m", {}) + Entry(type, "k", tags);
    const Result got = Compared(first, second);
    EXPECT_EQ(got.log, std::string(kMissingK) + Summary(1, 0, 0)) << type;
    EXPECT_EQ(got.missing, second) << type;
  }
}

TEST(CompareOtherKey, EqualTagsAreProbablyTheSame) {
  ForEachType([](const Row& row, const std::string& type) {
    const Tags tags = Complete(row);
    const std::string first = Entry(type, "k1", tags);
    const std::string second = Entry(type, "k2", tags);
    const Result got = Compared(first, second);
    const std::string verdict =
        Replaced(row.probable, "%t", type) + Details(row, tags, tags) + std::string(kStored);
    if (type == "OTHER") {
      EXPECT_EQ(got.log, verdict + std::string(kMissingK2) + Summary(1, 0, 1));
      EXPECT_EQ(got.missing, second);
      EXPECT_EQ(got.equal, "");
    } else {
      // An electronic source is stored but not counted.
      EXPECT_EQ(got.log, verdict + Summary(0, 0, type == "ELECTRONIC" ? 0 : 1));
      EXPECT_EQ(got.missing, "");
      EXPECT_EQ(got.equal, first);
    }
  });
}

TEST(CompareOtherKey, AMissingOrDifferentTagGivesNoVerdict) {
  ForEachType([](const Row& row, const std::string& type) {
    for (const std::string& name : row.compared) {
      const Tags complete = Complete(row);
      Tags without = complete;
      without.erase(name);
      Tags changed = complete;
      changed[name] = "V" + name;  // letter case counts
      const std::vector<std::pair<Tags, Tags>> pairs{
          {complete, without}, {without, complete}, {without, without}, {complete, changed}};
      for (const auto& [one, two] : pairs) {
        const Result got = Compared(Entry(type, "k1", one), Entry(type, "k2", two));
        EXPECT_EQ(got.log, std::string(kMissingK2) + Summary(1, 0, 0)) << name;
        EXPECT_EQ(got.equal, "");
      }
    }
  });
}

TEST(CompareOtherKey, TypesMustBeTheSame) {
  for (const Row& row : Rows()) {
    for (const std::string& one : row.types) {
      for (const std::string& two : row.types) {
        if (one == two) continue;
        const Tags tags = Complete(row);
        const Result got = Compared(Entry(one, "k1", tags), Entry(two, "k2", tags));
        EXPECT_EQ(got.log, std::string(kMissingK2) + Summary(1, 0, 0)) << one << " " << two;
      }
    }
  }
}

TEST(CompareOtherKey, TypesOfNoGroupAreNeverTheSame) {
  const Tags tags{{"author", "a"}, {"title", "t"}, {"volume", "1"},
                  {"pages", "1"},  {"year", "1"},  {"journal", "j"}};
  const Result got = Compared(Entry("articles", "k1", tags), Entry("articles", "k2", tags));
  EXPECT_EQ(got.log, std::string(kMissingK2) + Summary(1, 0, 0));
}

// Entries of the first library are met in the order of its file

TEST(CompareOrder, ASameKeyConflictIsToldBeforeALaterStop) {
  const std::string conflict = Entry("misc", "k", {{"note", "a"}});
  const std::string twin = Entry("misc", "other", {{"note", "b"}});
  const std::string second = Entry("misc", "k", {{"note", "b"}});
  const std::string conflict_log =
      "MISC - Same item (K) but not the same tag (note)\n"
      "     1.: Note: a\n     2.: Note: b\n" +
      std::string(kMarked);
  const std::string twin_log =
      "MISC - Probably the same : OTHER and K\n"
      "     1.: Note: b\n     2.: Note: b\n" +
      std::string(kStored);
  const Result late = Compared(conflict + twin + conflict, second);
  EXPECT_EQ(late.log, conflict_log + twin_log + Summary(0, 0, 1));
  EXPECT_EQ(late.equal, twin);
  const Result early = Compared(twin + conflict, second);
  EXPECT_EQ(early.log, twin_log + Summary(0, 0, 1));
  const Result every = Compared(conflict + conflict, second);
  EXPECT_EQ(every.log, conflict_log + conflict_log + std::string(kMissingK) + Summary(1, 0, 0));
}

TEST(CompareOrder, OtherEntriesAreToldUntilSomethingStops) {
  const std::string same = Entry("other", "k", {{"comment", "c"}});
  const std::string probable = Entry("other", "p", {{"comment", "c"}});
  const std::string differs = Entry("other", "k", {{"comment", "d"}});
  const std::string lacks = Entry("other", "k", {});
  const std::string never = Entry("other", "q", {{"comment", "c"}});
  const Result got = Compared(probable + same + differs + probable + lacks + never, same);
  EXPECT_EQ(got.log, "OTHER - Probably the same : P and K\n" + std::string(kStored) +
                         "OTHER - Exactly the same : K and K\n" +
                         "OTHER - Same item (K) but not the same tag (comment)\n" +
                         std::string(kMarked) + "OTHER - Probably the same : P and K\n" +
                         std::string(kStored) +
                         "OTHER - One of the two entries (K and K)\ndoes not have the tag "
                         "comment\n\n" +
                         std::string(kSecurity) + Summary(0, 2, 2));
  EXPECT_EQ(got.equal, lacks);
  EXPECT_EQ(got.missing, "");
}

TEST(CompareOrder, TheFirstOfSeveralCounterpartsIsStored) {
  const std::string one = Entry("manual", "a", {{"title", "t"}, {"year", "1"}});
  const std::string other = Entry("manual", "b", {{"title", "t"}, {"year", "2"}});
  const std::string second = Entry("manual", "k", {{"title", "t"}});
  EXPECT_EQ(Compared(one + other, second).equal, one);
  EXPECT_EQ(Compared(other + one, second).equal, other);
}

// Whole libraries

TEST(CompareLibraries, ALibraryEqualsItself) {
  const std::string library = "Text\n@string{a = {b}}\n" + Entry("book", "a", {{"title", "t"}}) +
                              "\n" + Entry("misc", "b", {{"note", "n"}}) + "\nmore text\n" +
                              Entry("patent", "c", {});
  const Result got = Compared(library, library);
  EXPECT_EQ(got.missing, "");
  EXPECT_EQ(got.equal, Entry("book", "a", {{"title", "t"}}) + Entry("misc", "b", {{"note", "n"}}) +
                           Entry("patent", "c", {}));
  EXPECT_TRUE(got.log.ends_with(Summary(0, 3, 0))) << got.log;
}

TEST(CompareLibraries, EmptyOnes) {
  const std::string entry = Entry("misc", "k", {{"note", "n"}});
  const std::string only_text = "No entries\n@string{a = {b}}\n@comment{jabref-meta: x\n}\n";
  for (const std::string& empty : {std::string(), only_text}) {
    const Result second_empty = Compared(entry, empty);
    EXPECT_EQ(second_empty.log, Summary(0, 0, 0));
    EXPECT_EQ(second_empty.missing + second_empty.equal, "");
    const Result first_empty = Compared(empty, entry);
    EXPECT_EQ(first_empty.log, std::string(kMissingK) + Summary(1, 0, 0));
    EXPECT_EQ(first_empty.missing, entry);
  }
}

TEST(CompareLibraries, CopiesAreTheLibrariesOwnBytes) {
  const std::string first = "text } @mIsc{kEy, note={n}, x\r\n \xc3\xa4\n";
  const std::string second = "@Misc{KEY,\n note = {n},\n\n  odd \n}and more\n";
  const Result equal = Compared(first, second);
  // No "}" line: the copy goes to the end of the file. Nothing is added to it.
  EXPECT_EQ(equal.equal, first);
  const Result missing = Compared("", second + "text\n" + second.substr(0, second.size() - 1));
  EXPECT_EQ(missing.missing, second + second.substr(0, second.size() - 1));
}

TEST(CompareLibraries, AKeyIsToTheLetterButForItsCase) {
  struct Case {
    std::string one, two;
    bool same;
  };
  for (const Case& c : {Case{"Smith2001", "SMITH2001", true}, Case{" k", "k", false},
                        Case{"k ", "k", false}, Case{"\xc3\xa4", "\xc3\x84", false},
                        Case{"", "", true}, Case{std::string("a\0b", 3), "a", false}}) {
    const Result got = Compared(Entry("misc", c.one, {}), Entry("misc", c.two, {}));
    EXPECT_EQ(got.log.starts_with("MISC - One of the two entries ("), c.same) << c.one;
  }
  const Result shown = Compared(Entry("misc", "Smith2001", {}), Entry("misc", "SmiTH2001", {}));
  EXPECT_TRUE(shown.log.starts_with("MISC - One of the two entries (SMITH2001 and SMITH2001)\n"));
}

TEST(CompareLibraries, OnlyTheFirstPageCounts) {
  const Tags base{{"volume", "1"}, {"journal", "j"}, {"year", "y"}};
  struct Case {
    std::string one, two, headline;
  };
  const std::string lacks = "ARTICLE - One of";
  const std::string differs = "ARTICLE - Same item";
  const std::string exact = "ARTICLE - Exactly the same";
  for (const Case& c :
       {Case{"100-110", "100--115", exact}, Case{"100", "100-1", exact},
        Case{"-100", "-100", lacks}, Case{"100", "101", differs}, Case{"100 -1", "100", differs}}) {
    Tags one = base, two = base;
    one["pages"] = c.one;
    two["pages"] = c.two;
    const Result got = Compared(Entry("article", "k", one), Entry("article", "k", two));
    EXPECT_TRUE(got.log.starts_with(c.headline)) << c.one << " " << c.two << "\n" << got.log;
  }
}

TEST(CompareLibraries, WhatIsReadFromAnEntry) {
  struct Case {
    std::string lines;  // of a MANUAL with the key K
    std::string title;
    std::string_view says;
  };
  const Case kCases[] = {
      {"booktitle = {t},\n}\n", "t", "a name may stand anywhere in the line"},
      {"TITLE={t}\n}\n", "t", "in any case, without blanks, without a comma"},
      {"title = {t},\ntitle = {u},\n}\n", "u", "a later line wins"},
      {"title = {t},\nsubtitle = u,\n}\n", "", "also one without a value in braces"},
      {"title = {a year},\n}\n", "", "the line is the year's"},
      {"title = {{T} {u}},\n}\n", "{T} {u}", "inner braces stay"},
      {"title = {a\n  b\n\n c},\n}\n", "a b c", "line breaks become blanks"},
      {"title = {a\n}\ntitle = {b},\n}\n", "b", "a line that ends a value does not end the entry"},
      {"} title = {t}\ntitle = {u},\n}\n", "u", "nor does one that names a tag"},
      {"  }\ntitle = {t},\n}\n", "t", "nor one that does not begin with the brace"},
      {"x = {y}}\n\n@MANUAL{l,\ntitle = {t},\n}\n", "t", "so the next entry's lines count"},
      {"}x\ntitle = {t},\n}\n", "", "what follows the brace does not matter"},
      {"title = {t}", "t", "the end of the file ends the entry"},
      {"title = {t u", "t u", "and a value"},
      {"title = {t\n", "t", "without a blank for the last line break"},
  };
  for (const Case& c : kCases) {
    const std::string first = Entry("manual", "k", {{"title", "q"}});
    const Result got = Compared(first, "@MANUAL{K,\n" + c.lines);
    const std::string shown = c.title.empty()
                                  ? "does not have the following tag: title\n\n"
                                  : "MANUAL - Same item (K) but not the same tag (title)\n";
    EXPECT_NE(got.log.find(shown + "     1.: Title: q\n     2.: Title: " + c.title + "\n"),
              std::string::npos)
        << c.says << "\n"
        << got.log;
  }
}

TEST(CompareLibraries, TheHeadLineHoldsNoTag) {
  const Result got = Compared("@misc{k, note = {n}}\n}\n", "@misc{k,\n}\n");
  EXPECT_NE(got.log.find("     1.: Note: \n"), std::string::npos) << got.log;
}

TEST(CompareLibraries, AfterAStopReadingGoesOnAfterTheEntry) {
  // The value's last line begins with "}", and a head stands after it inside the same entry.
  const std::string two_heads = "@misc{k,\nnote = {n\n}\n@misc{inner,\n}\n";
  const Result stopped = Compared(Entry("misc", "k", {}), two_heads);
  EXPECT_TRUE(stopped.log.ends_with(std::string(kSecurity) + Summary(0, 1, 0))) << stopped.log;
  EXPECT_EQ(stopped.missing, "");
}

TEST(CompareLibraries, AfterACopyReadingGoesOnAfterTheCopy) {
  const std::string two_heads = "@misc{k,\nnote = {n\n}\n@misc{inner,\n}\n";
  const Result copied = Compared("", two_heads);
  EXPECT_EQ(copied.log,
            "----    - Missing entry: K\n\n----    - Missing entry: INNER\n\n" + Summary(2, 0, 0));
  EXPECT_EQ(copied.missing, two_heads);
}

TEST(CompareLibraries, WhatWasReadForTheEntryBeforeIsNotWhatTheNextOneHolds) {
  // Each value's last line begins with "}", so a copy ends there and every head after it is met,
  // although the reading for the first went to the end. `a` sees all notes, `c` none of its own.
  const std::string second =
      "@misc{a,\nnote = {1\n}\n@misc{b,\nnote = {2\n}\nyear = {3\n}\n@misc{c,\nyear = {4\n}\n";
  const std::string first = Entry("misc", "a", {{"note", "x"}}) +
                            Entry("misc", "b", {{"note", "x"}}) +
                            Entry("misc", "c", {{"note", "x"}});
  const Result got = Compared(first, second);
  const auto conflict = [](const std::string& key, const std::string& note) {
    return "MISC - Same item (" + key + ") but not the same tag (note)\n     1.: Note: x\n" +
           "     2.: Note: " + note + "\n" + std::string(kMarked) +
           "----    - Missing entry: " + key + "\n\n";
  };
  EXPECT_EQ(got.log, conflict("A", "2 ") + conflict("B", "2 ") +
                         "MISC - One of the two entries (C and C)\ndoes not have the following "
                         "tag: note\n\n     1.: Note: x\n     2.: Note: \n" +
                         std::string(kSecurity) + Summary(2, 1, 0));
}

TEST(CompareLibraries, AnEntryInsideAValueOfTheOneBeforeEndsOnItsOwn) {
  // For `a` the head of `b` stands inside the url; for `b` the url's last brace is its own.
  const std::string second =
      "@misc{a,\nnote = {1\n}\nurl = {\n@misc{b},\nyear = {2\n}\n}\n"
      "@misc{c,\nabstract = {long enough},\nnote = {3\n}\n@misc{d,\n}\n";
  const std::string first =
      Entry("misc", "a", {{"note", "x"}}) + Entry("misc", "c", {{"note", "x"}});
  const Result got = Compared(first, second);
  const auto conflict = [](const std::string& key) {
    return "MISC - Same item (" + key + ") but not the same tag (note)\n     1.: Note: x\n" +
           "     2.: Note: 3 \n" + std::string(kMarked) + "----    - Missing entry: " + key +
           "\n\n";
  };
  EXPECT_EQ(got.log, conflict("A") + "----    - Missing entry: B}\n\n" + conflict("C") +
                         "----    - Missing entry: D\n\n" + Summary(4, 0, 0));
}

TEST(CompareLibraries, AnEntryWithoutAClosingLineIsCopiedButNotCounted) {
  const std::string second = "@misc{k,\n note = {n}}";
  const Result got = Compared("", second);
  EXPECT_EQ(got.log, Summary(0, 0, 0));
  EXPECT_EQ(got.missing, second);
}

TEST(CompareLibraries, AClosingLineMayBeTheHead) {
  const Result got = Compared("", "@misc{a,\n}\n}@misc{b,\nnote={n}\n}\n");
  EXPECT_EQ(got.log,
            "----    - Missing entry: A\n\n----    - Missing entry: B\n\n" + Summary(2, 0, 0));
  EXPECT_EQ(got.missing, "@misc{a,\n}\n}@misc{b,\n");
}

TEST(CompareLibraries, ABlockOfJabRefIsAnEntryButDoesNotBeginALibrary) {
  for (const std::string block : {"@comment{jabref-meta: a\n}\n", "@Comment{JabRef-x: a\n}\n",
                                  "@COMMENT{JABREF-META: a\n}\n"}) {
    const std::string second = block + "@misc{k,\n}\n" + block;
    const Result got = Compared("@misc{x,\n}\n" + block, second);
    const std::string key = block.starts_with("@Com") ? "JABREF-X: A" : "JABREF-META: A";
    EXPECT_EQ(got.log, std::string(kMissingK) + "----    - Missing entry: " + key + "\n\n" +
                           Summary(2, 0, 0));
    EXPECT_EQ(got.missing, "@misc{k,\n}\n" + block);
  }
  EXPECT_EQ(Compared("", "@misc{k,\n}\n@comment{other\n}\n").log,
            std::string(kMissingK) + Summary(1, 0, 0));
}

TEST(CompareLibraries, LinesAreReadInPiecesOf4999Bytes) {
  const std::string pad(4999, ' ');
  // The second piece of a line begins with the brace, or a head, or does not.
  EXPECT_EQ(Compared("", "@misc{k,\n" + pad + "}x\nnote\n}\n").missing,
            "@misc{k,\n" + pad + "}x\n");
  EXPECT_EQ(Compared("", "@misc{k,\n" + pad.substr(1) + "}x\nnote\n}\n").missing,
            "@misc{k,\n" + pad.substr(1) + "}x\nnote\n}\n");
  EXPECT_EQ(Compared("", pad + "@misc{k,\n}\n").missing, "@misc{k,\n}\n");
  EXPECT_EQ(Compared("", pad.substr(1) + "@misc{k,\n}\n").missing, "");
  // A key is cut at the end of its piece.
  const std::string key(4999 - 6, 'K');
  EXPECT_EQ(Compared("", "@misc{" + key + "L,\n}\n").log,
            "----    - Missing entry: " + key + "\n\n" + Summary(1, 0, 0));
}

TEST(CompareLibraries, LongValuesAreComparedWhole) {
  const std::string part = "  " + std::string(4000, 'x') + "\n";
  std::string value;
  for (int i = 0; i < 30; ++i) value += part;
  const std::string first = Entry("misc", "a", {{"note", value + "y"}});
  EXPECT_EQ(Compared(first, Entry("misc", "b", {{"note", value + "y"}})).equal, first);
  EXPECT_EQ(Compared(first, Entry("misc", "b", {{"note", value + "z"}})).equal, "");
}

TEST(CompareLibraries, AZeroByteIsAByte) {
  const std::string zero("a\0b", 3);
  const std::string first = Entry("misc", "k", {{"note", zero}});
  const Result got = Compared(first, Entry("misc", "l", {{"note", zero}}));
  EXPECT_EQ(got.equal, first);
  EXPECT_NE(got.log.find("     1.: Note: " + zero + "\n"), std::string::npos);
  EXPECT_EQ(Compared(first, Entry("misc", "l", {{"note", "a"}})).equal, "");
  EXPECT_EQ(Compared(Entry("misc", "k", {{"note", std::string(1, '\0')}}),
                     Entry("misc", "l", {{"note", std::string(1, '\0')}}))
                .log.substr(0, 4),
            "MISC");
}

TEST(CompareLibraries, PercentSignsAreText) {
  const std::string entry = Entry("misc", "%s%n", {{"note", "%s %d"}});
  EXPECT_EQ(Compared(entry, entry).log,
            "MISC - Exactly the same : %S%N and %S%N\n"
            "     1.: Note: %s %d\n     2.: Note: %s %d\n" +
                std::string(kStored) + Summary(0, 1, 0));
}

// Failures

TEST(CompareFailures, EachPointHasItsText) {
  struct Case {
    void (*spoil)(MemoryFiles& files, RunContext& run);
    std::string_view text;
    std::vector<std::string_view> outputs;  // that exist afterwards
  };
  const std::vector<Case> cases{
      {[](MemoryFiles&, RunContext& run) { run.first_path.clear(); },
       "Function Compare()_1, file_address_01 => First BibTeX file does not exist?",
       {}},
      {[](MemoryFiles&, RunContext& run) { run.second_path.clear(); },
       "Function Compare()_2, file_address_02 => Second BibTeX file does not exist?",
       {}},
      {[](MemoryFiles& files, RunContext&) { files.read_only = {std::string(kOne)}; },
       "Function Compare()_3 => Could not open the first BibTeX file!",
       {}},
      {[](MemoryFiles& files, RunContext&) { files.read_only = {std::string(kTwo)}; },
       "Function Compare()_4 => Could not open the second BibTeX file!",
       {}},
      {[](MemoryFiles& files, RunContext&) { files.not_creatable = {std::string(kLog)}; },
       "Function Compare()_5, Could not open the log file!",
       {}},
      {[](MemoryFiles& files, RunContext&) { files.not_creatable = {std::string(kMissing)}; },
       "Function Compare()_6 => Could not open the BibTeX file !",
       {kLog}},
      {[](MemoryFiles& files, RunContext&) { files.not_creatable = {std::string(kEqual)}; },
       "Function Compare()_7 => Could not open the BibTeX file !",
       {kLog, kMissing}},
      // The same point, reached in another way.
      {[](MemoryFiles& files, RunContext&) { files.files.erase(std::string(kOne)); },
       "Function Compare()_3 => Could not open the first BibTeX file!",
       {}},
      {[](MemoryFiles& files, RunContext&) { files.unreadable = {std::string(kTwo)}; },
       "Function Compare()_4 => Could not open the second BibTeX file!",
       {}},
      {[](MemoryFiles& files, RunContext&) { files.read_fails = {std::string(kOne)}; },
       "Function Compare()_3 => Could not open the first BibTeX file!",
       {}},
      {[](MemoryFiles& files, RunContext& run) {
         files.files["/lit/bare"] = "@misc{k,\n}\n";
         run.first_path = "/lit/bare";
       },
       "Function Compare()_5, Could not open the log file!",
       {}},
  };
  for (const Case& c : cases) {
    MemoryFiles files = Libraries("@misc{k,\n}\n", "@misc{k,\n}\n");
    RunContext run = MemoryRun(files, kOne, kTwo);
    c.spoil(files, run);
    RecordingReporter reporter;
    EXPECT_EQ(RunCompare(run), 0) << c.text;
    EXPECT_EQ(reporter.printed, Printed(c.text));
    std::vector<std::string_view> outputs;
    for (const std::string_view path : {kLog, kMissing, kEqual}) {
      if (files.files.contains(std::string(path))) outputs.push_back(path);
    }
    EXPECT_EQ(outputs, c.outputs) << c.text;
  }
}

TEST(CompareFailures, WhatWasWrittenBeforeStays) {
  MemoryFiles files = Libraries("@misc{k,\n}\n", "@misc{k,\n}\n");
  files.not_creatable = {std::string(kEqual)};
  RecordingReporter reporter;
  EXPECT_EQ(RunCompare(MemoryRun(files, kOne, kTwo)), 0);
  EXPECT_EQ(files.files[std::string(kLog)], kLogHeader);
  EXPECT_EQ(files.files[std::string(kMissing)], "");  // headers come when both exist
}

TEST(CompareFailures, ASecondLibraryThatIsAnOutputIsNotOverwritten) {
  struct Case {
    std::string_view output, text;
  };
  for (const Case& c : {Case{kLog, "Function Compare()_5, Could not open the log file!"},
                        Case{kMissing, "Function Compare()_6 => Could not open the BibTeX file !"},
                        Case{kEqual, "Function Compare()_7 => Could not open the BibTeX file !"}}) {
    for (const bool linked : {false, true}) {
      MemoryFiles files = Libraries("@misc{k,\n}\n", "@misc{two,\n}\n");
      files.files[std::string(c.output)] = "@misc{mine,\n}\n";
      if (linked) files.same_files = {{std::string(c.output), std::string(kTwo)}};
      RecordingReporter reporter;
      EXPECT_EQ(RunCompare(MemoryRun(files, kOne, linked ? kTwo : c.output)), 0);
      EXPECT_EQ(reporter.printed, Printed(c.text));
      EXPECT_EQ(files.files[std::string(c.output)], "@misc{mine,\n}\n") << c.output;
      EXPECT_EQ(files.files[std::string(kTwo)], "@misc{two,\n}\n");
    }
  }
}

TEST(CompareFailures, AByteThatDoesNotArriveIsAFailure) {
  for (const std::string_view path : {kLog, kMissing, kEqual}) {
    for (const std::size_t room : {std::size_t{0}, kBibHeader.size() + 1}) {
      MemoryFiles files = Libraries(Entry("misc", "k", {{"note", "n"}}),
                                    Entry("misc", "k", {}) + Entry("misc", "l", {}));
      files.room[std::string(path)] = room;
      RecordingReporter reporter;
      EXPECT_EQ(RunCompare(MemoryRun(files, kOne, kTwo)), 0) << path;
      EXPECT_EQ(reporter.printed, Printed("Could not write the file '" + std::string(path) +
                                          "': No space left on device"));
    }
    MemoryFiles files = Libraries("", "");
    files.close_fails = {std::string(path)};
    RecordingReporter reporter;
    EXPECT_EQ(RunCompare(MemoryRun(files, kOne, kTwo)), 0) << path;
    EXPECT_EQ(reporter.printed,
              Printed("Could not write the file '" + std::string(path) + "': Input/output error"));
  }
}

TEST(CompareFailures, EarlierOutputsAreReplaced) {
  MemoryFiles files = Libraries("", "");
  for (const std::string_view path : {kLog, kMissing, kEqual}) {
    files.files[std::string(path)] = "old and long text that must be gone afterwards";
  }
  RecordingReporter reporter;
  EXPECT_EQ(RunCompare(MemoryRun(files, kOne, kTwo)), 1);
  EXPECT_EQ(files.files[std::string(kMissing)], kBibHeader);
  EXPECT_EQ(files.files[std::string(kEqual)], kBibHeader);
  EXPECT_EQ(files.files[std::string(kLog)], std::string(kLogHeader) + Summary(0, 0, 0));
}

TEST(CompareWarnings, ReportEachKeyThatComesAgainAmongVeryManyShortEntries) {
  std::string library;
  for (int i = 0; i < 1000; ++i) library += "@misc{k" + std::to_string(i % 900) + ",\n";
  MemoryFiles files = Libraries("", library + "@misc{K0,\n");
  RecordingWarnings warnings;
  RunContext run = MemoryRun(files, kOne, kTwo);
  run.warnings = &warnings;
  EXPECT_EQ(RunCompare(run), 1);
  const std::vector<std::string> twice = warnings.Of(WarningKind::kKeyTwice);
  ASSERT_EQ(twice.size(), 101U);
  EXPECT_EQ(twice[0],
            "key-twice " + std::string(kTwo) + ":901 [k0] the entry in line 1 has the same key");
  EXPECT_EQ(twice[99],
            "key-twice " + std::string(kTwo) + ":1000 [k99] the entry in line 100 has the same key");
  EXPECT_EQ(twice[100],
            "key-twice " + std::string(kTwo) + ":1001 [K0] the entry in line 1 has the same key");
}

}  // namespace tarvel::testing
