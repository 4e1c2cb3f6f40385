// SPDX-License-Identifier: MIT
#include "warnings/warnings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/disk_files.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using namespace std::string_literals;
using namespace tarvel::testing;

TEST(WarningKinds, EachHasItsRowAndStandsInTheManual) {
  ASSERT_EQ(static_cast<std::size_t>(WarningKind::kLineBreaks) + 1, kWarningKinds.size());
  const std::string manual = ReadDiskFile(TARVEL_SOURCE_DIR "/docs/manual/warnings.md");
  std::set<std::string_view> names;
  for (const WarningRow& row : kWarningKinds) {
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    EXPECT_FALSE(row.summary.empty()) << row.name;
    EXPECT_NE(manual.find("### " + std::string(row.name) + "\n"), std::string::npos) << row.name;
  }
  EXPECT_EQ(RowOf(WarningKind::kUnbracedValue).name, "unbraced-value");
  EXPECT_EQ(RowOf(WarningKind::kNoGroup).name, "no-group");
  EXPECT_EQ(RowOf(WarningKind::kTextNotCopied).name, "text-not-copied");
  EXPECT_EQ(RowOf(WarningKind::kRunsOn).about, About::kReading);
  EXPECT_EQ(RowOf(WarningKind::kCharacter).about, About::kRun);
  EXPECT_EQ(RowOf(WarningKind::kCharacter).severity, Severity::kLoss);
  EXPECT_EQ(RowOf(WarningKind::kLineBreaks).name, "line-breaks");
}

TEST(WarningKinds, TheManualNamesNoOthers) {
  const std::string manual = ReadDiskFile(TARVEL_SOURCE_DIR "/docs/manual/warnings.md");
  std::size_t headings = 0;
  for (std::size_t at = 0; (at = manual.find("\n### ", at)) != std::string::npos; ++at) ++headings;
  EXPECT_EQ(headings, kWarningKinds.size());
}

TEST(LineNumbers, CountLinesFromOne) {
  LineNumbers numbers("ab\n\nc");
  EXPECT_EQ(numbers.At(0), 1U);
  EXPECT_EQ(numbers.At(2), 1U) << "a line break belongs to its line";
  EXPECT_EQ(numbers.At(3), 2U);
  EXPECT_EQ(numbers.At(4), 3U);
  EXPECT_EQ(numbers.At(100), 3U);
  EXPECT_EQ(LineNumbers("").At(0), 1U);
}

TEST(LineNumbers, CanBeAskedInAnyOrder) {
  std::mt19937 random(7);
  std::string bytes(300000, 'x');
  for (char& byte : bytes) byte = random() % 20 == 0 ? '\n' : 'x';
  LineNumbers numbers(bytes);
  for (int i = 0; i < 300; ++i) {
    const std::size_t offset = random() % bytes.size();
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
    ASSERT_EQ(numbers.At(offset), std::count(bytes.begin(), end, '\n') + 1U) << offset;
  }
}

TEST(FileWarnings, ReportTheLineOfAByte) {
  RecordingWarnings to;
  FileWarnings warnings(&to, "a.bib", "x\ny\n");
  EXPECT_TRUE(warnings.Wanted());
  warnings.Report(WarningKind::kLongLine, 2, "k", "t");
  EXPECT_EQ(to.lines, std::vector<std::string>{"long-line a.bib:2 [k] t"});
}

TEST(FileWarnings, DoNothingForNobody) {
  FileWarnings warnings(nullptr, "a.bib", "x");
  EXPECT_FALSE(warnings.Wanted());
  warnings.Report(WarningKind::kLongLine, 0, "k", "t");
}

TEST(EscapeControls, LeavesTextAsItIs) {
  EXPECT_EQ(EscapeControls("a\tb\nc\rd\x1b\x7f\0\\x \xC3\xBC"s),
            "a\\tb\\nc\\rd\\x1b\\x7f\\x00\\x \xC3\xBC");
}

struct Reported {
  std::vector<std::string> lines;
  std::string file;
  std::string key_map;
};

/// A report of the warnings, into files too where they are wanted.
Reported ReportAll(const std::vector<Warning>& warnings, WarningOutputs outputs = {},
                   bool into_files = true) {
  RecordingReporter reporter;
  MemoryFiles files;
  OutputFile file(files.CreateSink("w", CreateMode::kWrite), "w");
  OutputFile key_map(files.CreateSink("m", CreateMode::kWrite), "m");
  if (into_files) {
    outputs.file = &file;
    outputs.key_map = &key_map;
  }
  WarningReport report(outputs, reporter);
  for (const Warning& warning : warnings) report.Report(warning);
  report.MapKey("old\t1", "new");
  report.ReportSummary();
  EXPECT_TRUE(file.Close() && key_map.Close());
  EXPECT_EQ(reporter.printed, "");
  EXPECT_TRUE(reporter.boxes.empty());
  return {reporter.warnings, files.files["w"], files.files["m"]};
}

