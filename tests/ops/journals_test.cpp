// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ops/operations.h"
#include "tests/support/create_modes.h"
#include "tests/support/memory_files.h"
#include "tests/support/outcome.h"
#include "tests/support/plain_journals.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

using namespace std::string_literals;
using testing::kBibHeader;
using testing::kLogHeader;
using testing::MemoryFiles;
using testing::MemoryRun;
using testing::Outcome;
using testing::OutcomeOf;
using testing::Printed;

constexpr std::string_view kRenamed = "Here are all Journal names which have been renamed:\n\n\n";

const std::string kStart = "******* Journal-start *******\n";
const std::string kVariations = "******* Variations    *******\n";
const std::string kEnd = "******* Journal-end   *******\n";

// What most tests look names up in.
const std::string kList = "My journals.\nSTART\n" + kStart +
                          "Journal of Chemical Physics\nJ Chem Phys\n\n" + kVariations +
                          "JCP\nJ. of Chem. Phys.\n" + kEnd + "\n" + kStart +
                          "Physical Review B\nPhys. Rev. B\n" + kVariations + "PRB\n" + kEnd;

constexpr std::string_view kProgramList = "/program/JournalStrings/JournalStrings.tvl";

Settings FullNames() { return {}; }
Settings Abbreviations() {
  Settings settings;
  Choose(settings, kJournalFlags, &Settings::JournalAbbreviated);
  return settings;
}
Settings NeitherNames() {
  Settings settings;
  settings.JournalFullNames = 0;
  return settings;
}

/// Runs on a library "a.bib" with the program's own list.
Outcome Rename(std::string_view input, const Settings& settings = {},
               std::string_view list = kList) {
  MemoryFiles files;
  files.files[std::string(kProgramList)] = list;
  const Outcome outcome = OutcomeOf({RunJournals, Output::kJournalLibrary, Output::kJournalLog},
                                    input, settings, files);
  EXPECT_TRUE(outcome.boxes.empty());
  return outcome;
}

/// A record of the log.
std::string Record(std::string_view bibitem, std::string_view full_name, std::string_view value,
                   std::string_view name) {
  return std::string("Entry '").append(bibitem) + "':\nThe name of the Journal '" +
         std::string(full_name) + "', which is named '" + std::string(value) +
         "' in the BibTeX library,\nhas been renamed to: '" + std::string(name) + "'\n\n";
}

/// Where the log says how many records it holds.
std::string Total(int changes) {
  return std::string("\n\n").append(std::to_string(changes)).append(" changes have been made");
}

/// The log of a run that wrote `records`, `changes` of them.
std::string Log(const std::string& records, int changes, const std::string& listed) {
  return std::string(kRenamed) + records + Total(changes) +
         " in total. The changed journal names are stored in a new BibTeX "
         "library:\na_journal.bib\n\n\n\n" +
         listed + "\n\n";
}

const std::string kListed =
    "There are 3 journal names listed in the 'JournalStrings.bs' file:\n"
    "Journal name:                                                            J Chem Phys, number "
    "of variations: 2\n"
    "Journal name:                                                           Phys. Rev. B, number "
    "of variations: 1\n";

TEST(Journals, WritesFullNamesUnlessToldOtherwise) {
  const Outcome outcome = Rename(
      "@article{k1,\n  journal = {J. Chem. Phys.},\n  year = {2001}\n}\n"
      "@article{k2,\n  Journal = \"prb\",\n}\n");
  EXPECT_EQ(outcome.result, 1);
  EXPECT_EQ(outcome.printed, "");
  EXPECT_EQ(outcome.library,
            "@ARTICLE{k1,\n  journal = {Journal of Chemical Physics},\n  year = {2001}\n}\n"
            "@ARTICLE{k2,\n  Journal = { \"prb\"},\n}\n")
      << "quotes are part of a name and found in no list";
  EXPECT_EQ(outcome.log, Log(Record("k1", "Journal of Chemical Physics", "J. Chem. Phys.",
                                    "Journal of Chemical Physics"),
                             1, kListed));
}

