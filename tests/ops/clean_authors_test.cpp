// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "ops/operations.h"
#include "tests/support/memory_files.h"
#include "tests/support/outcome.h"
#include "tests/support/plain_clean_authors.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

using namespace std::string_view_literals;
using testing::kBibHeader;
using testing::kLogHeader;
using testing::MemoryFiles;
using testing::MemoryRun;
using testing::Outcome;
using testing::OutcomeOf;
using testing::Printed;
using testing::RecordingReporter;

struct Cleaned {
  int result = -1;
  std::string library;  // after its header
  std::string log;      // after its header and before the summary
  int changed = -1;     // as the summary says
};

Cleaned Clean(std::string_view library) {
  const Outcome outcome = OutcomeOf({RunCleanAuthors, Output::kAuthorLibrary, Output::kAuthorLog},
                                    library, {}, {}, "/d/lit.bib");
  Cleaned cleaned;
  cleaned.result = outcome.result;
  cleaned.library = outcome.library;
  cleaned.log = outcome.log;
  const std::string_view summary = "\n\n\nThe author list of ";
  const std::size_t start = cleaned.log.rfind(summary);
  if (start == std::string::npos) {
    ADD_FAILURE() << "no summary in " << cleaned.log;
    return cleaned;
  }
  const std::string tail = cleaned.log.substr(start + summary.size());
  cleaned.log.resize(start);
  cleaned.changed = std::stoi(tail);
  EXPECT_EQ(tail, std::to_string(cleaned.changed) +
                      " BibTeX entries from the BibTeX file\n    '/d/lit.bib'\n"
                      "were put into the correct BibTeX structure. The new BibTeX file is stored "
                      "in\n    '/d/lit_author.bib'.");
  return cleaned;
}

struct LibraryRow {
  std::string_view library;
  std::string_view written;
  std::string_view says;
};

template <std::size_t kSize>
void ExpectWritten(const LibraryRow (&rows)[kSize]) {
  for (const LibraryRow& row : rows) {
    const Cleaned cleaned = Clean(row.library);
    EXPECT_EQ(cleaned.result, kSucceeded) << row.says;
    EXPECT_EQ(cleaned.library, row.written) << row.says;
  }
}

TEST(CleanAuthors, RewritesAuthorLinesWhateverTheyLookLike) {
  constexpr LibraryRow kRows[] = {
      {"  author = {John Smith},\n", "  author = {Smith, J.},\n", "the usual line"},
      {"author={John Smith},\n", "  author = {Smith, J.},\n", "no blanks"},
      {"AUTHOR = {John Smith},\n", "  author = {Smith, J.},\n", "capitals"},
      {"AuThOr = {John Smith},\n", "  author = {Smith, J.},\n", "mixed case"},
      {"\tauthor\t=\t{John Smith},\n", "  author = {Smith, J.},\n", "tabs"},
      {"a u t h o r = {John Smith},\n", "  author = {Smith, J.},\n", "blanks between the letters"},
      {"author = {John Smith}\n", "  author = {Smith, J.},\n", "no comma after the value"},
      {"author = {John Smith}", "  author = {Smith, J.},\n", "no line break after the value"},
      {"author = {John Smith},\r\n", "  author = {Smith, J.},\n", "a carriage return"},
      {"author = {John Smith}, title = {T},\n", "  author = {Smith, J.},\n",
       "what follows the value is dropped"},
      {"author = x {John Smith},\n", "  author = {Smith, J.},\n", "the first brace counts"},
      {"author = {Smith, J. and Jones, B.},\n", "  author = {Smith, J. and Jones, B.},\n",
       "in the normal form already"},
      {"author = {Smith\\ ,\\ J.},\n", "  author = {Smith , J.},\n", "escaped blanks"},
      {"author = \"John Smith\",\n", "  author = {},\n", "a quoted value is not read"},
      {"author = smith,\n", "  author = {},\n", "a bare value is not read"},
      {"author = {},\n", "  author = {},\n", "an empty value"},
      {"author = {   },\n", "  author = {   },\n", "a value of blanks"},
      {"author =\n", "  author = {},\n", "no value at all"},
      {"author =\n {John Smith},\n", "  author = {},\n {John Smith},\n",
       "the brace must stand on the line"},
      {"author = {John\0 Smith},\n"sv, "  author = {Smith, J.},\n", "a zero byte is a byte"},
      {"author = {Smith\0 Bob},\n"sv, "  author = {Bob, S.},\n", "a zero byte is a byte"},
      {"author = {John Smi\0th},\n"sv, "  author = {Smi\0th, J.},\n"sv, "a zero byte is kept"},
  };
  ExpectWritten(kRows);
}

