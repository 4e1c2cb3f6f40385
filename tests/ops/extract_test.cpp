// SPDX-License-Identifier: MIT
#include "ops/extract.h"

#include <gtest/gtest.h>

#include "app/globals.h"
#include "ops/operations.h"
#include "tests/support/outcome.h"
#include "tests/support/reference_worlds.h"

namespace tarvel {
namespace {

using namespace std::string_literals;
using testing::kBibHeader;
using testing::kDocumentPath;
using testing::kLibraryPath;
using testing::kTexHeader;
using testing::kTextHeader;
using testing::MemoryFiles;
using testing::MemoryRun;
using testing::PlainOutcome;
using testing::PlainWorld;
using testing::Printed;
using testing::RecordingReporter;

using Keys = std::vector<std::string>;

Keys Scan(const std::string& document) {
  LineStream lines{std::string_view(document)};
  Keys keys;
  const int count = ScanCitations(lines, keys);
  EXPECT_EQ(static_cast<std::size_t>(count), keys.size());
  return keys;
}

struct ScanCase {
  std::string document;
  Keys keys;
  const char* says;
};

TEST(ScanCitations, TakesKeysInTheOrderOfTheirFirstCitation) {
  const ScanCase cases[] = {
      {"", {}, "an empty document"},
      {"text \\cite{a} text\n", {"a"}, "one key"},
      {"\\cite{b,a} ... \\cite{a}", {"b", "a"}, "a key cited twice counts once"},
      {"\\cite{a}\n\\cite{b}\n\\cite{a,c}\n", {"a", "b", "c"}, "over several lines"},
      {"\\cite{a}\\cite{b}\\cite{c}", {"a", "b", "c"}, "several on a line"},
      {"\\cite{a, b}", {"a", " b"}, "blanks belong to the key"},
      {"\\cite{ a }", {" a "}, "on both sides"},
      {"\\cite{A,a}", {"A", "a"}, "case counts"},
      {"\\cite{}", {}, "an empty list stores nothing"},
      {"\\cite{a,}", {"a"}, "nor does an empty rest"},
      {"\\cite{,a}", {"", "a"}, "an empty head before a comma is a key"},
      {"\\cite{a,,b}", {"a", "", "b"}, "between two commas too"},
      {"\\cite{,}", {""}, "and alone"},
      {"\\cite{a,\nb}\n", {"a"}, "the list ends at the end of its line"},
      {"\\cite{a", {"a"}, "or at the end of the document"},
      {"\\cite{a\r\n", {"a\r"}, "a carriage return is a byte of the key"},
      {"\\citep{x}\n", {}, "other commands alone are not seen"},
      {"\\cite[p. 3]{x}\n", {}, "nor is one with an option"},
      {"\\nocite{x}\n", {}, "nor one that only ends in cite"},
      {"\\citep{x} \\cite{y}\n", {"x", "y"}, "but they are beside one that is"},
      {"\\cite[p. 3]{x} and \\cite{y}\n", {"x", "y"}, "options too"},
      {"\\cite{y} and \\citep{x}\n", {"y"}, "not after the last one"},
      {"\\citeauthor and \\cite{y}\n", {"y"}, "a command without a list takes the next list"},
      {"% \\cite{c}\n\\end{document} \\cite{d}\n", {"c", "d"}, "comments and ends mean nothing"},
      {"\\cite{a{b}c}", {"a{b"}, "the first closing brace ends the list"},
      {"\\cite {a}", {}, "no blank before the brace"},
      {"\\cite{\xC3\xA9}\\cite{x\0y}"s, {"\xC3\xA9", "x\0y"s}, "any bytes"},
      {std::string(993, 'x') + "\\cite{a}\n", {}, "a command on byte 999 is cut: key on the next"},
      {std::string(992, 'x') + "\\cite{a}\n", {"a"}, "one byte earlier only the brace is lost"},
      {std::string(995, 'x') + "\\cite{a}\n", {}, "a command over the limit is missed"},
      {std::string(990, 'x') + "\\cite{abcdef}\n", {"abc"}, "a key over the limit is cut"},
      {std::string(999, 'x') + "\\cite{a}\n", {"a"}, "the next piece is a line"},
  };
  for (const ScanCase& c : cases) EXPECT_EQ(Scan(c.document), c.keys) << c.says;
}

TEST(ScanCitations, TakesMoreThanTwoThousandKeys) {
  std::string document;
  for (int i = 0; i < 5000; ++i) document += "\\cite{key" + std::to_string(i) + ",key7}\n";
  EXPECT_EQ(Scan(document).size(), 5000U);
  const std::string long_key(950, 'k');
  EXPECT_EQ(Scan("\\cite{" + long_key + "}").front(), long_key);
}

struct Selection {
  int found = 0;
  std::string library;
  std::string printed;
  bool operator==(const Selection&) const = default;
};

Selection Select(const std::string& library, const Keys& keys) {
  MemoryFiles files;
  RecordingReporter reporter;
  LineStream lines{std::string_view(library)};
  OutputFile output(files.CreateSink("/new.bib", CreateMode::kWrite), "/new.bib");
  Selection selection;
  selection.found = SelectAndWriteBibTeXEntriesIntoNewFile(reporter, output, lines, keys);
  EXPECT_TRUE(output.Close());
  selection.library = files.files["/new.bib"];
  selection.printed = reporter.printed;
  return selection;
}

struct SelectCase {
  std::string library;
  Keys keys;
  int found;
  std::string selected;
  const char* says;
};

TEST(SelectAndWriteBibTeXEntriesIntoNewFile, CopiesTheFirstEntryOfEachKey) {
  const std::string a = "@ARTICLE{a,\n  title = {A},\n}\n\n";
  const std::string b = "@BOOK{b,\n  title = {B},\n}\n";
  const SelectCase cases[] = {
      {a + b, {"b", "a"}, 2, b + a, "in the order of the keys"},
      {a + b, {"c"}, 0, "", "a key without an entry"},
      {a + b, {"c", "b"}, 1, b, "among others"},
      {a + b, {}, 0, "", "no keys"},
      {"", {"a"}, 0, "", "an empty library"},
      {a + "@book{a,\n}\n", {"a"}, 1, a, "the first of two with the same key"},
      {a, {" a"}, 0, "", "blanks count"},
      {a, {"A"}, 0, "", "so does case"},
      {"@article{a,\n}\n", {"a"}, 1, "@ARTICLE{a,\n}\n", "the type comes out in capitals"},
      {"@article{ a b ,\n}\n", {" a b "}, 1, "@ARTICLE{ a b ,\n}\n", "a key with blanks"},
      {"@article{,\n}\n", {""}, 1, "@ARTICLE{,\n}\n", "the empty key"},
      {"@article{a\n}\n", {"a"}, 0, "", "a head without a comma"},
      {"note {a, b}\n" + a, {"a"}, 1, a, "the first line that is a head"},
      {"@string{a, x}\n" + a, {"a"}, 1, a, "of a known type"},
      {"x@y {a,\n" + a, {"a"}, 1, a, "an address is no head"},
      {"@article{x, {a, z}\n" + a, {"a"}, 1, "@ARTICLE{x, {a, z}\n", "anywhere on a head"},
      {"@article{x, {a, z}\n}\n",
       {"a", "x"},
       2,
       "@ARTICLE{x, {a, z}\n}\n@ARTICLE{x, {a, z}\n}\n",
       "for each key of the head"},
      {"@article{a, {a, z}\n}\n@book{b,\n}\n",
       {"a", "b"},
       2,
       "@ARTICLE{a, {a, z}\n}\n@BOOK{b,\n}\n",
       "a key that stands twice on its head counts once"},
      {"@article{a{b,\n}\n",
       {"a{b", "b"},
       2,
       "@ARTICLE{a{b,\n}\n@ARTICLE{a{b,\n}\n",
       "keys with braces, and the key after the brace"},
      {"@article{x@y{a,\n}\n",
       {"x@y{a"},
       1,
       "@ARTICLE{x@Y{a,\n}\n",
       "the key is looked for on the line as it was read"},
      {"@article{x@y{a,\n}\n", {"x@Y{a"}, 0, "", "not in capitals"},
      {"}@article{a,\n}\n", {"a"}, 1, "}@ARTICLE{a,\n}\n", "a head may begin with anything"},
      {"@article{a,\n@comment{jabref-meta: x;}\n  y\n",
       {"a"},
       1,
       "@ARTICLE{a,\n@COMMENT{jabref-meta: x;}\n  y\n",
       "JabRef's data go with the entry before"},
      {"@article{a,\n x\n@mastersthesis{z,\n}\n@misc{b,\n}\n",
       {"a"},
       1,
       "@ARTICLE{a,\n x\n@MASTERSTHESIS{z,\n}\n",
       "an unknown type does not end an entry"},
      {"@article{a,\n  title = {x}",
       {"a"},
       1,
       "@ARTICLE{a,\n  title = {x}",
       "no newline at the end"},
      {"@article{a,\r\n}\r\n", {"a"}, 1, "@ARTICLE{a,\r\n}\r\n", "carriage returns stay"},
      {"@article{a,\n\xC3\xA9\0\n"s, {"a"}, 1, "@ARTICLE{a,\n\xC3\xA9\0\n"s, "any bytes"},
      {std::string(995, 'x') + "@article{a,\n}\n", {"a"}, 0, "", "a head over the limit is none"},
      {std::string(999, 'x') + "@article{a,\n}\n",
       {"a"},
       1,
       "@ARTICLE{a,\n}\n",
       "a piece of a line is a line"},
      {a.substr(0, 12) + std::string(999, 'y') + b,
       {"a", "b"},
       2,
       a.substr(0, 12) + std::string(999, 'y') + b,
       "and ends an entry"},
  };
  for (const SelectCase& c : cases) {
    EXPECT_EQ(Select(c.library, c.keys), (Selection{c.found, c.selected, ""})) << c.says;
  }
}

TEST(SelectAndWriteBibTeXEntriesIntoNewFile, FailsWhenTheLibraryEndsWithACitedHead) {
  const std::string text = Printed(
      "Function 'SelectAndWriteBibTeXEntriesIntoNewFile', reading BibTeX file:\nVery "
      "strange => After @ARTICLE end of file?");
  EXPECT_EQ(Select("@book{a,\n}\n@misc{b,\n", {"a", "b", "a"}),
            (Selection{0, "@BOOK{a,\n}\n@MISC{b,\n", text}));
  EXPECT_EQ(Select("@book{a,\n}\n@misc{b,", {"b"}), (Selection{0, "@MISC{b,", text}));
}

TEST(SelectAndWriteBibTeXEntriesIntoNewFile, ReadsTheLibraryOnceForAnyNumberOfKeys) {
  // Read again for every key, this would be 20,000 times 2 MB.
  std::string library;
  Keys keys;
  for (int i = 0; i < 20000; ++i) {
    const std::string key = "key" + std::to_string(i);
    library += "@MISC{" + key + ",\n  title = {" + std::string(60, 't') + "},\n}\n";
    keys.push_back(key);
  }
  std::reverse(keys.begin(), keys.end());
  const Selection selection = Select(library, keys);
  EXPECT_EQ(selection.found, 20000);
  EXPECT_EQ(selection.library.size(), library.size());
}

constexpr std::string_view kLibrary = R"(Text before.
@article{a,
  author = {Doe, J. and Roe, K.},
  title = {{On A}},
  journal = {J. Chem. Phys.},
  year = {2001},
  volume = {12},
  pages = {123--130},
}

@book{b,
  author = {Poe, L.},
  title = {{{On {B}}}},
  publisher = {Pub},
  address = {Town},
  year = {2002},
}

@misc{m,
  title = {M},
}
)";

PlainWorld World(const std::string& document, const std::string& library) {
  return {document, library, testing::MarkerStyles(), "", {}};
}

PlainOutcome RunOver(const PlainWorld& world) {
  GlobalJournalStyles = {};
  MemoryFiles files = testing::FilesOf(world);
  RunContext run = MemoryRun(files, kDocumentPath, kLibraryPath);
  run.settings = world.settings;
  return testing::RunWorld(&RunExtract, run, files);
}

/// The file of references after its header.
std::string References(const PlainWorld& world) {
  PlainOutcome outcome = RunOver(world);
  EXPECT_EQ(outcome.result, 1) << outcome.printed;
  const std::string header = std::string(kTexHeader);
  const std::string tex = outcome.files["_extract.tex"];
  EXPECT_TRUE(tex.starts_with(header));
  return tex.substr(std::min(header.size(), tex.size()));
}

constexpr std::string_view kReferenceA =
    "<APS_article_title_latex>\\bibitem{a}|J. Doe and K. Roe|On A|J. Chem. Phys.|12|123|2001||\n";
constexpr std::string_view kReferenceB =
    "<APS_book_latex>\\bibitem{b}|On {B|L. Poe|Pub|Town|2002|||\n";

TEST(Extract, WritesKeysLibraryAndReferencesInTheOrderOfCitation) {
  PlainOutcome outcome = RunOver(World("\\cite{b,a} and \\cite{a}\n", std::string(kLibrary)));
  EXPECT_EQ(outcome.result, 1);
  EXPECT_EQ(outcome.files.size(), 3U);
  EXPECT_EQ(outcome.files["_extract.txt"], std::string(kTextHeader) + "b\na\n");
  EXPECT_TRUE(outcome.files["_extract.bib"].starts_with(std::string(kBibHeader) + "@BOOK{b,\n"));
  EXPECT_GT(outcome.files["_extract.bib"].find("@ARTICLE{a,\n"),
            outcome.files["_extract.bib"].find("@BOOK{b,\n"));
  EXPECT_EQ(outcome.files["_extract.tex"],
            std::string(kTexHeader) + std::string(kReferenceB).append(kReferenceA));
  EXPECT_EQ(outcome.printed, "");
  EXPECT_TRUE(outcome.boxes.empty());
}

TEST(Extract, ReportsKeysWithoutAnEntry) {
  PlainOutcome outcome = RunOver(World("\\cite{a,x,b}\n", std::string(kLibrary)));
  EXPECT_EQ(outcome.result, 1);
  ASSERT_EQ(outcome.boxes.size(), 1U);
  EXPECT_EQ(outcome.boxes[0].caption, "Correct files?");
  EXPECT_EQ(outcome.boxes[0].message,
            "3 citations could be found in the LaTeX file. However, only 2 corresponding entries "
            "were found in the BibTeX library! Did you choose the correct files?");
  EXPECT_EQ(outcome.files["_extract.tex"],
            std::string(kTexHeader) +
                "   Note: 3 citations could be found in the LaTeX file.\n   However, only 2 "
                "corresponding entries could be found in the BibTeX library!\n   Did you choose "
                "the correct files?\n\n   Here are all entries cited in the LaTeX file that could "
                "be found also in the BibTeX library ... .\n\n\n" +
                std::string(kReferenceA).append(kReferenceB));
}

TEST(Extract, CopiesUnsupportedEntriesAndReportsThem) {
  PlainOutcome one = RunOver(World("\\cite{m}\n", std::string(kLibrary)));
  EXPECT_EQ(one.result, 1);
  EXPECT_EQ(one.files["_extract.bib"], std::string(kBibHeader) + "@MISC{m,\n  title = {M},\n}\n");
  EXPECT_EQ(one.files["_extract.tex"],
            std::string(kTexHeader) +
                "\n\nAttention!\n==========\nThe entry type of the bibitem-key 'm' is '@MISC', "
                "which is not supported, so far.\nYou have to enter the bibitem manually into this "
                "file. \n\n\n\n");
  ASSERT_EQ(one.boxes.size(), 1U);
  EXPECT_EQ(one.boxes[0].caption, "No support !");
  EXPECT_EQ(one.boxes[0].message,
            "One entry is not saved in the '_bibitems.tex' file, because it is not an ARTICLE, "
            "BOOK, INCOLLECTION, PHDTHESIS, MASTERTHESIS, INPROCEEDINGS. Only the latter entry "
            "types are supported.\n\nFor more details see the '_bibitems.tex' file.");

  PlainOutcome two = RunOver(World("\\cite{m,n}\n", std::string(kLibrary) + "@manual{n,\n}\n"));
  ASSERT_EQ(two.boxes.size(), 1U);
  EXPECT_EQ(two.boxes[0].message,
            "2 entries are not saved in the '_bibitems.tex' file, because they are not an ARTICLE, "
            "BOOK, INCOLLECTION, PHDTHESIS, MASTERTHESIS, INPROCEEDINGS. Only the latter entry "
            "types are supported.\n\nFor more details see the '_bibitems.tex' file.");
}

struct ReferenceCase {
  const char* library;  // entries with the keys a and b
  const char* references;
  const char* says;
};

TEST(Extract, ReadsTheTagsOfEachType) {
  constexpr ReferenceCase cases[] = {
      {"@article{a,\n volume = {12},\n}\n@article{b,\n year = {2001},\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||||12||||\n"
       "<APS_article_title_latex>\\bibitem{b}||||12||2001||\n",
       "a tag that an entry lacks is printed as the entry before had it"},
      {"@book{a,\n author = {Doe, J.},\n}\n@article{b,\n}\n",
       "<APS_book_latex>\\bibitem{a}||J. Doe||||||\n"
       "<APS_article_title_latex>\\bibitem{b}|J. Doe|||||||\n",
       "the author too, from any type"},
      {"@article{a,\n title = \"T\",\n year = 2001,\n}\n@article{b,\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||||||||\n"
       "<APS_article_title_latex>\\bibitem{b}||||||||\n",
       "quoted and bare values are empty"},
      {"@article{a,\n year = {2001},\n}\n@article{b,\n year = 2002,\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||||||2001||\n"
       "<APS_article_title_latex>\\bibitem{b}||||||||\n",
       "and empty what was carried over"},
      {"@article{a,\n title = {{{T}}},\n JOURNAL = {{J}},\n}\n@article{b,\n booktitle = {X},\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||T|{J}|||||\n"
       "<APS_article_title_latex>\\bibitem{b}||X|{J}|||||\n",
       "titles of articles lose their braces; a booktitle is a title line"},
      {"@book{a,\n title = {{T} of {U}},\n}\n@misc{b,\n}\n",
       "<APS_book_latex>\\bibitem{a}|T} of {U|||||||\n\n\nAttention!\n==========\nThe entry type "
       "of the bibitem-key 'b' is '@MISC', which is not supported, so far.\nYou have to enter the "
       "bibitem manually into this file. \n\n\n\n",
       "whether they belong together or not"},
      {"@article{a,\n pages = {-5},\n}\n@article{b,\n pages = {},\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||||||||\n"
       "<APS_article_title_latex>\\bibitem{b}||||||||\n",
       "pages that begin with a dash or are empty are empty"},
      {"@article{a,\n year = {1}, volume = {2}, pages = {3},\n}\n@article{b,\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||||1|1|1||\n"
       "<APS_article_title_latex>\\bibitem{b}||||1|1|1||\n",
       "every tag named on a line takes the line's first value"},
      {"@article{a,\n title = {Pages of\n   the volume},\n}\n@article{b,\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||Pages of the volume|||Pages of   the volume|||\n"
       "<APS_article_title_latex>\\bibitem{b}||Pages of the volume|||Pages of   the volume|||\n",
       "a value over several lines has one blank for each line break; a second reading of the "
       "line has those of the lines"},
      {"@article{a,\n year = {1999 in\n pages},\n}\n@article{b,\n}\n",
       "<APS_article_title_latex>\\bibitem{a}|||||1999 in pages|1999 in pages||\n"
       "<APS_article_title_latex>\\bibitem{b}|||||1999 in pages|1999 in pages||\n",
       "a tag named on a continuation line is seen on the joined line"},
      {"@article{a,\n@book{b,\n title = {T},\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||||||||\n<APS_book_latex>\\bibitem{b}|T|||||||\n",
       "a head directly after a head ends its entry"},
      {"@articles{a,\n title = {T},\n}\n@article {b,\n title = {T},\n}\n", "",
       "types that only begin like a supported one print nothing"},
      {"@booklet{a,\n title = {T},\n}\n@article{b,\n}\n",
       "<APS_article_title_latex>\\bibitem{b}||||||||\n", "and leave no values"},
      {"@misc{a, note = {@article{\n title = {T},\n}\n@article{b,\n}\n",
       "<APS_article_title_latex>\\bibitem{b}||||||||\n",
       "a supported type anywhere on the head makes no note"},
      {"@article{a,\n title = {T},\n}\n@comment{jabref-meta: year = {9};}\n@article{b,\n}\n",
       "<APS_article_title_latex>\\bibitem{a}||T||||jabref-meta: year = {9};||\n"
       "<APS_article_title_latex>\\bibitem{b}||T||||jabref-meta: year = {9};||\n",
       "JabRef's data are read as part of the entry before"},
      {"@phdthesis{a,\n author = {Doe, J.},\n year = {1},\n school = "
       "{S},\n}\n@masterthesis{b,\n}\n",
       "<APS_phd_latex>\\bibitem{a}|J. Doe|S|1|||||\n<APS_phd_latex>\\bibitem{b}|J. Doe|S|1|||||\n",
       "both kinds of theses are one"},
      {"@inproceedings{a,\n publisher = {P},\n editor = {Doe, J. and Roe, K.},\n}\n"
       "@incollection{b,\n}\n",
       "<APS_inpro_latex>\\bibitem{a}|||Doe, J. and Roe, K.|||||\n"
       "<APS_incol_latex>\\bibitem{b}|||Doe, J. and Roe, K.|||||\n",
       "proceedings have no publisher, and editors as they stand"},
      {"@incollection{a,\n publisher = {P},\n editor = {Doe, J. and Roe, K.},\n booktitle = "
       "{{B}},\n}\n@incollection{b,\n}\n",
       "<APS_incol_latex>\\bibitem{a}||{B}|J. Doe and K. Roe|P||||\n"
       "<APS_incol_latex>\\bibitem{b}||{B}|J. Doe and K. Roe|P||||\n",
       "parts of books have one, and editors like authors; booktitles keep their braces"},
  };
  for (const ReferenceCase& c : cases) {
    EXPECT_EQ(References(World("\\cite{a,b}", c.library)), c.references) << c.says;
  }
}

struct OrderCase {
  const char* type;
  Flag Settings::*style;           // prints all of the tags
  std::vector<std::string> names;  // in the order in which they are tested
};

TEST(Extract, TestsTheTagsOfATypeInTheirOrder) {
  const OrderCase cases[] = {
      {"article", &Settings::StyleAPS, {"author", "journal", "year", "volume", "title", "pages"}},
      {"book", &Settings::StyleACS, {"author", "publisher", "year", "address", "title"}},
      {"incollection",
       &Settings::StyleACS,
       {"author", "publisher", "year", "address", "title", "booktitle", "editor"}},
      {"incollection", &Settings::StyleWiley, {"booktitle", "editor", "pages"}},
      {"inproceedings",
       &Settings::StyleACS,
       {"author", "booktitle", "year", "editor", "address", "pages"}},
      {"inproceedings", &Settings::StyleSpringerCompSci, {"author", "title", "booktitle", "year"}},
      {"phdthesis", &Settings::StyleACS, {"author", "year", "school"}},
      {"masterthesis", &Settings::StyleSpringerCompSci, {"author", "year", "title"}},
  };
  // The second line of a value is seen by the tests after that of the value's own tag.
  for (const OrderCase& c : cases) {
    for (std::size_t own = 0; own < c.names.size(); ++own) {
      for (std::size_t other = 0; other < c.names.size(); ++other) {
        if (own == other) continue;
        PlainWorld world = World("\\cite{a}", "@" + std::string(c.type) + "{a,\n " + c.names[own] +
                                                  " = {v\n" + c.names[other] + "},\n}\n");
        Choose(world.settings, kStyleFlags, c.style);
        const std::string references = References(world);
        const std::size_t first = references.find("|v");
        ASSERT_NE(first, std::string::npos) << references;
        const bool twice = references.find("|v", first + 2) != std::string::npos;
        EXPECT_EQ(twice, own < other)
            << c.type << ": " << c.names[own] << " and " << c.names[other] << "\n"
            << references;
      }
    }
  }
}

/// References in the style of Springer_Comp_Sci, which prints titles and booktitles.
std::string SpringerReferences(const std::string& library) {
  PlainWorld world = World("\\cite{a,b}", library);
  Choose(world.settings, kStyleFlags, &Settings::StyleSpringerCompSci);
  return References(world);
}

TEST(Extract, DistinguishesTitlesAndBooktitles) {
  constexpr ReferenceCase cases[] = {
      {"@incollection{a,\n title = {{T}},\n Booktitle = {{B}},\n}\n@article{b,\n}\n",
       "<SPRINGER_C_inpro_latex>\\bibitem{a}|||T|{B}||||\n"
       "<SPRINGER_C_article_title_latex>\\bibitem{b}|||T|||||\n",
       "a booktitle line is no title line, whatever its case"},
      {"@inproceedings{a,\n title = {{T}},\n}\n@inproceedings{b,\n booktitle = {{B}},\n}\n",
       "<SPRINGER_C_inpro_latex>\\bibitem{a}|||{T}|||||\n"
       "<SPRINGER_C_inpro_latex>\\bibitem{b}|||T|{B}||||\n",
       "titles of proceedings lose their braces when a booktitle is read"},
      {"@inproceedings{a,\n Booktitle = {{B}},\n}\n@inproceedings{b,\n}\n",
       "<SPRINGER_C_inpro_latex>\\bibitem{a}|||B|{B}||||\n"
       "<SPRINGER_C_inpro_latex>\\bibitem{b}|||B|{B}||||\n",
       "in proceedings only a booktitle in lower case is no title"},
      {"@inproceedings{a,\n TITLE = {T of a booktitle},\n}\n@inproceedings{b,\n}\n",
       "<SPRINGER_C_inpro_latex>\\bibitem{a}||||T of a booktitle||||\n"
       "<SPRINGER_C_inpro_latex>\\bibitem{b}||||T of a booktitle||||\n",
       "the word may stand anywhere on the line"},
  };
  for (const ReferenceCase& c : cases) {
    EXPECT_EQ(SpringerReferences(c.library), c.references) << c.says;
  }
}

TEST(Extract, DropsTheDotsOfJournalsForSpringerInTheBufferItself) {
  EXPECT_EQ(SpringerReferences("@article{a,\n journal = {J. Chem.. Phys.},\n}\n@article{b,\n}\n"),
            "<SPRINGER_C_article_title_latex>\\bibitem{a}||||J Chem. Phys||||\n"
            "<SPRINGER_C_article_title_latex>\\bibitem{b}||||J Chem Phys||||\n")
      << "the dot after a dropped one stays, until the next article drops it";
}

TEST(Extract, PrintsPagesAndTitlesAsChosen) {
  PlainWorld world = World("\\cite{a}", std::string(kLibrary));
  world.settings.PagesRange = 1;
  world.settings.PrintTitle = 0;
  EXPECT_EQ(
      References(world),
      "<APS_article_latex>\\bibitem{a}|J. Doe and K. Roe|J. Chem. Phys.|12|123--130|2001|||\n");
}

TEST(Extract, ReadsLinesOfTheNewLibraryWithAWiderLimit) {
  // The library is read in pieces of 999 bytes, which end between "ye" and "ar"; the new one is
  // not.
  const std::string filler(996, 'x');
  EXPECT_EQ(References(World("\\cite{a}", "@article{a,\n " + filler + "year = {2001},\n}\n")),
            "<APS_article_title_latex>\\bibitem{a}||||||2001||\n");
}

TEST(Extract, TakesAHeadThatIsGluedToALineForAHead) {
  // The library's last line has no line break; in the new library a head follows it.
  EXPECT_EQ(
      References(World("\\cite{a,b}", "@book{b,\n}\n@article{a,\n x}")),
      "<APS_article_title_latex>\\bibitem{a}||||||||\n<APS_book_latex>\\bibitem{b}||||||||\n");
  EXPECT_EQ(References(World("\\cite{a,b}", "@article{b,\n}\n@book{a,\n title = {")),
            "<APS_book_latex>\\bibitem{a}||||||||\n"
            "<APS_article_title_latex>\\bibitem{@ARTICLE{b}||||||||\n");
}

TEST(Extract, EndsWellWhenAValueRunsIntoTheEndWithAHeadInIt) {
  EXPECT_EQ(References(World("\\cite{a,b}", "@book{a,\n title = {{\n}\n@article{b,\n}\n")),
            "<APS_book_latex>\\bibitem{a}| } @ARTICLE{b, |||||||\n")
      << "the line that was read counts as the second head, with no line after it";
  PlainOutcome misc =
      RunOver(World("\\cite{a,b,c}", "@book{a,\n title = {{\n}\n@misc{b,\n}\n@misc{c,\n}\n"));
  EXPECT_EQ(misc.result, 1);
  const auto note = [](const std::string& key) {
    return "\n\nAttention!\n==========\nThe entry type of the bibitem-key '" + key +
           "' is '@MISC', which is not supported, so far.\nYou have to enter the bibitem manually "
           "into this file. \n\n\n\n";
  };
  EXPECT_EQ(misc.files["_extract.tex"],
            std::string(kTexHeader) +
                "<APS_book_latex>\\bibitem{a}| } @MISC{b, } @MISC{c, |||||||\n" +
                note("{}@MISC{b") + note("{}@MISC{B"))
      << "of an unsupported type: once for each head that is missing, in capitals by then";
}

TEST(Extract, FailsWhenTheNewLibraryHasTooFewHeads) {
  PlainOutcome outcome =
      RunOver(World("\\cite{a,b}", "@article{a,\n title = {T\n@article{b,\n}}\n x\n"));
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.printed,
            Printed("Function Extract()_11 => Could not read the new BibTeX file?"));
  EXPECT_EQ(
      outcome.files["_extract.tex"],
      std::string(kTexHeader) + "<APS_article_title_latex>\\bibitem{a}||T @ARTICLE{b, ||||||\n");
}