TEST(Journals, WritesAbbreviationsWhenTheyAreChosen) {
  const Outcome outcome =
      Rename("@article{k1,\n  journal = {J. Chem. Phys.},\n}\n@article{k2,\n  journal = prb,\n}\n",
             Abbreviations());
  EXPECT_EQ(outcome.library,
            "@ARTICLE{k1,\n  journal = {J Chem Phys},\n}\n"
            "@ARTICLE{k2,\n  journal = {Phys. Rev. B},\n}\n");
  EXPECT_EQ(outcome.log,
            Log(Record("k1", "Journal of Chemical Physics", "J. Chem. Phys.", "J Chem Phys") +
                    Record("k2", "Physical Review B", " prb", "Phys. Rev. B"),
                2, kListed));
}

TEST(Journals, PrefersAbbreviationsWhenBothFlagsAreSet) {
  Settings both;
  both.JournalAbbreviated = 1;
  EXPECT_EQ(Rename("journal={JCP}\n", both).library, "journal={J Chem Phys}\n");
}

TEST(Journals, LeavesOutTheLinesOfKnownJournalsWhenNoNameIsChosen) {
  const Outcome outcome =
      Rename("@misc{k,\n journal = {JCP},\n journal = {x},\n}\n", NeitherNames());
  EXPECT_EQ(outcome.library, "@MISC{k,\n journal = {x},\n}\n");
  EXPECT_EQ(outcome.log, Log("", 0, kListed));
}

struct LineCase {
  std::string input;
  std::string library;
  int changes;
  std::string_view says;
};

TEST(Journals, ChangesNothingButTheLinesOfKnownJournals) {
  const LineCase cases[] = {
      {"", "", 0, "nothing"},
      {"x\n\n\t y\r\n~\0\xe4 z"s, "x\n\n\t y\r\n~\0\xe4 z"s, 0, "any bytes"},
      {"@article{k,\n@preamble{x}\nme@x\n", "@ARTICLE{k,\n@PREAMBLE{x}\nme@x\n", 0,
       "words between \"@\" and \"{\" become upper case"},
      {"title = {A Journal of PRB}\n", "title = {A Journal of PRB}\n", 0,
       "a title is looked up and not found"},
      {"title = {PRB}, % journal\n", "title = {Physical Review B}, % journal\n", 1,
       "or found, when it is a journal's name"},
      {"note = {PRB}\n", "note = {PRB}\n", 0, "other lines are not looked up"},
      {"journal = {X}\tPRB\n", "journal = {X}\tPRB\n", 0, "the first braced value counts"},
      {"journal = X,\n", "journal = { X},\n", 0,
       "a bare value is braced even when it is not known"},
      {"journal = PRB,\n", "journal = {Physical Review B},\n", 1, "and looked up"},
      {"j o u r\tn a l={PRB}\n", "j o u r n a l={Physical Review B}\n", 1,
       "blanks and tabs do not hide the word; tabs become blanks"},
      {"\tjournal\t=\t{PRB},\t% x\n", " journal = {Physical Review B}, % x\n", 1, "every tab"},
      {"\tjournal\t=\t{X},\n", "\tjournal\t=\t{X},\n", 0, "unless the journal is not known"},
      {"journal = {\tPRB},\n", "journal = { PRB},\n", 1,
       "a value with a tab is not found again; it counts all the same"},
      {"journal = {P{R}B},\n", "journal = {Physical Review B},\n", 1,
       "inner braces are part of it"},
      {"journal = {{PRB}},\n", "journal = {{PRB}},\n", 1,
       "a first one is not found: the search for \"{PRB}\" begins at the value's own brace"},
      {"PRB journal = {PRB}\n", "Physical Review B journal = {Physical Review B}\n", 1,
       "the value is replaced wherever it stands in the line"},
      {"journal = {Physical Review B},\n", "journal = {Physical Review B},\n", 0,
       "a name that is right stays and does not count"},
      {"journal = {physical review b},\n", "journal = {Physical Review B},\n", 1, "byte for byte"},
      {"journal = {PRB},\r\n", "journal = {Physical Review B},\r\n", 1, "carriage returns stay"},
      {"journal = PRB,\r\n", "journal = {Physical Review B},\n", 1, "unless the line is cut"},
      {"journal = {PRB}", "journal = {Physical Review B}", 1, "no last line break"},
      {"journal = {PRB", "journal = {Physical Review B", 1, "nor brace"},
      {"journal = PRB", "journal = {Physical Review B},\n", 1, "nor both"},
      {"journal}\n", "journal}\n", 0, "no value at all"},
      {"journal\n", "journal\n},\n", 0, "a lone word is closed"},
      {"a journal, b\n", "a journal},\n", 0, "and cut"},
  };
  for (const LineCase& c : cases) {
    const Outcome outcome = Rename(c.input);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.library, c.library) << c.says;
    EXPECT_NE(outcome.log.find(Total(c.changes)), std::string::npos) << c.says << "\n"
                                                                     << outcome.log;
  }
}

