// SPDX-License-Identifier: MIT
#include "ops/prepare/prepare.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/texts.h"
#include "tests/support/memory_files.h"
#include "tests/support/prepared_judge.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using testing::MemoryFiles;
using testing::MemoryRun;
using testing::RecordingReporter;
using testing::RecordingWarnings;
using Texts = std::vector<std::string>;

struct Result {
  std::string library;
  std::string log;
  Texts warnings;  // "kind [key] text"
};

Result Prepare(const std::string& library, bool keep_all = false) {
  Result result;
  const Prepared prepared = PrepareLibrary(library, {keep_all}, [&](const PrepareWarning& warning) {
    result.warnings.push_back(std::string(RowOf(warning.kind).name) + " [" +
                              std::string(warning.key) + "] " + std::string(warning.text));
  });
  result.library = prepared.library;
  result.log = prepared.log;
  EXPECT_EQ(testing::JudgePrepared(library, {keep_all}), "") << library;
  return result;
}

std::string Library(const std::string& library) { return Prepare(library).library; }

/// The tags that are written of one entry, between its first and its last line.
std::string Tags(const std::string& tags, const std::string& type = "article") {
  const std::string library = Library("@" + type + "{k," + tags + "}");
  const std::size_t begin = library.find(",\n") + 2;
  return library.substr(begin, library.rfind("}\n\n") - begin);
}

TEST(Prepare, WritesOneFormOfAllForms) {
  const std::string wanted =
      "@ARTICLE{Doe2001,\n"
      "  author = {Doe, J. and Roe, K.},\n"
      "  title = {Ants and Bees},\n"
      "  year = {2001}\n"
      "}\n\n";
  for (const char* library :
       {"@article{Doe2001, author = {Doe, J. and Roe, K.}, title = {Ants and Bees}, year = {2001}}",
        "@ARTICLE{Doe2001,author=\"Doe, J. and Roe, K.\",title=\"Ants and Bees\",year=2001,}",
        "@Article(Doe2001,\r\n  Author = \"Doe, J.\r\n and Roe, K.\",\r\n  TITLE = {{Ants and "
        "Bees}},\r\n  year\r\n=\r\n2001\r\n)\r\n",
        "@article{Doe2001,\r  author = {Doe, J. and Roe, K.},\r  title={Ants and  Bees},\r "
        "year={2001}}\r",
        "\xef\xbb\xbf@string{a = {Doe, J.}}@string{y=200}@article{Doe2001, author = a # \" and "
        "Roe, K.\", title = {Ants} # { and Bees}, year = y # 1}"}) {
    EXPECT_EQ(Library(library), wanted);
  }
}

TEST(Prepare, SeveralEntriesOnALineAndEntriesWithoutTags) {
  EXPECT_EQ(Library("@misc{a,note={x}}@misc{b}  @misc{c,}"),
            "@MISC{a,\n  note = {x}\n}\n\n@MISC{b,\n}\n\n@MISC{c,\n}\n\n");
}

TEST(Prepare, GivesTypesThatOperationsKnow) {
  const Result result = Prepare("@online{a}@mastersthesis{b}@Conference{c}@articles{d}");
  EXPECT_EQ(result.library,
            "@ELECTRONIC{a,\n}\n\n@MASTERTHESIS{b,\n}\n\n@CONFERENCE{c,\n}\n\n@MISC{d,\n}\n\n");
  EXPECT_NE(result.log.find("The type '@online' became '@ELECTRONIC'."), std::string::npos);
  EXPECT_EQ(result.warnings,
            (Texts{"unknown-type [d] the type '@articles' is unknown and became '@MISC'"}));
}

