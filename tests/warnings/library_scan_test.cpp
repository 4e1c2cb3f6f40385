// SPDX-License-Identifier: MIT
#include "warnings/library_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/text_primitives.h"
#include "tests/support/hostile_library.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using namespace std::string_literals;
using namespace tarvel::testing;

const std::array<std::string_view, 2> kTagNames{"title", "year"};
const NameMatcher kTags(kTagNames);

std::vector<std::string> Scan(std::string_view library, ScanRules rules = {1000, &kTags}) {
  RecordingWarnings to;
  FileWarnings warnings(&to, "l", library);
  ScanLibrary(library, rules, warnings);
  return to.lines;
}

using Lines = std::vector<std::string>;

TEST(ScanLibrary, HasNothingToSayOfGoodLibraries) {
  const std::string_view good[] = {
      "",
      "no entry at all\n",
      "@article{k,\n  title = {T},\n  year = {1}\n}\n",
      "@article{k,\n  title = {T},\n  year = {1},\n}",
      "@Article{k,\ntitle={A {B} C},\n  year\t=\t{1}}\n@BOOK{l,\n}\n",
      "@book{k,\n title = {over\n  two {lines}},\n note = \"n\", url = {x?a=b&c=d}\n}\n",
      "@string{x = \"y\"}\n@comment{z}\n@preamble{p}\n@Comment{jabref-meta: a;}\n",
      "@misc{k, title = {T}, year = {1}}\n@misc{l,\n title =\t{T},\n}\n",
      "@misc{k,\n title = {T\xC3\xBC \xE2\x82\xAC \xF0\x9F\x98\x80},\n}\n",
      "@misc{k,\n title = {mail a@b.c},\n url = {\n@home\n},\n}\n",
  };
  for (const std::string_view library : good) EXPECT_EQ(Scan(library), Lines()) << library;
}

TEST(ScanLibrary, NamesTheTagOfATextInCapitalsWhereItHasOne) {
  const std::string why = " becomes capitals, as it stands between an '@' and a brace";
  EXPECT_EQ(Scan("see a@b {x}\n@misc{k,\n  note = {c@d {y}},\n}\n"),
            (Lines{"upper-cased l:1 [] the text '@b '" + why,
                   "upper-cased l:3 [k] the text '@d ' in 'note'" + why}));
}