TEST(Journals, JoinsValuesOverSeveralLines) {
  const LineCase cases[] = {
      {"journal = {Phys. Rev.\n   B},\nx\n", "journal = {Phys. Rev.   B},\nx\n", 1,
       "the joined line does not hold the value, which has one blank at the join"},
      {"journal = {Phys. Rev.\nB},\nx\n", "journal = {Phys. Rev.B},\nx\n", 1, "nor without blanks"},
      {"journal = {Phys. Rev.\n B},\nx\n", "journal = {Physical Review B},\nx\n", 1,
       "but it does when there is just one"},
      {"journal = {PRB\n},\nx\n", "journal = {PRB},\nx\n", 1, "also when only the brace follows"},
      {"journal = {\nPRB},\nx\n", "journal = {PRB},\nx\n", 1, "or only the value"},
      {"journal = {\n\n \n  X},\nx\n", "journal = {  X},\nx\n", 0, "empty lines between are gone"},
      {"\tjournal = {Physical\nReview\tB},\n", " journal = {PhysicalReview B},\n", 1,
       "tabs of all its lines become blanks"},
      {"journal = PRB\n},\nx\n", "journal = { PRB},\nx\n", 1,
       "the brace put after a line break is read over"},
      {"journal = X\nyear = {1}\n}\nx\n", "journal = { Xyear = {1}}\nx\n", 0,
       "so that a bare value without a comma swallows what follows"},
      {"journal = PRB\n", "journal = {Physical Review B\n},\n", 1,
       "but not at the end of the file"},
      {"journal = {PRB\n", "journal = {Physical Review B\n", 1,
       "a file that ends inside a value: what came so far counts"},
      {"journal = {X\n@article{k,\njournal = {PRB}\n", "journal = {X@article{k,journal = {PRB}\n",
       0, "swallowed heads are not seen"},
  };
  for (const LineCase& c : cases) {
    const Outcome outcome = Rename(c.input);
    EXPECT_EQ(outcome.library, c.library) << c.says;
    EXPECT_NE(outcome.log.find(Total(c.changes)), std::string::npos) << c.says << "\n"
                                                                     << outcome.log;
  }
}

struct BibitemCase {
  std::string_view lines;  // before a line of a known journal
  std::string_view bibitem;
};

TEST(Journals, NamesTheEntryOfTheLastHead) {
  const BibitemCase cases[] = {
      {"", ""},
      {"@article{k,\n", "k"},
      {"@article{ k 1 ,\n", " k 1 "},
      {"@article{k\n", "k"},
      {"@book{k,\n@mastersthesis{l,\n@string{m,\n@comment{jabref,\n", "k"},
      {"@book{k,\n@misc{,\n", ""},
      {"x {a, @book{k,\n", "a"},
  };
  for (const BibitemCase& c : cases) {
    const std::string input = std::string(c.lines) + "journal = {JCP}\n";
    EXPECT_EQ(
        Rename(input, Abbreviations()).log,
        Log(Record(c.bibitem, "Journal of Chemical Physics", "JCP", "J Chem Phys"), 1, kListed))
        << c.lines;
  }
  EXPECT_EQ(Rename("@article{k, journal = {JCP}\n", Abbreviations()).library,
            "@ARTICLE{k, journal = {JCP}\n")
      << "a head's own first brace is its line's first value";
}