TEST(Prepare, GivesTagsTheNamesThatOperationsKnow) {
  EXPECT_EQ(Tags("journaltitle={J}, date={2001-05-12}, location={Here}"),
            "  journal = {J},\n  year = {2001},\n  address = {Here},\n  month = {May}\n");
  EXPECT_EQ(Tags("title={A}, subtitle={B}"), "  title = {A: B}\n");
  EXPECT_EQ(Tags("title={{A?}}, subtitle={{B}}"), "  title = {A? B}\n");
  EXPECT_EQ(Tags("subtitle={B}"), "  title = {B}\n");
  EXPECT_EQ(Tags("institution={U}", "thesis"), "  school = {U}\n");
  EXPECT_EQ(Tags("institution={U}", "report"), "  institution = {U}\n");
  EXPECT_EQ(Tags("institution={U}, school={S}", "phdthesis"),
            "  institution = {U},\n  school = {S}\n");
  EXPECT_EQ(Tags("date={2001}, year={2002}"), "  date = {2001},\n  year = {2002}\n")
      << "a tag that is there stays";
  EXPECT_EQ(Tags("journaltitle={J}, journal={K}"), "  journal = {K}\n");
}

TEST(Prepare, TakesYearAndMonthFromDates) {
  const std::pair<const char*, const char*> cases[] = {
      {"2001", "  year = {2001}\n"},
      {"2001-12", "  year = {2001},\n  month = {December}\n"},
      {"2001-12-31/2002-01-02", "  year = {2001-12-31/2002-01-02}\n"},
      {"2001-05-03/2001-05-07", "  year = {2001},\n  month = {May}\n"},
      {"2001-21", "  year = {2001}\n"},
      {"2001/", "  year = {2001}\n"},
      {"circa 1900", "  year = {circa 1900}\n"},
      {"", "  year = {}\n"}};
  for (const auto& [date, tags] : cases) {
    EXPECT_EQ(Tags("date={" + std::string(date) + "}"), tags);
  }
}

TEST(Prepare, KeepsTheFirstOfSeveralTagsOfOneName) {
  const Result result = Prepare("@misc{k, note={a}, NOTE={b}}");
  EXPECT_EQ(result.library, "@MISC{k,\n  note = {a}\n}\n\n");
  EXPECT_EQ(result.log,
            "Entry 'k', line 1:\n"
            "    The tag 'note' is there a second time and was left out: {b}\n\n");
  EXPECT_EQ(result.warnings, (Texts{"left-out [k] the tag 'note' was left out: the entry has "
                                    "another one of this name before it"}));
}

TEST(Prepare, BracesAroundWholeValuesGoInEveryTag) {
  EXPECT_EQ(
      Tags("pages={{774-797}}, year=\"{2001}\", journal={{{J}}}, author={{Barnes and Noble}}, "
           "editor={{Doe, J. and Roe, K.}}"),
      "  pages = {774-797},\n  year = {2001},\n  journal = {J},\n"
      "  author = {{Barnes a{}nd Noble}},\n  editor = {Doe, J. and Roe, K.}\n");
}

TEST(Prepare, LeavesOutWhatWouldBeTakenForAnotherTag) {
  const Result result = Prepare(
      "@article{k, pages={115}, numpages={5}, abstract={In this year}, keywords={ice},\n"
      "isbn={1}}");
  EXPECT_EQ(result.library,
            "@ARTICLE{k,\n  pages = {115},\n  keywords = {ice},\n  isbn = {1}\n}\n\n");
  EXPECT_EQ(
      result.log,
      "Entry 'k', line 1:\n"
      "    The tag 'numpages' was left out, as operations would take its line for that of 'pages': "
      "{5}\n"
      "    The tag 'abstract' was left out, as operations would take its line for that of 'year': "
      "{In this year}\n\n");
  EXPECT_EQ(result.warnings,
            (Texts{"left-out [k] the tag 'numpages' was left out: operations would take its line "
                   "for that of 'pages'; prepare --keep-all keeps it",
                   "left-out [k] the tag 'abstract' was left out: operations would take its line "
                   "for that of 'year'; prepare --keep-all keeps it"}));
}

TEST(Prepare, KeepAllKeepsIt) {
  EXPECT_EQ(
      Prepare("@article{k, pages={115}, numpages={5}, abstract={In this year}}", true).library,
      "@ARTICLE{k,\n  numpages = {5},\n  pages = {115},\n  abstract = {In this ye{}ar}\n}\n\n")
      << "of two lines with 'pages' the later counts";
}