TEST(ScanLibrary, ReportsWhatWillBeReadOtherwise) {
  const std::string e = "@misc{k,\n";
  const std::string unbraced =
      "unbraced-value l:2 [k] the value of 'Title' has no braces around it ";
  const std::string shared = "shared-line ";
  const std::string follows =
      "the entry does not begin its line: it is not seen, or what stands before it becomes a part "
      "of it";
  struct Case {
    std::string library;
    Lines reported;
  };
  const Case cases[] = {
      {e + " Title = \"T\",\n}\n", {unbraced + "and is read as empty"}},
      {e + " Title = T,\n}\n", {unbraced + "and is read as empty"}},
      {e + " Title = \"T {DNA}\",\n}\n", {unbraced + "and is read from the first brace on"}},
      {e + " Title =\n {T},\n}\n",
       {"unbraced-value l:2 [k] the value of 'Title' does not begin on the line of its name and is "
        "read as empty"}},
      {e + " Title = \"a\nb = c\",\n year = 1\n}\n",
       {unbraced + "and is read as empty",
        "unbraced-value l:4 [k] the value of 'year' has no braces around it and is read as "
        "empty"}},
      {e + " note = \"T\",\n}\n", {}},
      {e + " note = {a = b, title = \"x\"},\n}\n", {}},
      {"@mastersthesis{k,\n title = {T},\n}\n",
       {"unknown-type l:1 [k] '@mastersthesis' is not a known type: the entry is skipped, or read "
        "as a part of the entry before it"}},
      {"@book{a,\n}\n\n  @Online{k,\n year = 1,\n}\n",
       {"unknown-type l:4 [k] '@Online' is not a known type: the entry is skipped, or read as a "
        "part of the entry before it"}},
      {"@articles{k,\n}\n", {"unknown-type l:1 [k] '@ARTICLES' is not a known type"}},
      {"@article(k,\n)\n",
       {"unknown-type l:1 [] '@article' starts no entry: no \"{\" follows on the line"}},
      {"@book\n{k,\n}\n",
       {"unknown-type l:1 [] '@book' starts no entry: no \"{\" follows on the line"}},
      {"@book {k,\n}\n",
       {"blank-in-type l:1 [k] the type is read as 'BOOK ', with the blank, and is not a known "
        "one"}},
      {"@electronic {k,\n}\n",
       {"blank-in-type l:1 [k] '@electronic' is followed by a blank: the entry is skipped, or read "
        "as "
        "a part of the entry before it"}},
      {e + " year = {1},\n@book{m,\n}\n",
       {"runs-on l:1 [k] the entry has no closing brace before the next entry"}},
      {e + " year = {1},\n",
       {"runs-on l:1 [k] the entry has no closing brace before the end of the library"}},
      {e + " year = {1},\n@online{m,\n}\n",
       {"runs-on l:1 [k] the entry has no closing brace before the next entry",
        "unknown-type l:3 [m] '@online' is not a known type: the entry is skipped, or read as a "
        "part of the entry before it"}},
      {e + " year = {1,\n@book{m,\n}\n",
       {"open-value l:2 [k] the value of 'year' does not close before the next entry"}},
      {e + " year = {1,\n}\n",
       {"runs-on l:1 [k] the entry has no closing brace before the end of the library"}},
      {e + " year = {1,\n x\n",
       {"open-value l:2 [k] the value of 'year' does not close before the end of the library"}},
      {e + " year = {1,\n title = {T}},\n}\n@book{m,\n}\n", {}},
      {e + " note = {\xFC},\n title = {\xC3},\n}\n",
       {"bad-bytes l:2 [k] the line contains bytes that are neither ASCII nor valid UTF-8",
        "bad-bytes l:3 [k] the line contains bytes that are neither ASCII nor valid UTF-8"}},
      {e + " note = \"n\",\n}\n\xFC\n@comment{c}\n\xFC\n",
       {"bad-bytes l:4 [] the line contains bytes that are neither ASCII nor valid UTF-8",
        "bad-bytes l:6 [] the line contains bytes that are neither ASCII nor valid UTF-8"}},
      {e + "}\n@misc{usual,\n title = {A long enough title},\n}\n  @book{l,\n title = {x\n",
       {"open-value l:7 [l] the value of 'title' does not close before the end of the library"}},
      {"x@book{a,\n}\n@misc{k, year = 1}\n",
       {shared + "l:1 [a] " + follows,
        "unbraced-value l:3 [k] the value of 'year' has no braces around it and is read as empty"}},
      {e + " year = 1 }@book{m,\n}\n",
       {"unbraced-value l:2 [k] the value of 'year' has no braces around it and is read as "
        "empty",
        shared + "l:2 [m] " + follows}},
  };
  for (const Case& c : cases) EXPECT_EQ(Scan(c.library), c.reported) << c.library;
}

TEST(ScanLibrary, AsksForAClosingLineOnlyWhereOneIsNeeded) {
  const std::string library = "@misc{k,\n year = {1}}\n@misc{l,\n}\n";
  EXPECT_EQ(Scan(library), Lines());
  EXPECT_EQ(Scan(library, {1000, &kTags, true}),
            Lines{"runs-on l:1 [k] no line that begins with \"}\" ends the entry before the next "
                  "entry"});
  EXPECT_EQ(Scan("@misc{k,\n year = {1}}\n", {1000, &kTags, true}),
            Lines{"runs-on l:1 [k] no line that begins with \"}\" ends the entry before the end of "
                  "the library"});
  EXPECT_EQ(Scan("@misc{k,\n year = {1}}\n}\n@misc{l,\n}\n", {1000, &kTags, true}), Lines());
}

TEST(ScanLibrary, ReportsLinesOverTheLimit) {
  const auto line = [](std::size_t size) { return std::string(size - 1, 'x') + "\n"; };
  EXPECT_EQ(Scan(line(9) + line(3) + line(9), {10}), Lines());
  EXPECT_EQ(Scan(line(3) + line(10) + line(3), {10}),
            Lines{"long-line l:2 [] a line of 10 bytes is read in pieces of 9"});
  EXPECT_EQ(Scan(line(3) + std::string(30, 'x'), {10}),
            Lines{"long-line l:2 [] a line of 30 bytes is read in pieces of 9"});
  EXPECT_EQ(Scan(std::string(9, 'x'), {10}), Lines());
}

