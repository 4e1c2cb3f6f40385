// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>

#include "app/globals.h"
#include "ops/operations.h"
#include "tests/support/outcome.h"
#include "tests/support/recording_warnings.h"
#include "tests/support/reference_worlds.h"

namespace tarvel {
namespace {

using namespace std::string_literals;
using testing::kLibraryPath;
using testing::kTextHeader;
using testing::MemoryFiles;
using testing::MemoryRun;
using testing::PlainOutcome;
using testing::PlainWorld;
using testing::Printed;
using testing::RecordingReporter;

constexpr Flag Settings::*kPlain = nullptr;
constexpr Flag Settings::*kLaTeX = &Settings::UseLaTeXCode;

PlainWorld World(const std::string& library, const std::string& commands,
                 std::initializer_list<Flag Settings::*> flags) {
  PlainWorld world{"", library, testing::MarkerStyles(), "START\n" + commands, {}};
  for (const auto flag : flags) {
    if (flag) world.settings.*flag = 1;
  }
  return world;
}

PlainOutcome RunOver(const PlainWorld& world) {
  GlobalJournalStyles = {};
  MemoryFiles files = testing::FilesOf(world);
  RunContext run = MemoryRun(files, kLibraryPath);
  run.settings = world.settings;
  return testing::RunWorld(&RunText, run, files);
}

/// The text file after its header.
std::string References(const PlainWorld& world) {
  PlainOutcome outcome = RunOver(world);
  EXPECT_EQ(outcome.result, 1) << outcome.printed;
  const std::string header = std::string(kTextHeader);
  const std::string text = outcome.files["_text.txt"];
  EXPECT_TRUE(text.starts_with(header));
  return text.substr(std::min(header.size(), text.size()));
}

struct Case {
  const char* library;
  const char* commands;
  Flag Settings::*flag;
  const char* references;
  const char* says;
};

TEST(Text, FailsWhenTheCommandsMakeAValueTooLong) {
  std::string rows;
  for (const char* row : {"a b", "b c", "c d"}) {
    rows.append(row);
    for (int i = 1; i < 450; ++i) rows.append(1, row[2]);
    rows += "\n";
  }
  const PlainOutcome outcome =
      RunOver(World("@article{k,\n  title = {a}\n}\n\n@article{l,\n}\n", rows, {}));
  EXPECT_EQ(outcome.result, 0);
  EXPECT_NE(outcome.printed.find("make a value longer than 1,000,000 bytes!"), std::string::npos);
  EXPECT_LT(outcome.files.at("_text.txt").size(), 1000U) << "nothing is printed of it";
}

/// The result of Text where the rows may look at so much.
int ResultWith(std::uint64_t row_steps, const PlainWorld& world, Warnings* warnings) {
  GlobalJournalStyles = {};
  MemoryFiles files = testing::FilesOf(world);
  RunContext run = MemoryRun(files, kLibraryPath);
  run.settings = world.settings;
  run.row_steps = row_steps;
  run.warnings = warnings;
  return testing::RunWorld(&RunText, run, files).result;
}

TEST(Text, FailsWhenTheCommandsChangeTheValuesTooOften) {
  std::string rows;
  for (int i = 0; i < 1000; ++i) rows += "a b\nb a\n";
  const PlainWorld world =
      World("@article{k,\n  title = {\\foo a},\n}\n@article{l,\n}\n", rows + "\\fo y\n", {});
  EXPECT_EQ(ResultWith(0, world, nullptr), 0);
  std::uint64_t enough = std::uint64_t{1} << 20U;
  EXPECT_EQ(ResultWith(enough, world, nullptr), 1);
  for (std::uint64_t step = enough / 2; step > 0; step /= 2) {
    if (ResultWith(enough - step, world, nullptr) == 1) enough -= step;
  }
  EXPECT_EQ(ResultWith(enough - 1, world, nullptr), 0) << "it is the least";
  testing::RecordingWarnings warnings;
  EXPECT_EQ(ResultWith(enough, world, &warnings), 1) << "warnings take nothing of it";
  EXPECT_EQ(warnings.Of(WarningKind::kCommandCut).size(), 1U);
}

TEST(Text, PrintsEveryEntryInTheOrderOfTheLibrary) {
  constexpr Case cases[] = {
      {"", "", kPlain, "", "an empty library"},
      {"Only text\n", "", kPlain, "", "one without an entry"},
      {"Text,\n title = {X},\n@article{b,\n title = {B},\n}\n@article{a,\n title = {A},\n}\n", "",
       kPlain, "<APS_article_title>||B||||||\n<APS_article_title>||A||||||\n",
       "lines before the first entry are passed over"},
      {"@article{a,\n title = {A \\& B},\n}\n", "\\& &\n", kPlain,
       "<APS_article_title>||A & B||||||\n", "a command becomes plain text"},
      {"@article{a,\n title = {A \\& B},\n}\n", "\\& &\n", kLaTeX,
       "<APS_article_title_latex>||A \\& B||||||\n", "but stays with LaTeX code"},
      {"@article{a,\n title = {\\alpha},\n}\n", "#\\alpha a\n", kPlain,
       "<APS_article_title>||\\alpha||||||\n", "rows that begin with # are not applied"},
      {"@article{a,\n title = {{{A}}},\n}\n", "", kPlain, "<APS_article_title>||{{A}}||||||\n",
       "titles keep their braces"},
      {"@article{a,\n title = {{{A}}},\n}\n", "", kLaTeX, "<APS_article_title_latex>||A||||||\n",
       "and lose them with LaTeX code"},
      {"@article{a,\n title = {x},\n journal = {x},\n year = {x},\n volume = {x},\n pages = "
       "{x},\n author = {x},\n}\n",
       "x y\n", kPlain, "<APS_article_title>|y|y|y|x|x|x||\n",
       "of an article author, title and journal are turned"},
      {"@book{a,\n title = {x},\n publisher = {x},\n year = {x},\n address = {x},\n author = "
       "{x},\n}\n",
       "x y\n", kPlain, "<APS_book>|y|y|y|y|x|||\n",
       "of a book author, title, publisher and address"},
      {"@phdthesis{a,\n title = {x},\n school = {x},\n year = {x},\n author = {x},\n}\n", "x y\n",
       kPlain, "<APS_phd>|y|y|x|||||\n", "of a thesis author, title and school"},
      {"@incollection{a,\n publisher = {x},\n address = {x},\n booktitle = {x},\n editor = {x},\n "
       "author = {x},\n pages = {x},\n}\n@article{b,\n journal = {x},\n}\n@inproceedings{c,\n}\n",
       "x xx\n", kPlain,
       "<APS_incol>|xx|xx|xx|xx|xx|||\n<APS_article_title>|xxx||xx||x|||\n"
       "<APS_inpro>|xxxxx|xxx|xxx|xx|xxx||x|\n",
       "values are turned where they are kept, so those carried over are turned again; a paper in "
       "proceedings leaves the publisher"},
      {"@article{a,\n pages = {12--15},\n}\n@article{b,\n}\n", "", kPlain,
       "<APS_article_title>|||||12|||\n<APS_article_title>|||||12|||\n", "only the first page"},
      {"@article{a,\n pages = {12--15},\n}\n@article{b,\n}\n", "", &Settings::PagesRange,
       "<APS_article_title>|||||12-15|||\n<APS_article_title>|||||12-15|||\n",
       "or the range with one dash for two"},
      {"@article{a,\n pages = {1----2},\n}\n@article{b,\n}\n", "", &Settings::PagesRange,
       "<APS_article_title>|||||1---2|||\n<APS_article_title>|||||1---2|||\n",
       "once, when it is read"},
      {"@article{a,\n pages = {1-2, 5--6},\n}\n", "", &Settings::PagesRange,
       "<APS_article_title>|||||1-2, 5--6|||\n", "only the first dash is looked at"},
      {"@article{a,\n volume = {12},\n}\n@article{b,\n}\n", "", kPlain,
       "<APS_article_title>||||12||||\n<APS_article_title>||||12||||\n", "values are carried over"},
      {"@article{a,\n}\n@book{b,\n}\n", "", &Settings::PrintBibitem,
       "<APS_article_title>[a]||||||||\n<APS_book>[b]||||||||\n", "each with its name"},
      {"@article{ a ,\n}\n", "", &Settings::PrintBibitem, "<APS_article_title>[ a ]||||||||\n",
       "blanks and all"},
      {"@booklet{a,\n title = {T},\n}\n@article {b,\n title = {T},\n}\n@article{c,\n}\n", "",
       kPlain, "<APS_article_title>||||||||\n",
       "types that only begin like a supported one: nothing"},
      {"@article{a,\n title = {T},\n}\n@book{b,\n", "", kPlain, "<APS_article_title>||T||||||\n",
       "a head on the last line ends the walk"},
      {"@article{a,\n}\n@comment{jabref-meta: groups}\n title = {X},\n", "", kPlain,
       "<APS_article_title>||X||||||\n", "JabRef's data are read as part of the entry before"},
      {"@article{a,\n title = {{\n}\n@book{b,\n}\n", "", kPlain,
       "<APS_article_title>||{ } @book{b, }||||||\n",
       "a value that runs into the end: what was read counts as the next head"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(References(World(c.library, c.commands, {c.flag})), c.references) << c.says;
  }
}

TEST(Text, NamesReferencesInLaTeXWithLaTeXCode) {
  EXPECT_EQ(
      References(World("@article{a,\n}\n", "", {&Settings::PrintBibitem, &Settings::UseLaTeXCode})),
      "<APS_article_title_latex>\\bibitem{a}||||||||\n");
}

std::string SpringerReferences(const std::string& library, Flag Settings::*flag) {
  PlainWorld world = World(library, "", {flag});
  Choose(world.settings, kStyleFlags, &Settings::StyleSpringerCompSci);
  return References(world);
}

TEST(Text, DiffersFromExtractInSpringersStyle) {
  EXPECT_EQ(SpringerReferences("@article{a,\n journal = {J. C.},\n}\n", kPlain),
            "<SPRINGER_C_article_title>||||J. C.||||\n")
      << "dots stay in the names of journals";
  EXPECT_EQ(
      SpringerReferences("@incollection{a,\n title = {{T}},\n booktitle = {{B}},\n}\n", kPlain),
      "<SPRINGER_C_incol>|||{T}|{B}||||\n")
      << "a part of a book has its own format; a booktitle line does not strip the title";
  EXPECT_EQ(
      SpringerReferences("@incollection{a,\n title = {{T}},\n booktitle = {{B}},\n}\n", kLaTeX),
      "<SPRINGER_C_incol_latex>|||T|B||||\n")
      << "with LaTeX code the booktitle is stripped too";
  EXPECT_EQ(SpringerReferences("@phdthesis{a,\n title = {T},\n}\n", kPlain), "")
      << "the plain thesis has no format";
}

TEST(Text, TurnsAllTextsOfPartsOfBooksAndPapers) {
  const std::string tags =
      " author = {x},\n title = {x},\n booktitle = {x},\n editor = {x},\n publisher = {x},\n"
      " address = {x},\n year = {x},\n}\n";
  PlainWorld world = World("@incollection{a,\n" + tags, "x y\n", {});
  Choose(world.settings, kStyleFlags, &Settings::StyleSpringerCompSci);
  EXPECT_EQ(References(world), "<SPRINGER_C_incol>|y|x|y|y|y|y|y|\n");
  world.library = "@inproceedings{a,\n" + tags;
  EXPECT_EQ(References(world), "<SPRINGER_C_inpro>|y|x|y|y|y||y|\n") << "which has no publisher";
}

std::string Note(const std::string& key, const std::string& type) {
  return "\n\nAttention!\n==========\nThe entry type of the bibitem-key '" + key + "' is '@" +
         type + "', which is not supported, so far.\nYou have to type the entry yourself. \n\n\n\n";
}

TEST(Text, ReportsUnsupportedEntries) {
  PlainOutcome one = RunOver(World("@misc{m, x\n title = {T},\n}\n@article{a,\n}\n", "", {}));
  EXPECT_EQ(one.result, 1);
  EXPECT_EQ(one.files["_text.txt"],
            std::string(kTextHeader) + Note("m", "MISC") + "<APS_article_title>||||||||\n");
  ASSERT_EQ(one.boxes.size(), 1U);
  EXPECT_EQ(one.boxes[0].caption, "No support !");
  EXPECT_EQ(one.boxes[0].message,
            "One entry is not saved in the '_text.txt' file, because it is not an ARTICLE, BOOK, "
            "INCOLLECTION, PHDTHESIS, MASTERTHESIS, INPROCEEDINGS. Only the latter entry types are "
            "supported.\n\nFor more details see the '_text.txt' file.");

  PlainOutcome two = RunOver(World("@misc{m,\n}\n@Manual{n,\n", "", {}));
  EXPECT_EQ(two.result, 1);
  EXPECT_EQ(two.files["_text.txt"],
            std::string(kTextHeader) + Note("m", "MISC") + Note("n", "MANUAL"));
  ASSERT_EQ(two.boxes.size(), 1U);
  EXPECT_EQ(two.boxes[0].message,
            "2 entries are not saved in the '_text.txt' file, because they are not an ARTICLE, "
            "BOOK, INCOLLECTION, PHDTHESIS, MASTERTHESIS, INPROCEEDINGS. Only the latter entry "
            "types are supported.\n\nFor more details see the '_text.txt' file.");
}

TEST(Text, ReadsLinesInPiecesOf999Bytes) {
  // The head in the middle of the long line begins a piece; the tag on the other is cut in two.
  const std::string library = "@article{a,\n" + std::string(999, 'x') + "@book{b,\n" +
                              std::string(995, 'x') + "title = {T},\n}\n";
  EXPECT_EQ(References(World(library, "", {})),
            "<APS_article_title>||||||||\n<APS_book>||||||||\n");
}

TEST(Text, FailsWhenAValueSwallowsAHeadThatWasCounted) {
  PlainOutcome outcome = RunOver(World("@article{a,\n title = {T\n@article{b,\n}}\n x\n", "", {}));
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.printed, Printed("Function Text()_5 => Could not read the new BibTeX file?"));
  EXPECT_EQ(outcome.files["_text.txt"],
            std::string(kTextHeader) + "<APS_article_title>||T @article{b, }||||||\n");
  EXPECT_TRUE(outcome.boxes.empty());
}

struct Failure {
  std::function<void(MemoryFiles& files, RunContext& run)> cause;
  std::string printed;
  const char* says;
};

TEST(Text, ReportsEachFailureByItsNumber) {
  const std::string library(kLibraryPath);
  const std::string text = "/lib/lit_text.txt";
  const Failure failures[] = {
      {[](auto&, auto& run) { run.first_path.clear(); },
       Printed("Function CreateText()_1, initialization => BibTeX file does not exist?"),
       "no library"},
      {[&](auto& files, auto&) { files.unreadable.insert(library); },
       Printed("Function CreateText()_2 => Could not open the BibTeX file?"), "no library on disk"},
      {[&](auto& files, auto&) { files.read_only.insert(library); },
       Printed("Function CreateText()_2 => Could not open the BibTeX file?"),
       "a read-only library"},
      {[&](auto& files, auto&) { files.not_creatable.insert(text); },
       Printed("Function CreateText()_4 => Could not create a new text file?"), "no text file"},
      {[&](auto& files, auto& run) {
         files.files["/lib/lit"] = "@misc{a,\n}\n";
         run.first_path = "/lib/lit";
       },
       Printed("Function CreateText()_4 => Could not create a new text file?"),
       "no dot in the library's path"},
      {[&](auto& files, auto&) { files.files.erase(std::string(testing::kCommandsPath)); },
       Printed("Function CreateText_LaTeXArray()_1: Could not open the 'LaTeXCommands.tvl' file "
               "!\n"),
       "no commands"},
      {[&](auto& files, auto& run) {
         files.files.erase(std::string(testing::kCommandsPath));
         files.files.erase(std::string(testing::kStylesPath));
         run.settings.UseLaTeXCode = 1;
       },
       Printed("Function CreateText_LaTeXArray()_1: Could not open the 'LaTeXCommands.tvl' file "
               "!\n"),
       "they are read first, and with LaTeX code too"},
      {[&](auto& files, auto&) { files.files.erase(std::string(testing::kStylesPath)); },
       Printed("ReadJournalStyles()_1 => Could not open the text file 'Journal_styles_....tvl'"),
       "no styles"},
      {[&](auto& files, auto&) { files.room[text] = 10; },
       Printed("Could not write the file '/lib/lit_text.txt': No space left on device"), "no room"},
      {[&](auto& files, auto&) { files.close_fails.insert(text); },
       Printed("Could not write the file '/lib/lit_text.txt': Input/output error"),
       "the closing fails"},
  };
  for (const Failure& failure : failures) {
    MemoryFiles files = testing::FilesOf(World("@misc{a,\n}\n@article{b,\n", "", {}));
    RunContext run = MemoryRun(files, kLibraryPath);
    failure.cause(files, run);
    RecordingReporter reporter;
    EXPECT_EQ(RunText(run), 0) << failure.says;
    EXPECT_EQ(reporter.printed, failure.printed) << failure.says;
  }
}

/// Files in memory of which one opens only so many times.
class VanishingFiles final : public FileSystem {
 public:
  VanishingFiles(MemoryFiles& files, std::string path, int opens)
      : files_(files), path_(std::move(path)), opens_(opens) {}
  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override {
    if (path == path_ && opens_-- <= 0) return nullptr;
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
  std::string path_;
  int opens_;
};

TEST(Text, FailsWhenTheLibraryCannotBeOpenedOnceMore) {
  MemoryFiles memory = testing::FilesOf(World("@article{a,\n}\n", "", {}));
  VanishingFiles files(memory, std::string(kLibraryPath), 1);
  RecordingReporter reporter;
  EXPECT_EQ(RunText(MemoryRun(files, kLibraryPath)), 0);
  EXPECT_EQ(
      reporter.printed,
      Printed("Function CreateText()_3 => Could not open the BibTeX file? Very strange ... ."));
  EXPECT_FALSE(memory.files.contains("/lib/lit_text.txt"));
}

TEST(Text, KeepsWhatItWroteWhenTheTablesAreMissing) {
  MemoryFiles files = testing::FilesOf(World("@article{a,\n}\n", "", {}));
  files.files.erase(std::string(testing::kCommandsPath));
  RecordingReporter reporter;
  EXPECT_EQ(RunText(MemoryRun(files, kLibraryPath)), 0);
  EXPECT_EQ(files.files["/lib/lit_text.txt"], std::string(kTextHeader));
}

}  // namespace
}  // namespace tarvel