TEST(Prepare, GuardsTheWordsInWhatIsNeeded) {
  EXPECT_EQ(Tags("title={Two authors in a year}, author={Yearwood, J.}, note={a title}"),
            "  title = {Two auth{}ors in a ye{}ar},\n  author = {Ye{}arwood, J.},\n"
            "  note = {a tit{}le}\n");
  EXPECT_EQ(Tags("title={Two notes on numbers}"), "  title = {Two notes on numbers}\n")
      << "no operation asks for them before the title";
  EXPECT_EQ(Tags("title={School of editors}", "article"), "  title = {School of editors}\n");
  EXPECT_EQ(Tags("title={School of editors}", "phdthesis"), "  title = {Sch{}ool of editors}\n");
}

TEST(Prepare, ABooktitleComesBeforeTheTitle) {
  EXPECT_EQ(Tags("title={T}, booktitle={B}, year={1}", "inproceedings"),
            "  booktitle = {B},\n  title = {T},\n  year = {1}\n");
}

TEST(Prepare, AnAddressThatMentionsATagComesFirst) {
  const Result result = Prepare("@inproceedings{k, title={T}, url={http://a/homepages/title/x}}");
  EXPECT_EQ(result.library,
            "@INPROCEEDINGS{k,\n  url = {http://a/homepages/title/x},\n  title = {T},\n"
            "  pages = {}\n}\n\n")
      << "and an empty tag takes its text back where the entry has none";
  EXPECT_NE(result.log.find("An empty tag 'pages' was added: a line of another mentions it."),
            std::string::npos);
  EXPECT_TRUE(result.warnings.empty()) << "no operation asks for the address of such an entry";
  EXPECT_EQ(Prepare("@online{k, url={http://journal.org}}").warnings,
            (Texts{"misread-tag [k] Compare and Clean doubles read the line of 'url' as that of "
                   "'journal', which it mentions"}));
}

TEST(Prepare, BookkeepingComesLast) {
  EXPECT_EQ(Tags("owner={me}, timestamp={2001.01.01}, title={T}"),
            "  title = {T},\n  owner = {me},\n  timestamp = {2001.01.01}\n")
      << "or Clean tags would drop the entry as empty";
}

TEST(Prepare, TitlesBeginAndEndWithoutABrace) {
  EXPECT_EQ(Tags("title={{DNA} and {RNA}}, booktitle={A {B}}, journal={{A} {B}}"),
            "  booktitle = {A {B}\\/},\n  title = {D{NA} and {RNA}\\/},\n  journal = {{A} {B}}\n");
}

TEST(Prepare, TheSignAtIsGuardedWhereABraceFollows) {
  EXPECT_EQ(Tags("note={a@book.com, {x}}, annotation={a@b.c}, howpublished={a@b.c}"),
            "  note = {a@{}book.com, {x}},\n  annotation = {a@b.c},\n  howpublished = {a@b.c}\n");
}

TEST(Prepare, ATextThatWouldStartAnEntryIsLeftOutEvenIfItIsNeeded) {
  const Result result = Prepare("@misc{k, url={http://x/@book/{a}}, note={n}}");
  EXPECT_EQ(result.library, "@MISC{k,\n  url = {},\n  note = {n}\n}\n\n");
  EXPECT_EQ(result.warnings, (Texts{"left-out [k] the tag 'url' was left out: operations would "
                                    "misread other lines because of it"}));
  EXPECT_NE(result.log.find("{http://x/@book/{a}}"), std::string::npos);
}