TEST(WarningReport, SumsUpLossesBeforeNotesAndTheMostFrequentFirst) {
  const Reported reported = ReportAll({{WarningKind::kNoGroup, "a.bib", 3, "", "no group"},
                                       {WarningKind::kNoGroup, "a.bib", 4, "", "no group"},
                                       {WarningKind::kLongLine, "", 0, "k", "none"},
                                       {WarningKind::kRunsOn, "b.bib", 4, "l", "again"},
                                       {WarningKind::kRunsOn, "b.bib", 5, "m", "and again"}});
  EXPECT_EQ(reported.lines,
            (std::vector<std::string>{
                "warning: loss: entries without a closing brace: 2 [runs-on]",
                "b.bib:4: warning: entry 'l': again [runs-on]",
                "b.bib:5: warning: entry 'm': and again [runs-on]",
                "warning: loss: lines that are too long to be read at once: 1 [long-line]",
                "warning: entry 'k': none [long-line]",
                "warning: note: entries that are not compared by their values: 2 [no-group]",
                "a.bib:3: warning: no group [no-group]", "a.bib:4: warning: no group [no-group]"}));
}

TEST(WarningReport, WritesALineOfTabsForEach) {
  const Reported reported =
      ReportAll({{WarningKind::kLongLine, "a\\.bib", 3, "k\t", "x\ny\r\x01"}});
  EXPECT_EQ(reported.file, "long-line\ta\\\\.bib\t3\tk\\t\tx\\ny\\r\\x01\n");
  EXPECT_EQ(reported.key_map, "old\\t1\tnew\n");
}

TEST(WarningReport, GivesThreeExamplesAndSaysHowToGetAll) {
  const std::vector<Warning> three(3, {WarningKind::kLongLine, "a", 1, "", "x"});
  EXPECT_EQ(ReportAll(three, {}, false).lines.size(), 1U + 3);
  std::vector<Warning> four = three;
  four.push_back({WarningKind::kLongLine, "a", 2, "", "the last"});
  const Reported reported = ReportAll(four, {}, false);
  ASSERT_EQ(reported.lines.size(), 1U + 3 + 1);
  EXPECT_EQ(reported.lines[0],
            "warning: loss: lines that are too long to be read at once: 4 [long-line]");
  EXPECT_EQ(reported.lines[3], "a:1: warning: x [long-line]");
  EXPECT_EQ(
      reported.lines.back(),
      "warning: there are more warnings; tarvel-batch writes all of them with --warnings FILE");
  const Reported in_file = ReportAll(four);
  EXPECT_EQ(in_file.lines.size(), 1U + 3) << "all are in the file";
  EXPECT_EQ(std::count(in_file.file.begin(), in_file.file.end(), '\n'), 4);
}

TEST(WarningReport, PrintsAllAtOnceWhereThatIsAskedFor) {
  const std::vector<Warning> four(4, {WarningKind::kLongLine, "a", 1, "", "x"});
  const std::vector<std::string> lines(4, "a:1: warning: x [long-line]");
  EXPECT_EQ(ReportAll(four, {.all = true}).lines, lines);
  EXPECT_EQ(ReportAll(four, {.quiet = true, .all = true}).lines, lines);
}

TEST(WarningReport, SendsThatOfALargeFileAtOnceAndOnlyOnce) {
  const std::vector<Warning> warnings{{WarningKind::kLongLine, "a", 1, "", "x"},
                                      {WarningKind::kLargeOutput, "l.log", 0, "", "may"}};
  const std::string line = "l.log: warning: may [large-output]";
  const Reported reported = ReportAll(warnings);
  ASSERT_EQ(reported.lines.size(), 1U + 2);
  EXPECT_EQ(reported.lines[0], line);
  EXPECT_EQ(reported.file, "long-line\ta\t1\t\tx\nlarge-output\tl.log\t0\t\tmay\n");
  EXPECT_TRUE(ReportAll(warnings, {.quiet = true}).lines.empty());
  EXPECT_EQ(ReportAll({warnings[1]}, {.quiet = true, .all = true}).lines,
            std::vector<std::string>{line});
}

TEST(WarningReport, SaysFirstThatALibraryIsHardlyRead) {
  RecordingReporter reporter;
  WarningReport report({}, reporter);
  FileWarnings warnings(&report, "a.bib", "");
  warnings.Report(WarningKind::kUnbracedValue, 0, "", "x");
  warnings.ReportValues(4, 2);
  warnings.ReportValues(5, 3);
  report.ReportSummary();
  ASSERT_EQ(reporter.warnings.size(), 3U) << "half of the values is not enough";
  EXPECT_EQ(
      reporter.warnings[0],
      "warning: a.bib cannot be read as it is: 3 of 5 values are in quotes or have no braces, and "
      "are read as empty. Run 'tarvel-batch prepare a.bib' and work on the copy that it "
      "writes.");
}