TEST(Journals, ReplacesByEmptyNames) {
  const std::string list = "START\n" + kStart + "\n\n" + kVariations + "JCP\n" + kEnd;
  const Outcome outcome = Rename("@misc{k,\njournal = {JCP},\n", {}, list);
  EXPECT_EQ(outcome.library, "@MISC{k,\njournal = {},\n");
  EXPECT_EQ(outcome.log, Log(Record("k", "", "JCP", ""), 1,
                             "There are 2 journal names listed in the 'JournalStrings.bs' file:\n"
                             "Journal name: " +
                                 std::string(70, ' ') + ", number of variations: 1\n"));
}

TEST(Journals, MatchesAnEmptyValueWithARowThatSqueezesToNothing) {
  const std::string list = "START\n" + kStart + "Full\n.\n" + kVariations;
  const Outcome outcome = Rename("@misc{k,\njournal = {},\njournal}\n", {}, list);
  EXPECT_EQ(outcome.library, "@MISC{k,\njournal = {},\njournal}\n")
      << "there is nothing to replace";
  EXPECT_EQ(outcome.log.substr(0, kRenamed.size() + 300)
                .find(Record("k", "Full", "", "Full") + Record("k", "Full", "", "Full")),
            kRenamed.size())
      << "but it is reported";
}

TEST(Journals, ListsWhatItRead) {
  const std::string long_name(71, 'n');
  const std::string list = "START\n" + kStart + "A\n" + long_name + "\n" + kVariations +
                           std::string(45, '\n') + kEnd + kStart + "B\n\xc3\xa4\n" + kVariations;
  EXPECT_EQ(Rename("", {}, list).log,
            Log("", 0,
                "There are 3 journal names listed in the 'JournalStrings.bs' file:\n"
                "Journal name: " +
                    long_name + ", number of variations: 45\nJournal name: " +
                    std::string(68, ' ') + "\xc3\xa4, number of variations: 0\n"))
      << "columns are bytes; every line of variations counts";
  EXPECT_EQ(Rename("journal = {JCP},\n", {}, "START\n").log,
            Log("", 0, "There are 1 journal names listed in the 'JournalStrings.bs' file:\n"))
      << "one more than there are";
}

TEST(Journals, ReadsLongLinesInPiecesOf4999Bytes) {
  const std::string blanks(4999, ' ');
  EXPECT_EQ(Rename(blanks + "journal = {JCP}\n", Abbreviations()).library,
            blanks + "journal = {J Chem Phys}\n");
  EXPECT_EQ(Rename(std::string(4996, ' ') + "journal = {JCP}\n", Abbreviations()).library,
            std::string(4996, ' ') + "journal = {JCP}\n")
      << "a word that is cut in two is none";
  EXPECT_EQ(Rename(std::string(4988, ' ') + "journal={JCP}\n", Abbreviations()).library,
            std::string(4988, ' ') + "journal={JCP}\n")
      << "a piece without a line break ends the value";
  EXPECT_EQ(Rename(std::string(4987, ' ') + "journal={JCP}\n", Abbreviations()).library,
            std::string(4987, ' ') + "journal={J Chem Phys}\n")
      << "which may be whole";
  EXPECT_EQ(Rename(std::string(4990, ' ') + "journal={JCP}\n", Abbreviations()).library,
            std::string(4990, ' ') + "journal={J Chem Phys}\n")
      << "only a piece that ends with the brace goes on in the next one";
  EXPECT_EQ(Rename("journal=" + std::string(5000, 'x') + "\n").library,
            "journal= {" + std::string(4991, 'x') + "},\nxxxxxxxxx\n")
      << "a bare value is braced within its piece";
  EXPECT_EQ(Rename("journal={\n" + std::string(6001, ' ') + "JCP},\n", Abbreviations()).library,
            "journal={" + std::string(6000, ' ') + "J Chem Phys},\n")
      << "a line that continues a value is read with 25,000";
}

TEST(Journals, TakesNulForAnOrdinaryByte) {
  const std::string list = "START\n" + kStart + "A\0B\nab\n"s + kVariations + "\0\n"s + kEnd;
  const Outcome outcome = Rename("@misc{k\0l,\njournal = {A\0b}\0\njournal={\0}\n"s, {}, list);
  EXPECT_EQ(outcome.library, "@MISC{k\0l,\njournal = {A\0B}\0\njournal={A\0B}\n"s);
  EXPECT_EQ(
      outcome.log,
      Log(Record("k\0l"s, "A\0B"s, "A\0b"s, "A\0B"s) + Record("k\0l"s, "A\0B"s, "\0"s, "A\0B"s), 2,
          "There are 2 journal names listed in the 'JournalStrings.bs' file:\n"
          "Journal name: " +
              std::string(68, ' ') + "ab, number of variations: 1\n"));
}