struct Failure {
  std::function<void(MemoryFiles& files, RunContext& run)> cause;
  std::string printed;
  std::vector<std::string> left;  // suffixes of the files that are there afterwards
  const char* says;
};

std::string NotWritten(const std::string& suffix) {
  return Printed("Could not write the file '/lib/lit" + suffix + "': No space left on device");
}

TEST(Extract, ReportsEachFailureByItsNumber) {
  const std::string document(kDocumentPath);
  const std::string library(kLibraryPath);
  const std::string keys = "_extract.txt";
  const std::string bib = "_extract.bib";
  const std::string tex = "_extract.tex";
  const std::string stem = "/lib/lit";
  const std::string point = "Function Extract()_";
  const Failure failures[] = {
      {[](auto&, auto& run) { run.first_path.clear(); },
       Printed(point + "1, initialization => LaTeX file does not exist?"),
       {},
       "no document"},
      {[](auto&, auto& run) { run.second_path.clear(); },
       Printed(point + "2, initialization => BibTeX file does not exist?"),
       {},
       "no library"},
      {[](auto&, auto& run) { run.first_path.clear(), run.second_path.clear(); },
       Printed(point + "1, initialization => LaTeX file does not exist?"),
       {},
       "neither"},
      {[&](auto& files, auto&) { files.unreadable.insert(document); },
       Printed(point + "3 => Could not open the LaTeX file?"),
       {},
       "no document on disk"},
      {[&](auto& files, auto&) { files.read_only.insert(document); },
       Printed(point + "3 => Could not open the LaTeX file?"),
       {},
       "a read-only document"},
      {[&](auto& files, auto&) { files.not_creatable.insert(stem + keys); },
       Printed(point + "4 => Could not create item file?"),
       {},
       "no list of keys"},
      {[&](auto&, auto& run) { run.second_path = "/lib/lit"; },
       Printed(point + "4 => Could not create item file?"),
       {},
       "no dot in the library's path"},
      {[&](auto& files, auto& run) {
         files.files[stem + keys] = files.files[document];
         run.first_path = stem + keys;
       },
       Printed(point + "4 => Could not create item file?"),
       {},
       "the document is the list of keys"},
      {[&](auto& files, auto&) { files.unreadable.insert(library); },
       Printed(point + "5 => Could not open the BibTeX file?"),
       {keys},
       "no library on disk"},
      {[&](auto& files, auto&) { files.read_only.insert(library); },
       Printed(point + "5 => Could not open the BibTeX file?"),
       {keys},
       "a read-only library"},
      {[&](auto& files, auto&) { files.not_creatable.insert(stem + bib); },
       Printed(point + "6 => Could not create a new BibTeX file?"),
       {keys},
       "no new library"},
      {[&](auto& files, auto&) { files.files[document] = "\\cite{x}"; },
       Printed(point + "7 => 'Numentries' is zero? Is the BibTeX file probably empty (0 Byte)?"),
       {bib, keys},
       "no key has an entry"},
      {[&](auto& files, auto&) { files.files[document] = ""; },
       Printed(point + "7 => 'Numentries' is zero? Is the BibTeX file probably empty (0 Byte)?"),
       {bib, keys},
       "nothing is cited"},
      {[&](auto& files, auto&) { files.files[library] = "@misc{a,"; },
       Printed("Function 'SelectAndWriteBibTeXEntriesIntoNewFile', reading BibTeX file:\nVery "
               "strange => After @ARTICLE end of file?") +
           Printed(point +
                   "7 => 'Numentries' is zero? Is the BibTeX file probably empty (0 Byte)?"),
       {bib, keys},
       "the library ends with a cited head"},
      {[&](auto& files, auto&) { files.read_only.insert(stem + bib); },
       Printed(point + "8 => Could not open the new BibTeX file?"),
       {bib, keys},
       "the new library cannot be opened again"},
      {[&](auto& files, auto&) { files.not_creatable.insert(stem + tex); },
       Printed(point + "9 => Could not open the bibitem file?"),
       {bib, keys},
       "no references"},
      {[&](auto& files, auto&) { files.unreadable.insert(std::string(testing::kStylesPath)); },
       Printed("ReadJournalStyles()_1 => Could not open the text file 'Journal_styles_....tvl'"),
       {bib, tex, keys},
       "no styles: keys and library are written before"},
      {[&](auto& files, auto&) { files.room[stem + keys] = 10; },
       NotWritten(keys),
       {keys},
       "no room for the keys"},
      {[&](auto& files, auto&) { files.room[stem + bib] = 10; },
       NotWritten(bib),
       {bib, keys},
       "no room for the library"},
      {[&](auto& files, auto&) { files.room[stem + tex] = 10; },
       NotWritten(tex),
       {bib, tex, keys},
       "no room for the references"},
  };
  for (const Failure& failure : failures) {
    MemoryFiles files = testing::FilesOf(World("\\cite{a}", std::string(kLibrary)));
    RunContext run = MemoryRun(files, kDocumentPath, kLibraryPath);
    failure.cause(files, run);
    const auto before = files.files;
    RecordingReporter reporter;
    EXPECT_EQ(RunExtract(run), 0) << failure.says;
    EXPECT_EQ(reporter.printed, failure.printed) << failure.says;
    EXPECT_TRUE(reporter.boxes.empty()) << failure.says;
    std::vector<std::string> left;
    for (const auto& [path, bytes] : files.files) {
      if (!before.contains(path)) left.push_back(path.substr(stem.size()));
    }
    EXPECT_EQ(left, failure.left) << failure.says;
    for (const auto& [path, bytes] : before) EXPECT_EQ(files.files[path], bytes) << failure.says;
  }
}