TEST(Prepare, ReportsKeysThatNoFormCures) {
  const std::pair<const char*, const char*> cases[] = {
      {"DBLP:journals/x",
       "its key contains 'journal': Journals would join the lines of the entry and leave its "
       "journal unchanged; change the key"},
      {"a@b",
       "its key contains an \"@\": no operation sees the entry, and it was moved to the beginning; "
       "change the key"},
      {"", "the entry has no key: Clean tags drops it; change the key"},
      {"url={x",
       "with its key, the first line looks like a tag that Clean characters leaves out; "
       "change the key"}};
  for (const auto& [key, text] : cases) {
    const std::string k(key);
    EXPECT_EQ(Prepare("@misc{" + k + ", note={n}}").warnings,
              Texts{"misread-key [" + k + "] " + text});
  }
  EXPECT_EQ(Prepare("@misc{" + std::string(950, 'k') + ", note={n}}").warnings.size(), 1U);
  for (const std::string key : {"author2001", "doi:x", "url", "file:1", "year", "owner", "a{b"}) {
    EXPECT_TRUE(Prepare("@misc{" + key + ", note={n}}").warnings.empty()) << key;
  }
}

TEST(Prepare, EntriesThatNoOperationSeesStandInFront) {
  EXPECT_EQ(Library("@misc{a}@misc{b@c, note={n}}@preamble{{x}}"),
            "@PREAMBLE{{x}}\n\n@MISC{b@c,\n  note = {n}\n}\n\n@MISC{a,\n}\n\n");
}

TEST(Prepare, GivesEntriesTheTagsOfTheirParents) {
  const Result result = Prepare(
      "@inproceedings{a, title={A}, crossref={P}}\n"
      "@inproceedings{b, title={B}, year={2002}, crossref={p}}\n"
      "@proceedings{p, title={Proc}, booktitle={Proceedings}, year={2001}, abstract={a year}}\n"
      "@misc{c, crossref={none}}\n");
  EXPECT_EQ(result.library,
            "@INPROCEEDINGS{a,\n  booktitle = {Proceedings},\n  title = {A},\n  crossref = {P},\n"
            "  year = {2001}\n}\n\n"
            "@INPROCEEDINGS{b,\n  booktitle = {Proceedings},\n  title = {B},\n  year = {2002},\n"
            "  crossref = {p}\n}\n\n"
            "@PROCEEDINGS{p,\n  booktitle = {Proceedings},\n  title = {Proc},\n  year = {2001}\n}"
            "\n\n"
            "@MISC{c,\n  crossref = {none}\n}\n\n");
  EXPECT_NE(result.log.find("These tags are those of its 'crossref': 'booktitle', 'year'."),
            std::string::npos);
  EXPECT_EQ(result.warnings,
            (Texts{"left-out [p] the tag 'abstract' was left out: operations would take its line "
                   "for that of 'year'; prepare --keep-all keeps it",
                   "missing-parent [c] no entry has the key that its 'crossref' gives"}));
}

TEST(Prepare, ReportsParentsWhoseTagsAreMissing) {
  EXPECT_EQ(Prepare("@misc{a, crossref={A}}").warnings,
            Texts{"missing-parent [a] its 'crossref' names the entry itself"});
  EXPECT_EQ(Prepare("@misc{a, crossref={b}}@misc{b, crossref={c}}@misc{c, crossref={b}}").warnings,
            Texts{"missing-parent [a] its chain of parents is too long, or circular"});
}

TEST(Prepare, ReportsWhatItDoesNotFollow) {
  EXPECT_EQ(Prepare("@misc{a, XData={p,q}}@misc{p, note={n}}").warnings,
            Texts{"missing-parent [a] its 'xdata' is not followed: copy the tags of 'p,q' into the "
                  "entry"});
}

TEST(Prepare, FollowsParentsOfParents) {
  std::string library;
  for (int i = 0; i < 30; ++i) {
    library += "@misc{c" + std::to_string(i) + ", crossref={c" + std::to_string(i + 1) + "}}";
  }
  library += "@misc{c30, year={1}}";
  EXPECT_EQ(Prepare(library).warnings, Texts());
  EXPECT_TRUE(Library(library).starts_with("@MISC{c0,\n  crossref = {c1},\n  year = {1}\n}"));
}