TEST(CleanAuthors, CopiesEveryOtherLineUnchanged) {
  constexpr LibraryRow kRows[] = {
      {"", "", "an empty library"},
      {"\n\n", "\n\n", "empty lines"},
      {"  bookauthor = {John Smith},\n", "  bookauthor = {John Smith},\n", "bookauthor"},
      {"  editor = {John Smith},\n", "  editor = {John Smith},\n", "editor"},
      {"  authors = {John Smith},\n", "  authors = {John Smith},\n", "authors"},
      {"  author\n= {John Smith},\n", "  author\n= {John Smith},\n", "the \"=\" on the next line"},
      {"  author {John Smith},\n", "  author {John Smith},\n", "no \"=\""},
      {"  author", "  author", "a line that ends too soon"},
      {", author = {John Smith}\n", ", author = {John Smith}\n", "a comma before it"},
      {"@article{a, author = {John Smith}\n", "@ARTICLE{a, author = {John Smith}\n",
       "after the head of an entry"},
      {"author\0= {John Smith},\n"sv, "author\0= {John Smith},\n"sv, "a zero byte in the tag"},
      {"\vauthor = {John Smith},\n", "\vauthor = {John Smith},\n", "only blanks and tabs count"},
      {"title = {The author = {x}},\r\n", "title = {The author = {x}},\r\n", "carriage returns"},
      {"t = {\xC3\xA9\xFF\x01}", "t = {\xC3\xA9\xFF\x01}", "other bytes, no final newline"},
      {"@article{a,\n@comment{jabref-meta: x}\n@string{a = {b}}\n",
       "@ARTICLE{a,\n@COMMENT{jabref-meta: x}\n@STRING{a = {b}}\n",
       "but type words come out in capitals"},
      {"x @ y\n", "x @ y\n", "an \"@\" without a brace changes nothing"},
  };
  ExpectWritten(kRows);
}

TEST(CleanAuthors, ReadsValuesAcrossLines) {
  constexpr LibraryRow kRows[] = {
      {"author = {John Smith and\n    Bob Jones},\nyear = {1},\n",
       "  author = {Smith, J. and Jones, B.},\nyear = {1},\n", "the lines become one"},
      {"author = {\n  John Smith\n  and Bob Jones\n},\n", "  author = {Smith, J. and Jones, B.},\n",
       "breaks around the value"},
      {"author = {Smith, J.\n  and Jones, B.},\n", "  author = {Smith, J. and Jones, B.},\n",
       "the break becomes one blank"},
      {"author = {John Smith and\n \n\n Bob Jones},\n", "  author = {Smith, J. and Jones, B.},\n",
       "blank lines are passed over"},
      {"author = {Jos\xC3\xA9 and\n\xC3\x89mile Zola},\n",
       "  author = {Jos\xC3\xA9 and mile Zola},\n",
       "a line that begins with other than ASCII loses those bytes"},
      {"author = {John Smith and\nBob Jones", "  author = {Smith, J. and Jones, B.},\n",
       "the file ends without a closing brace"},
      {"author = {John Smith and\n", "  author = {Smith, J.},\n", "the file ends inside the value"},
      {"author = {John Smith\n@article{b,\n  author = {Bob Jones},\n",
       "  author = {John Smith @article{b, author = {Bob Jones},},\n",
       "a value that never closes swallows what follows"},
      {"author = {John Smith},\n  year = {1},\nauthor = {Bob Jones},\n",
       "  author = {Smith, J.},\n  year = {1},\n  author = {Jones, B.},\n",
       "the next line is read"},
      {"author = {", "  author = {},\n", "the file ends at the brace"},
      {"author = {\n", "  author = {},\n", "the file ends after the brace"},
  };
  ExpectWritten(kRows);
}