TEST(WarningReport, AsksForNoTextThatNobodyReads) {
  RecordingReporter reporter;
  WarningReport report({}, reporter);
  FileWarnings warnings(&report, "a.bib", "one\ntwo\n");
  for (std::size_t i = 0; i < WarningReport::kExamples; ++i) {
    EXPECT_FALSE(warnings.ReportNumber(WarningKind::kLongLine)) << i;
    warnings.Report(WarningKind::kLongLine, 4, "", "x");
  }
  EXPECT_TRUE(warnings.ReportNumber(WarningKind::kLongLine));
  warnings.Report(WarningKind::kLongLine, 4, "", "x");
  EXPECT_FALSE(warnings.ReportNumber(WarningKind::kBadBytes)) << "of that kind there was none";
  warnings.Report(WarningKind::kBadBytes, 0, "", "x");
  EXPECT_TRUE(reporter.warnings.empty());
  EXPECT_EQ(report.Losses(), 5U) << "a note is none";
  report.ReportSummary();
  EXPECT_EQ(reporter.warnings[0],
            "warning: loss: lines that are too long to be read at once: 5 [long-line]");
  EXPECT_EQ(reporter.warnings[1], "a.bib:2: warning: x [long-line]");
  WarningReport quiet({.quiet = true}, reporter);
  EXPECT_TRUE(quiet.ReportNumber(WarningKind::kRunsOn));
  WarningReport all({.quiet = true, .all = true}, reporter);
  EXPECT_FALSE(all.ReportNumber(WarningKind::kRunsOn));
  EXPECT_TRUE(FileWarnings(nullptr, "a.bib", "").ReportNumber(WarningKind::kRunsOn));
}

TEST(Quoted, CutsALongTextBetweenCharacters) {
  EXPECT_EQ(Quoted("key"), "'key'");
  EXPECT_EQ(Quoted(std::string(100, 'x')), "'" + std::string(100, 'x') + "'");
  EXPECT_EQ(Quoted(std::string(99, 'x') + "\xC3\xBC"), "'" + std::string(99, 'x') + "...'");
}

TEST(WarningReport, KeepsATerminalsLineShortAndHarmless) {
  const std::string text = "\x1b[2J" + std::string(294, 'x') +
                           "\xC3\xBC"
                           "yz";
  const Reported reported = ReportAll({{WarningKind::kLongLine, "a", 1, "", text}});
  EXPECT_EQ(reported.lines[1],
            "a:1: warning: \\x1b[2J" + std::string(294, 'x') + "\xC3\xBC... [long-line]");
  const Reported cut = ReportAll({{WarningKind::kLongLine, "a", 1, "", "x" + text}});
  EXPECT_EQ(cut.lines[1], "a:1: warning: x\\x1b[2J" + std::string(294, 'x') + "... [long-line]")
      << "not within a character";
  EXPECT_NE(reported.file.find("yz"), std::string::npos);
}

TEST(WarningReport, CutsKeysInTheFileToo) {
  const std::string key(101, 'k');
  const Reported reported = ReportAll({{WarningKind::kLongLine, "a", 1, key, "x"}});
  EXPECT_EQ(reported.file, "long-line\ta\t1\t" + std::string(100, 'k') + "...\tx\n");
}

TEST(WarningReport, IsQuietOnRequestButWritesItsFiles) {
  const Reported reported = ReportAll({{WarningKind::kLongLine, "a", 1, "", "x"}}, {.quiet = true});
  EXPECT_TRUE(reported.lines.empty());
  EXPECT_EQ(reported.file, "long-line\ta\t1\t\tx\n");
  EXPECT_EQ(reported.key_map, "old\\t1\tnew\n");
}

TEST(WarningReport, NeedsNoFiles) {
  EXPECT_EQ(ReportAll({{WarningKind::kLongLine, "a", 1, "", "x"}}, {}, false).lines.size(), 2U);
}

TEST(Warnings, NeedNotCareAboutNumbersValuesAndKeys) {
  class Few final : public Warnings {
    void Report(const Warning&) override { FAIL() << "nothing is reported"; }
  } few;
  Warnings& warnings = few;
  EXPECT_FALSE(warnings.ReportNumber(WarningKind::kKeyTwice)) << "the full warning is wanted";
  warnings.ReportValues("a.bib", 2, 1);
  warnings.MapKey("a", "b");
}

}  // namespace
}  // namespace tarvel
