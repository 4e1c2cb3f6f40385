// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

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
#include "tests/support/plain_clean_characters.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using namespace std::string_literals;
using testing::kBibHeader;
using testing::kLogHeader;
using testing::MemoryFiles;
using testing::MemoryRun;
using testing::Outcome;
using testing::OutcomeOf;
using Box = testing::RecordingReporter::ShownBox;

/// Runs on a library "a.bib".
Outcome Clean(std::string_view input) {
  const Outcome outcome =
      OutcomeOf({RunCleanCharacters, Output::kCharacterLibrary, Output::kCharacterLog}, input);
  EXPECT_EQ(outcome.result, 1);
  EXPECT_EQ(outcome.printed, "");
  EXPECT_TRUE(outcome.boxes.empty());
  return outcome;
}

std::string Summary(int count) {
  return "\n\n\nAbout " + std::to_string(count) +
         " bad characters in the BibTeX file\n    'a.bib'\ncould be found. The new BibTeX file is "
         "stored in\n    'a_char.bib'.\nThe bad characters were replaced by a '?'";
}

/// The log's record of a bad byte; `kind` is what follows "could be found.".
std::string Record(std::string_view bibitem, int line, int column, const std::string& byte,
                   std::string_view kind) {
  const int code = static_cast<signed char>(byte[0]);
  return "In entry '" + std::string(bibitem) + "', in line " + std::to_string(line) + " and row " +
         std::to_string(column) + "\n   character " + std::to_string(code) + " (--" + byte +
         "--) could be found." + std::string(kind) + "\n\n";
}

constexpr std::string_view kNegative = " <- negative value (!)";
constexpr std::string_view kCommand = " <- command (!)";

TEST(CleanCharacters, DistinguishesTheThreeKindsForEveryByte) {
  for (int code = 0; code < 256; ++code) {
    const std::string byte(1, static_cast<char>(code));
    if (byte == "\n") continue;  // it would end the line
    const bool good = (code >= 32 && code <= 126) || code == 9 || code == 13;
    const std::string_view kind = code == 127 ? "" : code > 127 ? kNegative : kCommand;
    const Outcome outcome = Clean("x" + byte + "y\n");
    EXPECT_EQ(outcome.library, good ? "x" + byte + "y\n" : "x?y\n") << code;
    EXPECT_EQ(outcome.log, (good ? "" : Record("", 1, 2, byte, kind)) + Summary(good ? 0 : 1))
        << code;
  }
}

TEST(CleanCharacters, WritesItsRecordsByteForByte) {
  EXPECT_EQ(Clean("@misc{k,\nt = {\xc3\xa4\x7f\x1b}").log,
            "In entry 'k', in line 2 and row 6\n   character -61 (--\xc3--) could be found. <- "
            "negative value (!)\n\n"
            "In entry 'k', in line 2 and row 7\n   character -92 (--\xa4--) could be found. <- "
            "negative value (!)\n\n"
            "In entry 'k', in line 2 and row 8\n   character 127 (--\x7f--) could be found.\n\n"
            "In entry 'k', in line 2 and row 9\n   character 27 (--\x1b--) could be found. <- "
            "command (!)\n\n\n\n\n"
            "About 4 bad characters in the BibTeX file\n    'a.bib'\ncould be found. The new "
            "BibTeX file is stored in\n    'a_char.bib'.\nThe bad characters were replaced by a "
            "'?'");
}

struct CopyCase {
  std::string input;
  std::string copy;
  std::string says;
};