TEST(Journals, Reads20000JournalsOfALongerList) {
  std::string list = "START\n";
  for (int i = 0; i < 20001; ++i) {
    const std::string number = std::to_string(i);
    list += kStart + "Full " + number + "\nA" + number + "\n" + kVariations + "v" + number + "\n" +
            kEnd;
  }
  const std::string input = "journal = {v19999},\njournal = {v20000},\njournal = {A20000},\n";
  const Outcome outcome = Rename(input, {}, list);
  EXPECT_EQ(outcome.library, "journal = {Full 19999},\njournal = {v20000},\njournal = {A20000},\n");
  EXPECT_NE(outcome.log.find("There are 20001 journal names"), std::string::npos);
  EXPECT_NE(outcome.log.find(" A19999, number of variations: 1\n\n\n"), std::string::npos);
  const auto plain = testing::PlainRunJournals(input, list, {}, "a_journal.bib");
  EXPECT_EQ(std::string(kBibHeader) + outcome.library, plain.library);
  EXPECT_EQ(std::string(kLogHeader) + outcome.log, plain.log);
}

// How it fails.

TEST(Journals, ReportsWhichFileItCouldNotOpen) {
  struct Case {
    std::string fault;  // the file that is not readable or not creatable
    int result;
    std::string_view text;
    std::size_t files;  // how many there are afterwards
  };
  const Case cases[] = {
      {"a.bib", 2999, "Function JournalStrings()_1: Could not open the BibTeX file!", 2},
      {std::string(kProgramList), 0,
       "Function JournalStrings()_2: Could not open the '.tvl' file !\n", 2},
      {"a_journal.log", 0, "Function JournalStrings()_3: Could not open the log file!", 2},
      {"a_journal.bib", 0, "Function JournalStrings()_4: Could not create the BibTeX file!", 3},
  };
  // Every file from a fault on fails as well: the first one is reported.
  for (auto c = std::begin(cases); c != std::end(cases); ++c) {
    testing::RecordingReporter reporter;
    MemoryFiles files;
    files.files["a.bib"] = "journal = {JCP}\n";
    files.files[std::string(kProgramList)] = kList;
    for (auto later = c; later != std::end(cases); ++later) {
      files.unreadable.insert(later->fault);
      files.not_creatable.insert(later->fault);
    }
    EXPECT_EQ(RunJournals(MemoryRun(files, "a.bib")), c->result) << c->text;
    EXPECT_EQ(reporter.printed, Printed(c->text));
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_EQ(files.files.size(), c->files) << c->text;
  }
}

TEST(Journals, ReportsWhereTheListEndsTooEarly) {
  const struct {
    std::string list;
    std::string_view text;
  } cases[] = {
      {kStart, "Function JournalStrings()_5: There is no 'START' in the file '.bs' file!"},
      {"START\n" + kStart,
       "Function JournalStrings()_6: Cannot read journal name in the file 'JournalStrings.bs' "
       "file!"},
      {"START\n" + kStart + "A\n",
       "Function JournalStrings()_7: Cannot read the abbreviation of the journal name in the file "
       "'JournalStrings.bs' file!"},
      {"START\n" + kStart + "A\nB\n",
       "Function JournalStrings()_8: There is no 'variations' string in the file "
       "'JournalStrings.bs' file!"},
      {kList + kStart,
       "Function JournalStrings()_6: Cannot read journal name in the file 'JournalStrings.bs' "
       "file!"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Rename("journal = {JCP}\n", {}, c.list);
    EXPECT_EQ(outcome.result, 0) << c.list;
    EXPECT_EQ(outcome.printed, Printed(c.text));
    EXPECT_EQ(outcome.library, "") << "nothing but the headers is written";
    EXPECT_EQ(outcome.log, "");
  }
}

TEST(Journals, TakesTheUsersOwnListWhenToldSo) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["a.bib"] = "journal = {JCP}\n";
  files.files["own.tvl"] = kList;
  files.read_only = {"a.bib", "own.tvl"};  // both are only read
  RunContext run = MemoryRun(files, "a.bib", "own.tvl");
  EXPECT_EQ(RunJournals(run), 0) << "the program has no list here";
  run.settings.UseOwnJournalFile = 1;
  EXPECT_EQ(RunJournals(run), 1);
  EXPECT_TRUE(files.files["a_journal.bib"].ends_with("journal = {Journal of Chemical Physics}\n"));

  run.second_path.clear();
  reporter.printed.clear();
  EXPECT_EQ(RunJournals(run), 0) << "and falls back on none";
  EXPECT_EQ(reporter.printed,
            Printed("Function JournalStrings()_2: Could not open the '.tvl' file !\n"));
}