TEST(Prepare, ParentsMayStandBeforeTheirChildrenAndHaveParents) {
  EXPECT_EQ(Library("@book{p, year={1}}@misc{c, crossref={p}}"),
            "@BOOK{p,\n  year = {1}\n}\n\n@MISC{c,\n  crossref = {p},\n  year = {1}\n}\n\n");
  EXPECT_EQ(Library("@misc{c, crossref={p}}@book{p, crossref={q}}@book{q, year={1}}").substr(0, 49),
            "@MISC{c,\n  crossref = {p},\n  year = {1}\n}\n\n@BOOK{");
  EXPECT_EQ(Library("@misc{a, crossref={b}, x={1}}@misc{b, crossref={a}, y={2}}"),
            "@MISC{a,\n  crossref = {b},\n  x = {1},\n  y = {2}\n}\n\n"
            "@MISC{b,\n  crossref = {a},\n  y = {2},\n  x = {1}\n}\n\n")
      << "a circle has an end";
  EXPECT_EQ(Library("@misc{a, crossref={a}}"), "@MISC{a,\n  crossref = {a}\n}\n\n");
}

TEST(Prepare, WhatIsLeftOutOfAChildIsNotTakenFromItsParent) {
  const std::string library =
      Library("@misc{c, x={in a year}, crossref={p}}@misc{p, x={harmless}}");
  EXPECT_EQ(library,
            "@MISC{c,\n  x = {},\n  crossref = {p}\n}\n\n@MISC{p,\n  x = {harmless}\n}\n\n");
}

TEST(Prepare, LogsWhatStandsOutsideEntries) {
  const Result result = Prepare(
      "% a remark\n@string{jcp = \"J. Chem. Phys.\"}\n@comment{jabref-meta: x}\n"
      "@misc{k, journal=jcp}\nthe end\n");
  EXPECT_EQ(result.library, "@MISC{k,\n  journal = {J. Chem. Phys.}\n}\n\n");
  EXPECT_EQ(
      result.log,
      "Line 1: text outside entries was left out:\n% a remark\n\n"
      "Line 2: the string 'jcp' was replaced by its text where it is used:\nJ. Chem. Phys.\n\n"
      "Line 3: text outside entries was left out:\n@comment{jabref-meta: x}\n\n"
      "Line 5: text outside entries was left out:\nthe end\n\n");
  EXPECT_EQ(
      result.warnings,
      (Texts{"text-not-copied [] text outside entries was not copied: '% a remark'",
             "text-not-copied [] text outside entries was not copied: '@comment{jabref-meta: x}'",
             "text-not-copied [] text outside entries was not copied: 'the end'"}));
}

TEST(Prepare, PreamblesStandInFrontUnlessOperationsWouldChangeThem) {
  EXPECT_EQ(Library("@misc{k}@preamble{\"\\newcommand{\\a}{b} \"}@preamble{{c}}"),
            "@PREAMBLE{{\\newcommand{\\a}{b} }}\n@PREAMBLE{{c}}\n\n@MISC{k,\n}\n\n");
  const std::string texts[] = {"\\def\\@x{y}", "\\journal{y}", std::string(2000, 'x')};
  for (const std::string& text : texts) {
    const Result result = Prepare("@preamble{{" + text + "}}@misc{k}");
    EXPECT_EQ(result.library, "@MISC{k,\n}\n\n");
    EXPECT_NE(result.log.find("Line 1: the preamble was left out:\n" + text), std::string::npos);
    EXPECT_EQ(result.warnings.size(), 1U);
  }
}