TEST(CleanCharacters, CopiesWhatIsGood) {
  const CopyCase cases[] = {
      {"", "", "nothing"},
      {"text\n\n%~ \t\n", "text\n\n%~ \t\n", "printable bytes, tabs and empty lines"},
      {"@ARTICLE{k,\r\n year = {1}\r\n}\r\n", "@ARTICLE{k,\r\n year = {1}\r\n}\r\n",
       "carriage returns"},
      {"@MISC{k,\n}", "@MISC{k,\n}", "a last line without a line break"},
      // The test for a head upper-cases what stands between "@" and "{".
      {"@article{k,\n", "@ARTICLE{k,\n", "the word of a known type becomes upper case"},
      {"@preamble{k}\n", "@PREAMBLE{k}\n", "and so does any other"},
      {"mail@host x {y} z@w\n", "mail@HOST X {y} z@w\n", "anywhere in a line"},
      {"  mail@host\n", "  mail@host\n", "but not without a brace after it"},
      {"@{a} @b{c}\n", "@{a} @B{c}\n", "an \"@\" before a brace is passed over"},
  };
  for (const CopyCase& c : cases) {
    EXPECT_EQ(Clean(c.input).library, c.copy) << c.says;
    EXPECT_EQ(Clean(c.input).log, Summary(0)) << c.says;
  }
}

struct ExemptCase {
  std::string line;
  bool left_out;
};

TEST(CleanCharacters, LeavesOutTheLinesOfExemptTags) {
  const ExemptCase cases[] = {
      {"file = {x}", true},
      {"owner={x}", true},
      {"TimeStamp\t=\t{x}", true},
      {"doi = {10.1}", true},
      {"URL={x}", true},
      // Blanks and tabs count nowhere, not even inside the name.
      {"  f i\tl e  =  { x", true},
      {"year = {1}, d o i = {2}", true},
      {"t i m e s t a m p = {", true},
      {"={ x } = { } u r\tl \t=\t {", true},
      // Nothing anchors the name.
      {"profile = {x}", true},
      {"note = {see url={x}}", true},
      {"citeseerurl = {x}", true},
      {"@misc{file={x}", true},
      // The "={" must follow at once.
      {"file = \"x\"", false},
      {"file {x}", false},
      {"file == {x}", false},
      {"file = x {y}", false},
      {"files = {x}", false},
      {"doi- = {x}", false},
      {"ur.l = {x}", false},
      {"file =\r{x}", false},
      {"url", false},
      {"= {x}", false},
      {"le = {x}", false},
      {"{ = file", false},
      {"", false},
  };
  for (const ExemptCase& c : cases) {
    // A bad byte on the line shows whether the line was looked at.
    const Outcome outcome = Clean(c.line + "\x01\nz\x02\n");
    EXPECT_EQ(outcome.library, (c.left_out ? "" : c.line + "?\n") + "z?\n") << c.line;
    const int column = static_cast<int>(c.line.size()) + 1;
    EXPECT_EQ(outcome.log, (c.left_out ? "" : Record("", 1, column, "\x01", kCommand)) +
                               Record("", 2, 2, "\x02", kCommand) + Summary(c.left_out ? 1 : 2))
        << c.line << ": a line that is left out counts as a line";
  }
}

TEST(CleanCharacters, LeavesOutOnlyTheLineOfTheTagNotTheValuesNextOnes) {
  EXPECT_EQ(Clean("  url = {a\n  b},\n  year = {1}\n").library, "  b},\n  year = {1}\n");
}

struct BibitemCase {
  std::string_view lines;  // one bad byte, 0x01, in column 1 of the last line
  std::string_view bibitem;
  std::string_view says;
};

TEST(CleanCharacters, NamesTheEntryOfTheLastHead) {
  const BibitemCase cases[] = {
      {"\x01", "", "nothing before the first head"},
      {"@article{k,\n\x01", "k", "the text between \"{\" and \",\""},
      {"@article{ k 1 ,\n\x01", " k 1 ", "with its blanks"},
      {"@article{k\n\x01", "k", "or up to the end of the line"},
      {"@article{k}\n\x01", "k}", "which is no brace"},
      {"@article{,\n\x01", "", "it may be empty"},
      {"@book{k,\n@mastersthesis{l,\n\x01", "k", "unknown types are no heads"},
      {"@book{k,\n@string{l,\n\x01", "k", "nor are definitions"},
      {"x {a, @book{k,\n\x01", "a", "the first brace of the head's line counts"},
      {"@book{k,\n@comment{jabref-meta: x, y\n\x01", "jabref-meta: x", "JabRef's data count"},
      {"@book{k,\n@Comment{JABREF\n\x01", "JABREF", "in any case"},
      {"@book{k,\nx {b} @comment{jabref\n\x01", "b} @COMMENT{jabref", "anywhere in the line"},
      {"@book{k,\n@comment {jabref\n\x01", "k", "but not with a blank"},
      {"@book{k,\n@misc{l, url = {x}\n\x01", "k", "a head on a line that is left out is not seen"},
  };
  for (const BibitemCase& c : cases) {
    const std::string log = Clean(c.lines).log;
    EXPECT_TRUE(log.starts_with("In entry '" + std::string(c.bibitem) + "', in line ")) << c.says;
  }
}