/// Files in memory of which one comes out empty when it is opened again.
class ForgetfulFiles final : public FileSystem {
 public:
  ForgetfulFiles(MemoryFiles& files, std::string forgotten)
      : files_(files), forgotten_(std::move(forgotten)) {}
  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override {
    if (path == forgotten_) files_.files[path].clear();
    return files_.OpenSource(path, mode);
  }
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override {
    return files_.CreateSink(path, mode);
  }
  bool IsSameFile(const std::string& one, const std::string& other) override {
    return files_.IsSameFile(one, other);
  }

 private:
  MemoryFiles& files_;
  std::string forgotten_;
};

TEST(Extract, FailsWhenTheNewLibraryWasEmptied) {
  MemoryFiles memory = testing::FilesOf(World("\\cite{a}", std::string(kLibrary)));
  ForgetfulFiles files(memory, "/lib/lit_extract.bib");
  RecordingReporter reporter;
  EXPECT_EQ(RunExtract(MemoryRun(files, kDocumentPath, kLibraryPath)), 0);
  EXPECT_EQ(reporter.printed,
            Printed("Function Extract()_10 => Could not read the new BibTeX file?"));
}

TEST(Extract, ShowsMissingKeysBeforeTheStylesAreRead) {
  MemoryFiles files = testing::FilesOf(World("\\cite{a,x}", std::string(kLibrary)));
  files.files.erase(std::string(testing::kStylesPath));
  const RunContext run = MemoryRun(files, kDocumentPath, kLibraryPath);
  RecordingReporter reporter;
  EXPECT_EQ(RunExtract(run), 0);
  ASSERT_EQ(reporter.boxes.size(), 1U);
  EXPECT_EQ(reporter.boxes[0].caption, "Correct files?");
  EXPECT_TRUE(files.files["/lib/lit_extract.tex"].ends_with("... .\n\n\n"));
}

}  // namespace
}  // namespace tarvel