TEST(Prepare, PiecesOfALongLibraryAreTheWholeWithWhatStandsInFront) {
  std::string entries;
  while (entries.size() < 400'000) entries += "@misc{k, note={n}}";
  const std::string preamble = "@preamble{{x}}";
  const std::string hidden = "@ misc {b@c, note={n}}";
  for (const std::string& library : {entries, preamble + entries, hidden + entries,
                                     entries + preamble + entries, entries + hidden + entries}) {
    std::vector<std::size_t> pieces;
    std::string written;
    const auto write = [&](std::string_view text) {
      written += text;
      pieces.push_back(text.size());
    };
    const auto warn = [](const PrepareWarning&) {};
    const Prepared prepared = PrepareLibrary(library, {}, warn, {.library = write, .log = {}});
    EXPECT_EQ(written + prepared.library, PrepareLibrary(library, {}, warn).library);
    EXPECT_GT(pieces.size(), 1U);
    EXPECT_LT(prepared.library.size(), 200'000U);
  }
}

TEST(Prepare, TheNameOfAnUndefinedStringIsItsText) {
  const Result result = Prepare("@misc{k, journal = PRB}");
  EXPECT_EQ(result.library, "@MISC{k,\n  journal = {PRB}\n}\n\n");
  EXPECT_EQ(result.warnings, (Texts{"undefined-string [k] the string 'PRB' is not defined before "
                                    "this line: its name is used as the value"}));
}

TEST(Prepare, WhatCannotBeReadStandsInTheLog) {
  const Result result = Prepare(
      "@misc{a, note={x} title={y}}\nrest\n@misc{b, note={open\n@misc{c, note={n}}\n@misc{,t\n");
  EXPECT_EQ(result.library, "@MISC{a,\n  note = {x}\n}\n\n@MISC{c,\n  note = {n}\n}\n\n")
      << "the tags before the place are kept, as BibTeX keeps them";
  EXPECT_EQ(result.log,
            "Line 1: this could not be read to its end:\n"
            "@misc{a, note={x} title={y}}\nrest\n\n"
            "Line 3: this could not be read to its end:\n@misc{b, note={open\n\n"
            "Line 5: this could not be read to its end:\n@misc{,t\n\n");
  EXPECT_EQ(
      result.warnings,
      (Texts{"unread-text [a] a comma, or the end of the entry, is missing after the value of "
             "'note'; the text is in the log",
             "unread-text [b] nothing closes the value of 'note'; the text is in the log",
             "unread-text [] there is no \"=\" after 't'; the text is in the log"}));
}

TEST(Prepare, AKeyWithAClosingBraceCannotBeWritten) {
  const Result result = Prepare("@misc(a}b, note={n})@misc{c}");
  EXPECT_EQ(result.library, "@MISC{c,\n}\n\n");
  EXPECT_NE(result.log.find("@misc(a}b, note={n})"), std::string::npos);
  EXPECT_EQ(result.warnings.size(), 1U);
  EXPECT_EQ(Library("@misc(a}b, note={n} x)\n@misc{c}"), "@MISC{c,\n}\n\n")
      << "nor where its tags break off";
}

TEST(Prepare, ZeroBytesAndBadBytesStay) {
  const std::string value("a\0b \xff", 5);
  EXPECT_EQ(Library("@misc{k, note={" + value + "}}"), "@MISC{k,\n  note = {" + value + "}\n}\n\n");
}

TEST(Prepare, HeadersOfThisProgramAreNoText) {
  const Result result = Prepare(std::string(BibFileHeader) + "\n" + std::string(BibFileHeader) +
                                "\n@misc{k}" + std::string(BibFileHeader));
  EXPECT_EQ(result.log, "");
  EXPECT_EQ(Prepare(std::string(BibFileHeader) + "x @misc{k}").log,
            "Line 9: text outside entries was left out:\nx\n\n");
}

// The whole operation.

TEST(RunPrepare, WritesALibraryAndALogBesideTheLibrary) {
  MemoryFiles files;
  RecordingReporter reporter;
  RecordingWarnings warnings;
  files.files["my.refs.bib"] = "@misc{a, note=x, t={in a year}\n@misc{b}";
  RunContext run = MemoryRun(files, "my.refs.bib");
  run.warnings = &warnings;
  EXPECT_EQ(RunPrepare(run), kSucceeded);
  EXPECT_EQ(files.files["my.refs_prepared.bib"],
            std::string(BibFileHeader) + "\n@MISC{a,\n  note = {x}\n}\n\n@MISC{b,\n}\n\n");
  EXPECT_EQ(
      files.files["my.refs_prepared.log"],
      std::string(LogFileHeader) +
          "\nEntry 'a', line 1:\n    The tag 't' was left out, as operations would take its line "
          "for that of 'year': {in a year}\n\n"
          "Line 1: this could not be read to its end:\n@misc{a, note=x, t={in a year}\n\n"
          "\n\n\n2 BibTeX entries from the BibTeX file\n    'my.refs.bib'\nwere rewritten in the "
          "form that all operations read.\nTags that were left out: 1. Texts that could not be "
          "read: 1.\nThe new BibTeX file is stored in\n    'my.refs_prepared.bib'.");
  EXPECT_EQ(
      warnings.lines,
      (Texts{
          "left-out my.refs.bib:1 [a] the tag 't' was left out: operations would take its line for "
          "that of 'year'; prepare --keep-all keeps it",
          "undefined-string my.refs.bib:1 [a] the string 'x' is not defined before this line: its "
          "name is used as the value",
          "unread-text my.refs.bib:2 [a] a comma, or the end of the entry, is missing after "
          "the value of 't'; the text is in the log"}));
  EXPECT_EQ(reporter.printed, "");
}

TEST(RunPrepare, WritesALongLibraryAndItsLogInPieces) {
  MemoryFiles files;
  RecordingReporter reporter;
  std::string log(std::string(LogFileHeader) + "\n");
  std::string library(std::string(BibFileHeader) + "\n");
  for (int i = 0; i < 20000; ++i) {
    const std::string text = "text " + std::to_string(i);
    library += "@MISC{k,\n}\n\n";
    files.files["lit.bib"] += text + "\n@misc{k}\n";
    log += "Line " + std::to_string(2 * i + 1) + ": text outside entries was left out:\n" + text +
           "\n\n";
  }
  EXPECT_EQ(RunPrepare(MemoryRun(files, "lit.bib")), kSucceeded);
  EXPECT_TRUE(files.files["lit_prepared.bib"] == library);
  EXPECT_EQ(files.files["lit_prepared.log"].substr(0, log.size()), log);
  EXPECT_TRUE(
      files.files["lit_prepared.log"].substr(log.size()).starts_with("\n\n\n20000 BibTeX entries"));
}

TEST(RunPrepare, ReportsWhyItFails) {
  const auto failure = [](MemoryFiles& files, const std::string& path) {
    RecordingReporter reporter;
    EXPECT_EQ(RunPrepare(MemoryRun(files, path)), kFailed);
    return reporter.printed;
  };
  const auto printed = [](const std::string& text) {
    return "Attention, an error occured!\nError: " + text + "\n\n";
  };
  MemoryFiles files;
  EXPECT_EQ(failure(files, ""), printed("Function Prepare()_1 => BibTeX file does not exist?"));
  EXPECT_EQ(failure(files, "lit.bib"),
            printed("Could not read the library 'lit.bib': No such file or directory"));
  files.files["lit.bib"] = "no entry, but a mail to a@b.c";
  EXPECT_EQ(failure(files, "lit.bib"), printed("There is no BibTeX entry in the file 'lit.bib'"));
  EXPECT_EQ(files.files.size(), 1U) << "nothing is written then";
  files.files["lit.bib"] = "@misc{k}";
  files.not_creatable = {"lit_prepared.log"};
  EXPECT_EQ(failure(files, "lit.bib"),
            printed("Function Prepare()_4 => Could not create the log file?"));
  files.not_creatable = {"lit_prepared.bib"};
  EXPECT_EQ(failure(files, "lit.bib"),
            printed("Function Prepare()_5 => Could not create a new BibTeX file?"));
  files.not_creatable.clear();
  files.room["lit_prepared.bib"] = 10;
  EXPECT_NE(failure(files, "lit.bib").find("Could not write the file 'lit_prepared.bib'"),
            std::string::npos);
  files.files["lit"] = "@misc{k}";
  EXPECT_EQ(failure(files, "lit"),
            printed("Function Prepare()_4 => Could not create the log file?"))
      << "a path without a \".\"";
}

TEST(Prepare, GuardsTheEndOfATitleThatAGroupWasPutTo) {
  EXPECT_EQ(Tags("title={Some {pages} @}"), "  title = {Some {pa{}ges} @{}\\/}\n");
}

}  // namespace
}  // namespace tarvel