TEST(CleanCharacters, ReportsTheBytesOfTheHeadItselfUnderItsOwnName) {
  EXPECT_EQ(Clean("@misc{k\xe4,\n").log, Record("k\xe4", 1, 8, "\xe4", kNegative) + Summary(1));
}

TEST(CleanCharacters, TakesNulForAnOrdinaryByte) {
  const std::string nul(1, '\0');
  const Outcome outcome = Clean("@misc{k" + nul + "l,\n" + nul + "a" + nul + "\nfile" + nul +
                                "= {x}\n" + nul + " url = {x}\n");
  EXPECT_EQ(outcome.library, "@MISC{k?l,\n?a?\nfile?= {x}\n");
  const std::string bibitem = "k" + nul + "l";
  EXPECT_EQ(outcome.log, Record(bibitem, 1, 8, nul, kCommand) +
                             Record(bibitem, 2, 1, nul, kCommand) +
                             Record(bibitem, 2, 3, nul, kCommand) +
                             Record(bibitem, 3, 5, nul, kCommand) + Summary(4));
}

TEST(CleanCharacters, ReadsLongLinesInPiecesOf49999Bytes) {
  const std::string piece(49999, 'x');
  // The first piece is full without a line break; the bad byte is the first of the second piece.
  EXPECT_EQ(Clean(piece + "\x01y\nz\x02\n").log,
            Record("", 2, 1, "\x01", kCommand) + Record("", 3, 2, "\x02", kCommand) + Summary(2));
  EXPECT_EQ(Clean(std::string(49998, 'x') + "\x01y\n").log,
            Record("", 1, 49999, "\x01", kCommand) + Summary(1));
  // A piece is left out by itself, and a tag that is cut in two is no tag.
  EXPECT_EQ(Clean("url = {" + std::string(49992, 'x') + "rest\n").library, "rest\n");
  EXPECT_EQ(Clean(std::string(49995, 'x') + "url = {y}\n").library,
            std::string(49995, 'x') + "url = {y}\n");
  // A piece can be a head.
  EXPECT_EQ(Clean(piece + "@misc{k,\n\x01").log, Record("k", 3, 1, "\x01", kCommand) + Summary(1));
  EXPECT_EQ(Clean(std::string(49997, 'x') + "@misc{k,\n").library,
            std::string(49997, 'x') + "@misc{k,\n")
      << "a type word that is cut from its brace stays";
}

TEST(CleanCharacters, FindsBadBytesWhereverTheyStandInALongLine) {
  for (std::size_t at = 0; at < 200; ++at) {
    std::string line(200, '~');
    line[at] = '\x7f';
    std::string copy = line;
    copy[at] = '?';
    const Outcome outcome = Clean(line);
    ASSERT_EQ(outcome.library, copy) << at;
    ASSERT_EQ(outcome.log, Record("", 1, static_cast<int>(at) + 1, "\x7f", "") + Summary(1)) << at;
  }
}

// How it fails.

TEST(CleanCharacters, FailsWithoutAWordWhenNoLibraryIsPicked) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "")), 2999);
  EXPECT_TRUE(reporter.boxes.empty());
  EXPECT_EQ(reporter.printed, "");
  EXPECT_TRUE(files.files.empty());
}

