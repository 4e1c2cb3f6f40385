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
  ASSERT_EQ(static_cast<std::size_t>(WarningKind::kMisreadTag) + 1, kWarningKinds.size());
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
  EXPECT_EQ(RowOf(WarningKind::kMisreadTag).name, "misread-tag");
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

struct Told {
  std::vector<std::string> lines;
  std::string file;
  std::string key_map;
};

Told Tell(const std::vector<Warning>& warnings, bool quiet = false) {
  RecordingReporter reporter;
  MemoryFiles files;
  OutputFile file(files.CreateSink("w", CreateMode::kWrite), "w");
  OutputFile key_map(files.CreateSink("m", CreateMode::kWrite), "m");
  WarningReport report({quiet, &file, &key_map}, reporter);
  for (const Warning& warning : warnings) report.Report(warning);
  report.MapKey("old\t1", "new");
  report.ReportCounts();
  EXPECT_TRUE(file.Close() && key_map.Close());
  EXPECT_EQ(reporter.printed, "");
  EXPECT_TRUE(reporter.boxes.empty());
  return {reporter.warnings, files.files["w"], files.files["m"]};
}

TEST(WarningReport, TellsEachAndTheirNumberInTheOrderOfTheKinds) {
  const Told told = Tell({{WarningKind::kLongLine, "a.bib", 3, "", "too long"},
                          {WarningKind::kUnbracedValue, "a.bib", 0, "k", "none"},
                          {WarningKind::kLongLine, "b.bib", 4, "l", "again"}});
  EXPECT_EQ(told.lines,
            (std::vector<std::string>{
                "a.bib:3: too long", "a.bib: entry 'k': none", "b.bib:4: entry 'l': again",
                "in total values that do not stand in braces (unbraced-value): 1",
                "in total lines that are too long to be read at once (long-line): 2"}));
}

TEST(WarningReport, WritesALineOfTabsForEach) {
  const Told told = Tell({{WarningKind::kLongLine, "a\\.bib", 3, "k\t", "x\ny\r\x01"}});
  EXPECT_EQ(told.file, "long-line\ta\\\\.bib\t3\tk\\t\tx\\ny\\r\\x01\n");
  EXPECT_EQ(told.key_map, "old\\t1\tnew\n");
}

TEST(WarningReport, TellsTheFirstTwentyOfAKindAndWritesAll) {
  std::vector<Warning> warnings(20, {WarningKind::kLongLine, "a", 1, "", "x"});
  EXPECT_EQ(Tell(warnings).lines.back(),
            "in total lines that are too long to be read at once (long-line): 20");
  warnings.push_back({WarningKind::kLongLine, "a", 1, "", "the last"});
  warnings.push_back({WarningKind::kRunsOn, "a", 1, "", "another kind"});
  const Told told = Tell(warnings);
  ASSERT_EQ(told.lines.size(), 20U + 1 + 2);
  EXPECT_EQ(told.lines[20], "a:1: another kind");
  EXPECT_EQ(told.lines.back(),
            "in total lines that are too long to be read at once (long-line): 21, told of the "
            "first 20");
  EXPECT_EQ(std::count(told.file.begin(), told.file.end(), '\n'), 22);
  EXPECT_NE(told.file.find("the last"), std::string::npos);
}

TEST(WarningReport, AsksForNoTextThatNobodyReads) {
  RecordingReporter reporter;
  WarningReport report({}, reporter);
  FileWarnings warnings(&report, "a.bib", "one\ntwo\n");
  for (std::size_t i = 0; i < WarningReport::kMostShown; ++i) {
    EXPECT_FALSE(warnings.ReportNumber(WarningKind::kLongLine)) << i;
    warnings.Report(WarningKind::kLongLine, 4, "", "x");
  }
  EXPECT_EQ(reporter.warnings.size(), WarningReport::kMostShown);
  EXPECT_EQ(reporter.warnings.back(), "a.bib:2: x");
  EXPECT_TRUE(warnings.ReportNumber(WarningKind::kLongLine));
  warnings.Report(WarningKind::kLongLine, 4, "", "x");
  EXPECT_FALSE(warnings.ReportNumber(WarningKind::kRunsOn)) << "of that kind there was none";
  EXPECT_EQ(reporter.warnings.size(), WarningReport::kMostShown);
  report.ReportCounts();
  EXPECT_EQ(reporter.warnings.back(),
            "in total lines that are too long to be read at once (long-line): 22, told of the "
            "first 20");
  WarningReport quiet({true, nullptr, nullptr}, reporter);
  EXPECT_TRUE(quiet.ReportNumber(WarningKind::kRunsOn));
  EXPECT_TRUE(FileWarnings(nullptr, "a.bib", "").ReportNumber(WarningKind::kRunsOn));
}

TEST(WarningReport, KeepsATerminalsLineShortAndHarmless) {
  const std::string text = "\x1b[2J" + std::string(194, 'x') +
                           "\xC3\xBC"
                           "yz";
  const Told told = Tell({{WarningKind::kLongLine, "a", 1, "", text}});
  EXPECT_EQ(told.lines[0], "a:1: \\x1b[2J" + std::string(194, 'x') + "\xC3\xBC...");
  const Told cut = Tell({{WarningKind::kLongLine, "a", 1, "", "x" + text}});
  EXPECT_EQ(cut.lines[0], "a:1: x\\x1b[2J" + std::string(194, 'x') + "...")
      << "not within a character";
  EXPECT_NE(told.file.find("yz"), std::string::npos);
}

TEST(WarningReport, IsQuietOnRequestButWritesItsFiles) {
  const Told told = Tell({{WarningKind::kLongLine, "a", 1, "", "x"}}, true);
  EXPECT_TRUE(told.lines.empty());
  EXPECT_EQ(told.file, "long-line\ta\t1\t\tx\n");
  EXPECT_EQ(told.key_map, "old\\t1\tnew\n");
}

TEST(WarningReport, NeedsNoFiles) {
  RecordingReporter reporter;
  WarningReport report({}, reporter);
  report.Report({WarningKind::kLongLine, "a", 1, "", "x"});
  report.MapKey("a", "b");
  EXPECT_EQ(reporter.warnings.size(), 1U);
}

}  // namespace
}  // namespace tarvel