TEST(Journals, CreatesTheLogFirstAndTheLibraryForReadingToo) {
  testing::RecordingReporter reporter;
  MemoryFiles memory;
  memory.files["a.bib"] = "x";
  memory.files["/program/JournalStrings/JournalStrings.tvl"] = kList;
  testing::CreateModes files(memory);
  EXPECT_EQ(RunJournals(MemoryRun(files, "a.bib")), 1);
  const std::vector<std::pair<std::string, CreateMode>> expected{
      {"a_journal.log", CreateMode::kWrite}, {"a_journal.bib", CreateMode::kWriteRead}};
  EXPECT_EQ(files.created, expected);
}

TEST(Journals, FailsWithoutALibrary) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files[std::string(kProgramList)] = kList;
  EXPECT_EQ(RunJournals(MemoryRun(files, "")), 2999);
  EXPECT_EQ(reporter.printed,
            Printed("Function JournalStrings()_1: Could not open the BibTeX file!"));
}

TEST(Journals, NeedsAPathWithAnExtension) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["library"] = "x";
  files.files[std::string(kProgramList)] = kList;
  EXPECT_EQ(RunJournals(MemoryRun(files, "library")), 0);
  EXPECT_EQ(reporter.printed, Printed("Function JournalStrings()_3: Could not open the log file!"));
}

TEST(Journals, NeverWritesOverAPickedFile) {
  const std::array<std::array<std::string, 2>, 2> cases{
      {{"a_journal.log", "Function JournalStrings()_3: Could not open the log file!"},
       {"a_journal.bib", "Function JournalStrings()_4: Could not create the BibTeX file!"}}};
  for (const auto& [path, text] : cases) {
    testing::RecordingReporter reporter;
    MemoryFiles files;
    files.files["a.bib"] = "x";
    files.files[std::string(kProgramList)] = kList;
    files.files[path] = "the other picked file";
    EXPECT_EQ(RunJournals(MemoryRun(files, "a.bib", path)), 0);
    EXPECT_EQ(files.files[path], "the other picked file");
    EXPECT_EQ(reporter.printed, Printed(text));
  }
}

TEST(Journals, FailsOnAFullDiskAtEveryByte) {
  MemoryFiles whole;
  whole.files["a.bib"] = "@misc{k,\n journal = {JCP},\n note = {2}\n}\n";
  whole.files[std::string(kProgramList)] = kList;
  testing::RecordingReporter reporter;
  ASSERT_EQ(RunJournals(MemoryRun(whole, "a.bib")), 1);
  for (const std::string path : {"a_journal.bib", "a_journal.log"}) {
    for (std::size_t room = 0; room < whole.files[path].size(); ++room) {
      MemoryFiles files;
      files.files["a.bib"] = whole.files["a.bib"];
      files.files[std::string(kProgramList)] = kList;
      files.room[path] = room;
      reporter.printed.clear();
      EXPECT_EQ(RunJournals(MemoryRun(files, "a.bib")), 0) << path << " " << room;
      EXPECT_EQ(reporter.printed,
                Printed("Could not write the file '" + path + "': No space left on device"));
    }
  }
}

// Against the plain twin.

int RandomRuns() {
  const char* runs = std::getenv("TARVEL_RANDOM_RUNS");
  return runs ? std::atoi(runs) : 4000;
}