TEST(ScanLibrary, CallsForEveryEntry) {
  Lines entries;
  ScanRules rules{1000};
  rules.on_entry = [&](const EntryHead& head) {
    entries.push_back(std::string(head.type) + "|" + std::string(head.key) + "|" +
                      std::to_string(head.offset));
  };
  Scan("@misc{k,\n}\n@Book {l,\n}\n@online{m,\n}\n@misc{ n ,\n", rules);
  EXPECT_EQ(entries, (Lines{"MISC|k|0", "BOOK |l|11", "MISC| n |36"}));
}

TEST(ScanLibrary, DoesNothingForNobody) {
  ScanRules rules{1000, &kTags};
  rules.on_entry = [](const EntryHead&) { FAIL(); };
  FileWarnings warnings(nullptr, "l", "");
  ScanLibrary("@misc{k,\n}\n", rules, warnings);
}

/// The ranges from one head to the next give the warnings that the whole library gives.
TEST(ScanRange, ReportsOfRangesWhatIsReportedOfTheLibrary) {
  HostileLibraries libraries(41);
  std::size_t reported = 0;
  const int runs = RandomRuns(3000);
  for (int i = 0; i < runs; ++i) {
    const std::string library = libraries.Next();
    std::vector<std::size_t> bounds{0};
    bool heads_begin_lines = true;
    for (std::size_t at = 0; at < library.size();) {
      const std::size_t end = std::min(library.find('\n', at), library.size() - 1) + 1;
      std::string line = library.substr(at, end - at);
      if (IsKnownEntry(line)) {
        heads_begin_lines &= line.starts_with('@');
        if (at > 0) bounds.push_back(at);
      }
      at = end;
    }
    if (!heads_begin_lines) continue;
    bounds.push_back(library.size());
    const ScanRules rules{1000, &kTags};
    RecordingWarnings to;
    FileWarnings warnings(&to, "l", library);
    for (std::size_t part = 0; part + 1 < bounds.size(); ++part) {
      ScanRange(library, {bounds[part], bounds[part + 1]}, rules, warnings);
    }
    Lines whole = Scan(library, rules);
    // Long lines are reported first of what is looked through at once.
    std::sort(whole.begin(), whole.end());
    std::sort(to.lines.begin(), to.lines.end());
    ASSERT_EQ(to.lines, whole) << library;
    reported += whole.size();
  }
  EXPECT_GT(reported, static_cast<std::size_t>(runs) / 4);
}

TEST(ScanRange, KnowsWhetherTheLibraryGoesOn) {
  const std::string library = "@misc{k,\n  title = {t\n@misc{l,\n}\n";
  const auto scan = [&](const LibraryRange& range) {
    RecordingWarnings to;
    FileWarnings warnings(&to, "l", library);
    ScanRange(library, range, {1000, &kTags, true}, warnings);
    return to.lines;
  };
  EXPECT_EQ(scan({0, 22}),
            Lines{"open-value l:2 [k] the value of 'title' does not close before the next entry"});
  EXPECT_EQ(scan({9, 22}), Lines());
  EXPECT_EQ(scan({22, library.size()}), Lines());
  EXPECT_EQ(scan({0, 9}),
            Lines{"runs-on l:1 [k] the entry has no closing brace before the next entry"});
}

TEST(ScanLibrary, ReportsTagsAndEntriesThatShareALine) {
  ScanRules rules{1000, &kTags};
  rules.one_value_a_line = true;
  EXPECT_EQ(Scan("@misc{k,\n title = {T}, year = {1}, note = {n}\n}\n", rules),
            Lines{"shared-line l:2 [k] the tag 'year' shares a line with 'title': one of them is "
                  "not read, or takes the value of the other"});
  EXPECT_EQ(Scan("@misc{k, title = {T}}\n", rules),
            Lines{"shared-line l:1 [k] the tag 'title' stands on the first line of its entry and "
                  "is not read"});
  EXPECT_EQ(Scan("@misc{k,\n note = {a\nb}, year = {1}\n}\n", rules).size(), 1U);
  EXPECT_EQ(Scan("@misc{k,\n title = {T},\n , year = {1}\n}\n", rules), Lines());
  EXPECT_EQ(Scan("@misc{k,\n note = {T}, isbn = {1}\n}\n", rules), Lines()) << "nobody reads it";
  rules.takes_all_tags = true;
  EXPECT_EQ(Scan("@misc{k,\n note = {T}, isbn = {1}\n}\n", rules).size(), 1U);
  EXPECT_EQ(Scan("@misc{k,\n title = {T}\n}@misc{l,\n}\n"),
            Lines{"shared-line l:3 [l] the entry does not begin its line: it is not seen, or what "
                  "stands before it becomes a part of it"});
}