TEST(CleanAuthors, ReadsLinesInPieces) {
  const std::string blanks(49999, ' ');
  const std::string names(49999 - 10, 'x');  // after "author = {"
  EXPECT_EQ(Clean("t\n" + blanks + "author = {John Smith},\n").library,
            "t\n" + blanks + "  author = {Smith, J.},\n")
      << "a line of 50,000 bytes and more begins anew after its first 49,999";
  EXPECT_EQ(Clean("t\n" + blanks.substr(1) + "author = {John Smith},\n").library,
            "t\n" + blanks.substr(1) + "author = {John Smith},\n")
      << "the first byte of the tag stands in the first piece";
  EXPECT_EQ(Clean("author = {" + names + "yz},\n").library,
            "  author = {X" + names.substr(1) + "},\nyz},\n")
      << "a piece without a line break ends the value";
  EXPECT_EQ(Clean("author = {" + names.substr(1) + "},\n").library,
            "  author = {X" + names.substr(2) + "},\n,\n")
      << "the brace is the last byte of the piece";
  EXPECT_EQ(Clean("author = {a,\n" + std::string(24999, 'b') + "c},\n").library,
            "  author = {A, " + std::string(24999, 'b') + "},\nc},\n")
      << "lines that continue a value come in pieces of 24,999";
}

TEST(CleanAuthors, DropsTheFirstLinesThatHoldANumberSign) {
  constexpr LibraryRow kRows[] = {
      {"#\n#\nx\n#\n", "x\n#\n", "up to the first line without one"},
      {"# a header\n\n# x\n", "\n# x\n", "an empty line ends them"},
      {"@article{a#,\nx\n", "x\n", "a data line is dropped as well"},
      {"  author = {John # Smith},\nx\n", "x\n", "an author line too"},
      {"#\n", "", "nothing but such lines"},
      {"#", "", "nothing but such a line without a line break"},
      {"#\n#\n#a#", "", "nothing but such lines"},
      {"#\n  author = {John Smith},\n", "  author = {Smith, J.},\n", "the line after them counts"},
      {"x\n#\n", "x\n#\n", "later ones stay"},
  };
  ExpectWritten(kRows);
  EXPECT_EQ(Clean("@article{a#,\n  author = {John Smith},\n").log.find("entry '':"),
            std::string("Function flags: 0 0 0 0 0 0 1\nAuthor names arrangened for ").size())
      << "the key of a dropped head is not known";
  const std::string piece(49999, '#');
  EXPECT_EQ(Clean(piece + "x\n").library, "x\n") << "a long line is dropped piece by piece";
}

TEST(CleanAuthors, DropsOnlyTheFirstLineOfItsOwnHeader) {
  EXPECT_EQ(Clean(std::string(kBibHeader) + "x\n").library,
            std::string(kBibHeader.substr(2)) + "x\n");
}

TEST(CleanAuthors, LogsWhatChangedAndCountsIt) {
  const Cleaned cleaned = Clean(
      "@article{one,\n  author = {John Smith and Bob Jones},\n}\n"
      "@book{two,\n  author = {Smith, J. and Jones, B.},\n}\n"
      "@misc{three ,\n  author = {{Universita Di Roma}},\n}\n"
      "@misc{four,\n  author = {anonymous},\n}\n"
      "@misc{five,\n  author = {J. and Smith},\n}\n"
      "@misc{six,\n  author = {Smith and J.},\n}\n"
      "@misc{seven,\n  author = {John and Smith},\n}\n"
      "@misc{eight,\n  author = {Smith, John and Jones, Bob},\n}\n"
      "@misc{nine,\n  author = {Smith, J. et al.},\n}\n"
      "@misc{ten,\n  author = \"John Smith\",\n}\n"
      "@misc{eleven,\n  author = {Smith,\\ J.},\n}\n");
  EXPECT_EQ(cleaned.result, kSucceeded);
  EXPECT_EQ(cleaned.log,
            "Function flags: 0 0 0 0 0 0 1\nAuthor names arrangened for entry 'one':\n"
            "    Old author list: John Smith and Bob Jones\n"
            "    New author list: Smith, J. and Jones, B.\n\n"
            "Function flags: 1 0 0 0 0 0 0\nAuthor names arrangened for entry 'three ':\n"
            "    Old author list: {Universita Di Roma}\n"
            "    New author list: {Universita di Roma}\n\n"
            "Function flags: 0 1 0 0 0 0 0\nAuthor names arrangened for entry 'four':\n"
            "    Old author list: anonymous\n"
            "    New author list: Anonymous\n\n"
            "Function flags: 0 0 1 0 0 0 0\nAuthor names arrangened for entry 'five':\n"
            "    Old author list: J. and Smith\n"
            "    New author list: Smith, J.\n\n"
            "Function flags: 0 0 0 1 0 0 0\nAuthor names arrangened for entry 'six':\n"
            "    Old author list: Smith and J.\n"
            "    New author list: Smith, J.\n\n"
            "Function flags: 0 0 0 0 1 0 0\nAuthor names arrangened for entry 'seven':\n"
            "    Old author list: John and Smith\n"
            "    New author list: Smith, J.\n\n"
            "Function flags: 0 0 0 0 0 1 0\nAuthor names arrangened for entry 'eight':\n"
            "    Old author list: Smith, John and Jones, Bob\n"
            "    New author list: Smith, J. and Jones, B.\n\n"
            "Function flags: 0 0 0 0 0 0 0\nAuthor names arrangened for entry 'nine':\n"
            "    Old author list: Smith, J. et al.\n"
            "    New author list: Smith, J.  {\\ldots}\n\n")
      << "entries two, ten and eleven did not change, though the line of the last two did";
  EXPECT_EQ(cleaned.changed, 8);
}