void ExpectAsPlain(const std::string& input, const std::string& list, const Settings& settings,
                   int& renamed) {
  const auto plain = testing::PlainRunJournals(input, list, settings, "a_journal.bib", 20);
  const Outcome fast = Rename(input, settings, list);
  const std::string both = list + "\n-----\n" + input;
  ASSERT_EQ(fast.result, plain.result) << both;
  ASSERT_EQ(fast.printed, plain.printed) << both;
  ASSERT_EQ(std::string(kBibHeader) + fast.library, plain.library) << both;
  ASSERT_EQ(std::string(kLogHeader) + fast.log, plain.log) << both;
  renamed += fast.log.find("has been renamed to") != std::string::npos ? 1 : 0;
}

TEST(Journals, AgreesWithItsPlainTwin) {
  std::mt19937 random(15);
  const std::string rows[] = {"\n",      "Jcp\n",      "J. C. P.\n", "PRB\n",   "p r b\r\n", ".\n",
                              "a\tb\n",  "Journal\n",  "START\n",    "\xe4\n",  "\0x\n"s,    "PRB",
                              " jcp \n", "{Nat}ure\n", "\"PRB\"\n",  "nature\n"};
  const std::string pieces[] = {"@article{a,\n",
                                "@Book{b\n",
                                "@comment{jabref-meta: x,\n",
                                "journal = ",
                                "Journal=",
                                "\tjournal\t=\t",
                                "j our nal ",
                                "{PRB},\n",
                                "{jcp}\n",
                                "{J C P}",
                                "prb,\n",
                                "\"PRB\",\n",
                                "{nature\n",
                                "Na\n  ture",
                                "}",
                                "{",
                                ",",
                                "=",
                                "\n",
                                "\r\n",
                                " ",
                                "\t",
                                "\0x"s,
                                "\xe4",
                                "{a\tb}",
                                "{a b},\n",
                                "journal = {PRB},\n",
                                "  journal = {Jcp},\n",
                                "title = {Nature}\n",
                                "@",
                                "{}",
                                "{.}\n",
                                "PRB",
                                "journal"};
  int renamed = 0;
  for (int run = 0; run < RandomRuns(); ++run) {
    std::string list = random() % 30 == 0 ? "" : "START\n";
    const auto row = [&] { return rows[random() % std::size(rows)]; };
    const auto mostly = [&](const std::string& line) { return random() % 60 ? line : row(); };
    for (auto i = random() % 5; i > 0; --i) {
      list += mostly(kStart) + row() + row() + mostly(kVariations);
      for (auto j = random() % 8 == 0 ? random() % 50 : random() % 3; j > 0; --j) list += row();
      list += mostly(kEnd);
    }
    if (random() % 30 == 0) list.resize(list.size() - random() % (list.size() + 1));
    std::string input;
    for (auto i = random() % 24; i > 0; --i) input += pieces[random() % std::size(pieces)];
    Settings settings = FullNames();
    if (random() % 2 == 0) settings = Abbreviations();
    if (random() % 10 == 0) settings = NeitherNames();
    ASSERT_NO_FATAL_FAILURE(ExpectAsPlain(input, list, settings, renamed));
  }
  EXPECT_GT(renamed, RandomRuns() / 10) << "the libraries hold what the lists name";
}

TEST(Journals, AgreesWithItsPlainTwinOnLongLines) {
  int renamed = 0;
  const std::string long_line(10'000'000, 'x');  // the twin takes its time with it
  const std::string blanks(100'000, ' ');
  for (const std::string& input :
       {"journal = " + long_line, "journal = {" + long_line + "},\njournal={JCP}\n",
        "journal = {\n" + long_line + "},\njournal={JCP}\n", long_line + "journal = {JCP}\n",
        "journal = {JCP" + blanks + "},\njournal = {JCP\n" + blanks + "\n" + blanks + "},\n"}) {
    ASSERT_NO_FATAL_FAILURE(ExpectAsPlain(input, kList, FullNames(), renamed));
  }
  ASSERT_NO_FATAL_FAILURE(
      ExpectAsPlain("journal={JCP}\n", long_line + kList + long_line + "\n" + kList, {}, renamed));
  EXPECT_GT(renamed, 1);
}

}  // namespace
}  // namespace tarvel