TEST(ScanLibrary, ReportsEntriesThatAnAtHides) {
  EXPECT_EQ(
      Scan("@misc{a@b,\n title = {T},\n}\n"),
      Lines{"at-in-key l:1 [a@b] the key contains an '@', so that no operation sees the entry: its "
            "lines are skipped, or read as a part of the entry before it; remove the '@'"});
  EXPECT_EQ(Scan("@www-page{a,\n}\n").size(), 1U);
  EXPECT_EQ(Scan("@misc{k,\n title = {T}\n}@www-page{a,\n}\n"),
            Lines{"unknown-type l:3 [a] '@www-page' is not a known type: the entry is skipped, or "
                  "read as a part of the entry before it"});
  EXPECT_EQ(Scan("@misc{\n k,\n title = {T},\n}\n"),
            Lines{"broken-head l:1 [] the key does not stand on the first line of the entry and is "
                  "not read; put it there, with a comma after it"});
  EXPECT_EQ(Scan("@misc{k},\n@misc{l}\n@misc{m,}\n"),
            (Lines{"misread-key l:1 [k}] no comma follows the key, which is read as 'k}'",
                   "misread-key l:2 [l}] no comma follows the key, which is read as 'l}'"}));
}

TEST(ScanLibrary, ReportsHeadsAfterOtherText) {
  const std::string none = "starts no entry: no \"{\" follows on the line";
  EXPECT_EQ(Scan("\xEF\xBB\xBF@book(a,\n title = {T},\n)\n"),
            Lines{"unknown-type l:1 [] '@book' " + none});
  EXPECT_EQ(Scan("text @book(a,\n title = {T},\n)\n"),
            Lines{"unknown-type l:1 [] '@book' " + none});
  EXPECT_EQ(Scan("mail a@b.c (work), or d@e.f (home address)\n"), Lines()) << "no key follows";
  EXPECT_EQ(Scan("@misc{k,\n title = {a @b{c, d} @b(c,d)},\n}\n").size(), 1U) << "in a value";
  EXPECT_EQ(Scan("@misc{k,\n note = {open,\n}@preamble{\"p\"}\n@misc{l,\n}\n"),
            Lines{"runs-on l:1 [k] the entry has no closing brace before the next entry"})
      << "the brace closes the value, not the entry";
  EXPECT_EQ(Scan("@misc{k,\n note = {{open,\n}@preamble{p}\n}},\n}\n"), Lines())
      << "still in the value";
}

TEST(ScanLibrary, ReportsTagsAfterTheEndOfAnEntry) {
  ScanRules rules{1000, &kTags};
  rules.one_value_a_line = rules.takes_all_tags = true;
  EXPECT_EQ(Scan("@misc{k,\n title = {T\n}}, year = {1}, note = {n}\n", rules),
            (Lines{"shared-line l:3 [k] the tag 'year' stands after the end of its entry, on the "
                   "same line, and is not read",
                   "shared-line l:3 [k] the tag 'note' stands after the end of its entry, on the "
                   "same line, and is not read"}));
  EXPECT_EQ(Scan("@misc{k,\n title = {T}\n} % year = x\n", rules), Lines()) << "no tag";
}

TEST(ScanLibrary, SkipsWhatIsOfNoEntry) {
  EXPECT_EQ(Scan("@www(a,\n title = {T}\n)\n title = {U},\n").size(), 1U);
  EXPECT_EQ(Scan("@misc{k,\n note = {a\n@www{b}\n},\n}\n"), Lines());
}