TEST(CleanCharacters, ReportsInABoxWhatItCouldNotOpen) {
  struct Case {
    std::string path;
    std::string fault;  // the file that is not readable or not creatable
    int result;
    Box box;
    std::size_t files;
  };
  const Case cases[] = {
      {"no.bib", "", 2999, {"Could not open the BibTeX file!", "BibTeX file?"}, 1},
      {"a.bib", "a.bib", 2999, {"Could not open the BibTeX file!", "BibTeX file?"}, 1},
      {"a.bib", "a_char.log", 0, {"Could not open the log file!", "Log file?"}, 1},
      {"a.bib", "a_char.bib", 0, {"Could not open a_char.bib !", "New BibTeX file?"}, 2},
  };
  for (const Case& c : cases) {
    testing::RecordingReporter reporter;
    MemoryFiles files;
    files.files["a.bib"] = "@misc{k,\n}\n";
    files.unreadable.insert(c.fault);
    files.not_creatable.insert(c.fault);
    EXPECT_EQ(RunCleanCharacters(MemoryRun(files, c.path)), c.result) << c.fault;
    EXPECT_EQ(reporter.boxes, std::vector<Box>{c.box}) << c.fault;
    EXPECT_EQ(reporter.printed, "") << c.fault;
    EXPECT_EQ(files.files.size(), c.files) << c.fault;
  }
}

TEST(CleanCharacters, OpensItsLibraryForReadingOnly) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["a.bib"] = "x";
  files.read_only.insert("a.bib");
  EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "a.bib")), 1);
}

TEST(CleanCharacters, CreatesTheLogFirstAndBothForReadingToo) {
  testing::RecordingReporter reporter;
  MemoryFiles memory;
  memory.files["a.bib"] = "x";
  testing::CreateModes files(memory);
  EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "a.bib")), 1);
  const std::vector<std::pair<std::string, CreateMode>> expected{
      {"a_char.log", CreateMode::kWriteRead}, {"a_char.bib", CreateMode::kWriteRead}};
  EXPECT_EQ(files.created, expected);
}

TEST(CleanCharacters, LeavesALogWithItsHeaderWhenTheLibraryCannotBeCreated) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["a.bib"] = "x";
  files.not_creatable.insert("a_char.bib");
  EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "a.bib")), 0);
  EXPECT_EQ(files.files["a_char.log"], kLogHeader);
}

TEST(CleanCharacters, NeedsAPathWithAnExtension) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["library"] = "x";
  EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "library")), 0);
  EXPECT_EQ(reporter.boxes, (std::vector<Box>{{"Could not open the log file!", "Log file?"}}));
  EXPECT_EQ(files.files.size(), 1U);
}

TEST(CleanCharacters, CutsItsPathsAtTheLastDot) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["/h.d/my.refs.bib"] = "x";
  EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "/h.d/my.refs.bib")), 1);
  EXPECT_TRUE(files.files.contains("/h.d/my.refs_char.bib"));
  EXPECT_TRUE(files.files["/h.d/my.refs_char.log"].ends_with(
      "file\n    '/h.d/my.refs.bib'\ncould be found. The new BibTeX file is stored in\n    "
      "'/h.d/my.refs_char.bib'.\nThe bad characters were replaced by a '?'"));
}

TEST(CleanCharacters, NeverWritesOverAPickedFile) {
  for (const std::string path : {"a_char.log", "a_char.bib"}) {
    testing::RecordingReporter reporter;
    MemoryFiles files;
    files.files["a.bib"] = "x";
    files.files[path] = "the other picked file";
    EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "a.bib", path)), 0);
    EXPECT_EQ(files.files[path], "the other picked file");
    EXPECT_EQ(reporter.boxes.size(), 1U);
  }
}

TEST(CleanCharacters, FailsOnAFullDiskAtEveryByte) {
  MemoryFiles whole;
  whole.files["a.bib"] = "@misc{k,\n year = {\xe4},\n note = {2}\n}\n";
  testing::RecordingReporter reporter;
  ASSERT_EQ(RunCleanCharacters(MemoryRun(whole, "a.bib")), 1);
  for (const std::string path : {"a_char.bib", "a_char.log"}) {
    for (std::size_t room = 0; room < whole.files[path].size(); ++room) {
      MemoryFiles files;
      files.files["a.bib"] = whole.files["a.bib"];
      files.room[path] = room;
      reporter.printed.clear();
      EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "a.bib")), 0) << path << " " << room;
      EXPECT_EQ(reporter.printed, testing::Printed("Could not write the file '" + path +
                                                   "': No space left on device"));
    }
    MemoryFiles files;
    files.files["a.bib"] = whole.files["a.bib"];
    files.close_fails.insert(path);
    EXPECT_EQ(RunCleanCharacters(MemoryRun(files, "a.bib")), 0) << path;
  }
}