TEST(CleanAuthors, NamesTheEntryOfTheLastKnownHead) {
  constexpr LibraryRow kRows[] = {
      {"author = {a},\n", "", "before any head"},
      {"@article{k,\nauthor = {a},\n", "k", "the key"},
      {"@article{ k ,\nauthor = {a},\n", " k ", "with its blanks"},
      {"@article{k\nauthor = {a},\n", "k", "without a comma"},
      {"@article{,\nauthor = {a},\n", "", "an empty key"},
      {"{x,@article{k,\nauthor = {a},\n", "x", "after the first brace of the line"},
      {"@article{k,\n@string{s,\nauthor = {a},\n", "k", "a string definition is no entry"},
      {"@article{k,\n@mastersthesis{m,\nauthor = {a},\n", "k", "nor is an unknown type"},
      {"@article{k,\n@book{b,\nauthor = {a},\n", "b", "the last one counts"},
      {"author = {a}, @book{b,\n", "a}", "an author line may be a head itself"},
  };
  for (const LibraryRow& row : kRows) {
    EXPECT_EQ(Clean(row.library).log,
              "Function flags: 0 1 0 0 0 0 0\nAuthor names arrangened for entry '" +
                  std::string(row.written) +
                  "':\n    Old author list: a\n    New author list: A\n\n")
        << row.says;
  }
}

TEST(CleanAuthors, PrintsTheNewPathAndTheOldOne) {
  RecordingReporter reporter;
  MemoryFiles files;
  files.files["/d/my.refs.bib"] = "";
  EXPECT_EQ(RunCleanAuthors(MemoryRun(files, "/d/my.refs.bib")), kSucceeded);
  EXPECT_EQ(reporter.printed, "/d/my.refs_author.bib /d/my.refs.bib\n");
  EXPECT_TRUE(files.files.contains("/d/my.refs_author.bib"));
  EXPECT_TRUE(files.files.contains("/d/my.refs_author.log"));
}

TEST(CleanAuthors, FailsWithItsNumberedTexts) {
  RecordingReporter reporter;
  MemoryFiles files;
  const auto run = [&](std::string_view path) {
    reporter.printed.clear();
    return RunCleanAuthors(MemoryRun(files, path));
  };
  EXPECT_EQ(run(""), kFailed);
  EXPECT_EQ(reporter.printed,
            Printed("Function Clean_author()_1, initialization => BibTeX file does not exist?"));

  EXPECT_EQ(run("/d/lit.bib"), kInputNotOpened);
  EXPECT_EQ(reporter.printed,
            Printed("Function Clean_author()_2, Could not open the BibTeX file!"));

  files.files["/d/lit.bib"] = "author = {a},\n";
  files.not_creatable = {"/d/lit_author.log"};
  EXPECT_EQ(run("/d/lit.bib"), kFailed);
  EXPECT_EQ(reporter.printed, Printed("Function Clean_author()_3, Could not open the log file!"));
  EXPECT_FALSE(files.files.contains("/d/lit_author.bib"));

  files.not_creatable = {"/d/lit_author.bib"};
  EXPECT_EQ(run("/d/lit.bib"), kFailed);
  EXPECT_EQ(reporter.printed,
            "/d/lit_author.bib /d/lit.bib\n" +
                Printed("Function Clean_author()_4, Could not open the new BibTeX "
                        "file/d/lit_author.bib !"));
  EXPECT_EQ(files.files["/d/lit_author.log"], kLogHeader) << "what was written stays";

  files.not_creatable.clear();
  files.files["/d/lit"] = "";
  EXPECT_EQ(run("/d/lit"), kFailed);
  EXPECT_EQ(reporter.printed, Printed("Function Clean_author()_3, Could not open the log file!"))
      << "a path without a \".\" has no place for new files";

  files.same_files = {{"/d/lit.bib", "/d/lit_author.bib"}};
  files.files["/d/lit_author.bib"] = "x";
  EXPECT_EQ(run("/d/lit.bib"), kFailed) << "a picked file is never written to";
  EXPECT_EQ(files.files["/d/lit_author.bib"], "x");
}