TEST(ScanLibrary, FollowsThePiecesOfAValue) {
  EXPECT_EQ(Scan("@misc{k,\n title = {a\nb} # {c},\n}\n"),
            Lines{"unbraced-value l:3 [k] the value of 'title' continues after a '#': only the "
                  "part before it is read"});
  EXPECT_EQ(Scan("@misc{k,\n note = {a\nb} # {c},\n}\n"), Lines()) << "not read";
  EXPECT_EQ(Scan("@misc{k,\n title = {a} # \"b\",\n year = {1}\n}\n").size(), 1U);
  EXPECT_EQ(Scan("@misc{k,\n title = {a} #\n {b},\n year = {1}\n}\n").size(), 1U);
}

TEST(ScanLibrary, ReportsTextThatBecomesCapitals) {
  const std::string library = "@misc{k,\n note = {Mail a@b.org, see {Jones}},\n}\n";
  EXPECT_EQ(Scan(library), Lines{"upper-cased l:2 [k] the text '@b.org, see ' in 'note' becomes "
                                 "capitals, as it stands between an '@' and a brace"});
  ScanRules rules{1000, &kTags};
  rules.upper_cases = false;
  EXPECT_EQ(Scan(library, rules), Lines());
  for (const std::string_view good :
       {"@comment{x}\n", "@string {a = {b}}\n", "@misc{k,\n}\n",
        "@misc{k,\n note = {a@b.org},\n}\n", "@misc{k,\n note = {A@B {x}},\n}\n"}) {
    EXPECT_EQ(Scan(good), Lines()) << good;
  }
}

TEST(ScanLibrary, ReportsValuesOfSeveralParts) {
  EXPECT_EQ(Scan("@misc{k,\n title = {A} # { B},\n note = {A} # x,\n year = {1}\n}\n"),
            Lines{"unbraced-value l:2 [k] the value of 'title' continues after a '#': only the "
                  "part before it is read"});
  EXPECT_EQ(Scan("@misc{k,\n title = {A and\n  \xC3\x9C"
                 "x},\n note = {A\n\xC3\x9C"
                 "x}\n}\n"),
            Lines{"text-lost l:3 [k] a line of the value of 'title' begins with a letter that is "
                  "not ASCII and is lost where lines are joined"});
  for (const std::string control : {"\x01", " \t\x1F", "\v", "\f x"}) {
    EXPECT_EQ(Scan("@misc{k,\n title = {A and\n" + control + "B},\n note = {A\n\x01 B}\n}\n"),
              Lines{"text-lost l:3 [k] a line of the value of 'title' begins with a control "
                    "character and is lost where lines are joined"});
  }
  // A byte of zero is kept, and what is blank by itself is no loss.
  EXPECT_EQ(Scan("@misc{k,\n title = {A and\n\r\t " + std::string(1, '\0') + "B\n \x7F}\n}\n"),
            Lines());
}

TEST(ScanLibrary, CountsTheValues) {
  struct Counting final : Warnings {
    void Report(const Warning& /*warning*/) override {}
    void ReportValues(std::string_view file, std::size_t all, std::size_t some) override {
      counts.push_back(std::string(file) + " " + std::to_string(some) + "/" + std::to_string(all));
    }
    Lines counts;
  } to;
  const std::string library = "@misc{k,\n title = {T},\n year = 1, note = \"x\",\n author =\n}\n";
  FileWarnings warnings(&to, "l", library);
  ScanLibrary(library, {1000, &kTags}, warnings);
  ScanLibrary(library, {1000}, warnings);
  EXPECT_EQ(to.counts, Lines{"l 3/4"}) << "nobody asks who reads no values";
  static constexpr std::array<std::string_view, 1> kTitle{"title"};
  const NameMatcher titles(kTitle);
  ScanLibrary(library, {1000, &titles}, warnings);
  EXPECT_EQ(to.counts.size(), 1) << "the values that are read have braces";
}

/// A line of many values takes no longer than as many lines.
TEST(ScanLibrary, IsLinearInALine) {
  std::string library = "@misc{k,";
  for (int i = 0; i < 200000; ++i) library += "a=1,";
  const auto start = std::clock();
  Scan(library + "title=1}\n", {1000, &kTags});
  EXPECT_LT(std::clock() - start, 5 * CLOCKS_PER_SEC);
}

}  // namespace
}  // namespace tarvel