// Against the plain twin.

int RandomRuns() {
  const char* runs = std::getenv("TARVEL_RANDOM_RUNS");
  return runs ? std::atoi(runs) : 4000;
}

void ExpectAsPlain(const std::string& input) {
  const auto plain = testing::PlainCleanCharacters(input, "a.bib", "a_char.bib");
  const Outcome fast = Clean(input);
  ASSERT_EQ(std::string(kBibHeader) + fast.library, plain.library) << input;
  ASSERT_EQ(std::string(kLogHeader) + fast.log, plain.log) << input;
}

TEST(CleanCharacters, AgreesWithItsPlainTwin) {
  std::mt19937 random(12);
  const std::string pieces[] = {"@article{a,\n",
                                "@Book{b\n",
                                "@comment{jabref-meta: x,\n",
                                "@mail ",
                                "@",
                                "{",
                                "}",
                                ",",
                                "=",
                                "\n",
                                "\r\n",
                                " ",
                                "\t",
                                "\0"s,
                                "\xc3\xa4",
                                "\x7f",
                                "\x0c",
                                "file",
                                "fi",
                                "le",
                                "OWNER = {x}",
                                "t imestamp",
                                "d o",
                                "i",
                                "\turl",
                                "= {",
                                " ={",
                                "  year = {1},\n"};
  for (int run = 0; run < RandomRuns(); ++run) {
    std::string input;
    for (auto i = random() % 24; i > 0; --i) input += pieces[random() % std::size(pieces)];
    ASSERT_NO_FATAL_FAILURE(ExpectAsPlain(input));
  }
}

TEST(CleanCharacters, AgreesWithItsPlainTwinOnLongLines) {
  std::mt19937 random(13);
  const std::string alphabet = "aA={} \t,@\x7f\xe4\n";
  for (int run = 0; run < 4; ++run) {
    std::string input;
    for (int i = 0; i < 12; ++i) {
      input.append(random() % 60000, alphabet[random() % alphabet.size()]);
      input += i % 3 == 0 ? "url = {" : i % 3 == 1 ? "@misc{k," : "\xc3\xa4\n";
      if (input.back() == '\xe4') input += '\n';
    }
    // Long runs of one bad byte would only make a long log.
    std::erase_if(input, [&](char byte) { return byte == '\x7f' && random() % 100 != 0; });
    std::erase_if(input, [&](char byte) { return byte == '\xe4' && random() % 100 != 0; });
    ASSERT_NO_FATAL_FAILURE(ExpectAsPlain(input));
  }
}

TEST(CleanCharacters, NamesLargeCodePointsAndTagsOnTheFirstLine) {
  testing::MemoryFiles files;
  files.files["a.bib"] =
      "@misc{k, file = {a}, note = {b},\n title = {\xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf},\n}\n";
  testing::RecordingWarnings warnings;
  RunContext run = testing::MemoryRun(files, "a.bib");
  run.warnings = &warnings;
  EXPECT_EQ(RunCleanCharacters(run), 1);
  EXPECT_EQ(warnings.TextsOf(WarningKind::kCharacter),
            (std::vector<std::string>{
                "U+1F600 \xf0\x9f\x98\x80 became '" + std::string(4, '?') + "', times: 1",
                "U+10FFFF \xf4\x8f\xbf\xbf became '" + std::string(4, '?') + "', times: 1"}));
  EXPECT_EQ(warnings.TextsOf(WarningKind::kLineLeftOut),
            std::vector<std::string>{"lines with the tag 'file' were left out, times: 1"});
}

}  // namespace
}  // namespace tarvel