TEST(CleanAuthors, ReadsALibraryThatCannotBeWrittenTo) {
  RecordingReporter reporter;
  MemoryFiles files;
  files.files["/d/lit.bib"] = "x\n";
  files.read_only = {"/d/lit.bib"};
  EXPECT_EQ(RunCleanAuthors(MemoryRun(files, "/d/lit.bib")), kSucceeded);
}

TEST(CleanAuthors, FailsWhenAByteDoesNotArrive) {
  for (const std::string file : {"/d/lit_author.bib", "/d/lit_author.log"}) {
    RecordingReporter reporter;
    MemoryFiles files;
    files.files["/d/lit.bib"] = "x\n";
    files.room[file] = 10;
    EXPECT_EQ(RunCleanAuthors(MemoryRun(files, "/d/lit.bib")), kFailed) << file;
    EXPECT_NE(reporter.printed.find(file + "': No space left"), std::string::npos);
  }
}

/// A small library of pieces that are each a trap for one step of the walk.
std::string HostileLibrary(std::mt19937& random) {
  static const std::string pieces[] = {"author = {",
                                       "  AUTHOR={",
                                       "\tau thor\t= {",
                                       "bookauthor = {",
                                       "author = \"",
                                       "author =",
                                       "@article{key,",
                                       "@Book{ b ,",
                                       "@comment{jabref",
                                       "@string{x = {",
                                       "@",
                                       "{",
                                       "}",
                                       "},",
                                       ",",
                                       "#",
                                       "\\ ",
                                       "\\",
                                       "\n",
                                       "\n",
                                       "\n",
                                       "\n\n",
                                       " \n",
                                       "\r\n",
                                       " ",
                                       "\t",
                                       "John Smith",
                                       "Smith, John",
                                       "Smith, J.",
                                       " and ",
                                       " and",
                                       " And ",
                                       " AND ",
                                       "J.",
                                       "J.-P.",
                                       "JP",
                                       "Smith",
                                       "{\\'E}mile",
                                       "{\\v S}tefan",
                                       "\xC3\xA9",
                                       "\xFF",
                                       std::string(1, '\0'),
                                       "et al.",
                                       "et al",
                                       "{\\ldots}",
                                       "\\ldots",
                                       "and Others",
                                       "{\\it et al}",
                                       " Van ",
                                       " De ",
                                       " La ",
                                       "~",
                                       "Jr.",
                                       std::string(990, ' '),
                                       std::string(999, 'q')};
  constexpr std::size_t kCount = std::size(pieces);
  std::string library;
  for (auto left = random() % 40; left > 0; --left) {
    library += pieces[random() % kCount];
    if (random() % 4 == 0) library += "\nauthor = {";
    if (random() % 6 == 0) library += "},\n";
  }
  return library;
}

std::string WithLongLines(std::mt19937& random) {
  static const std::size_t sizes[] = {24990, 24999, 25000, 49980, 49990, 49999, 50000, 75000};
  std::string library = random() % 2 == 0 ? "author = {" : "x";
  for (int i = 0; i < 3; ++i) {
    library += std::string(sizes[random() % std::size(sizes)] + random() % 12, "x {"[random() % 3]);
    library += HostileLibrary(random);
  }
  return library;
}

void ExpectLikePlain(const std::string& library) {
  RecordingReporter reporter;
  MemoryFiles files;
  files.files["/d/lit.bib"] = library;
  ASSERT_EQ(RunCleanAuthors(MemoryRun(files, "/d/lit.bib")), kSucceeded);
  const testing::PlainAuthorFiles plain =
      testing::PlainCleanAuthors(library, "/d/lit.bib", "/d/lit_author.bib");
  ASSERT_EQ(files.files["/d/lit_author.bib"], plain.library) << library.substr(0, 2000);
  ASSERT_EQ(files.files["/d/lit_author.log"], plain.log) << library.substr(0, 2000);
}

TEST(CleanAuthors, WritesWhatThePlainWalkWrites) {
  std::mt19937 random(5103);
  for (int i = 0; i < 4000 && !HasFatalFailure(); ++i) ExpectLikePlain(HostileLibrary(random));
  for (int i = 0; i < 40 && !HasFatalFailure(); ++i) ExpectLikePlain(WithLongLines(random));
}

}  // namespace
}  // namespace tarvel
