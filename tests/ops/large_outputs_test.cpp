// SPDX-License-Identifier: MIT
#include "ops/large_outputs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ops/operations.h"
#include "tests/support/memory_files.h"
#include "tests/support/operation_runs.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using testing::MemoryFiles;

/// The warning of a large file that a run gives.
std::string WarnedOf(int (*operation)(const RunContext&), const std::string& library,
                     bool keep_strings = false) {
  testing::RecordingReporter reporter;
  testing::RecordingWarnings warnings;
  MemoryFiles files;
  files.files["lit.bib"] = library;
  files.files["more.bib"] = library;
  testing::AddConfiguration(files);
  const bool takes_list = operation == RunJournals;  // it has one of its own
  RunContext run = testing::MemoryRun(files, "lit.bib", takes_list ? "" : "more.bib");
  run.warnings = &warnings;
  if (keep_strings) run.settings.RemoveJournalStrings = 0;
  EXPECT_EQ(operation(run), 1);
  const std::vector<std::string> lines = warnings.Of(WarningKind::kLargeOutput);
  EXPECT_LE(lines.size(), 1U);
  return lines.empty() ? "" : lines.front();
}

std::string Keyless(int count) {
  std::string library;
  for (int i = 0; i < count; ++i) library += "@misc{,\n}\n\n";
  return library;
}

TEST(LargeOutputs, AreWarnedOfBeforeEntriesWithoutAKeyFillALog) {
  EXPECT_EQ(WarnedOf(RunCleanDoubles, Keyless(100)), "");
  const std::string doubles = WarnedOf(RunCleanDoubles, Keyless(1000));
  EXPECT_NE(doubles.find("lit_double.log:0 [] may become large, up to about 13 MB: 1000 entries"),
            std::string::npos)
      << doubles;
  EXPECT_EQ(WarnedOf(RunCompare, Keyless(100)), "");
  EXPECT_NE(WarnedOf(RunCompare, Keyless(300)).find("lit_comp.log:0 [] may become large"),
            std::string::npos);
}

TEST(LargeOutputs, AreWarnedOfBeforeEntriesThatShareAKeyFillALog) {
  const auto entries = [](int count, const std::string& title) {
    std::string library;
    for (int i = 0; i < count; ++i) {
      const std::string number = std::to_string(i);
      library +=
          "@book{" + std::string(i % 2 == 0 ? "k" : "K") + ",\n title = {" + title + "}\n}\n";
      library += "@book{other" + number + ",\n title = {" + number + "}\n}\n";
    }
    return library;
  };
  EXPECT_EQ(WarnedOf(RunCompare, entries(100, "t")), "");
  EXPECT_NE(WarnedOf(RunCompare, entries(300, "t")).find("up to about 13 MB: each entry"),
            std::string::npos);
  const std::string with_long_values = WarnedOf(RunCompare, entries(100, std::string(1000, 't')));
  EXPECT_NE(with_long_values.find("up to about 21 MB"), std::string::npos) << with_long_values;
}

TEST(LargeOutputs, AreWarnedOfBeforeKeptStringsAreCopied) {
  std::string strings;
  for (int i = 0; i < 1000; ++i) strings += "@STRING{s" + std::to_string(i) + " = {Journal}}\n";
  strings += "@misc{a,\n  title = {t}\n}\n";
  EXPECT_EQ(WarnedOf(RunCleanTags, strings), "") << "they are not kept";
  EXPECT_NE(WarnedOf(RunCleanTags, strings, true).find("lit_tag.bib:0 [] may become large"),
            std::string::npos);
}

TEST(LargeOutputs, AreWarnedOfBeforeALongEntryIsCopiedOften) {
  const auto entries = [](int count) {
    std::string library =
        "@misc{k,\n note = {n},\n abstract = {" + std::string(100000, 'a') + "},\n}\n";
    for (int i = 0; i < count; ++i)
      library += "@misc{k" + std::to_string(i) + ",\n note = {n},\n}\n";
    return library;
  };
  EXPECT_EQ(WarnedOf(RunCompare, entries(90)), "");
  EXPECT_NE(WarnedOf(RunCompare, entries(1000)).find("lit_comp_equal.bib:0 [] may become large"),
            std::string::npos);
}

TEST(LargeOutputs, AreWarnedOfBeforeALongKeyFillsALog) {
  const auto entry = [](int key_size, int lines) {
    std::string library = "@misc{" + std::string(static_cast<std::size_t>(key_size), 'k') + ",\n";
    for (int i = 0; i < lines; ++i) library += "  author = {Jos\xE9 Doe},\n";
    return library + "}\n@misc{b,\n}\n";
  };
  for (const auto operation : {RunCleanAuthors, RunCleanCharacters, RunJournals}) {
    EXPECT_EQ(WarnedOf(operation, entry(2000, 1000)), "");
    EXPECT_EQ(WarnedOf(operation, entry(400, 30000)), "") << "such a log is no surprise";
    EXPECT_NE(WarnedOf(operation, entry(40000, 1000)).find("may become large, up to about 40 MB"),
              std::string::npos);
  }
}

TEST(LargeOutputs, AreWarnedOfBeforeValuesThatDoNotCloseAreWrittenAgain) {
  const auto entries = [](int count, const std::string& opening) {
    std::string library;
    std::string end;
    for (int i = 0; i < count; ++i) {
      library += "@misc{k" + std::to_string(i) + ",\n " + opening;
      end += "}\n}\n";
    }
    return library + end + "@misc{last,\n title = {t},\n}\n";
  };
  EXPECT_EQ(WarnedOf(RunCleanTags, entries(500, "title = {\n")), "");
  EXPECT_NE(
      WarnedOf(RunCleanTags, entries(2000, "title = {\n")).find("lit_tag.bib:0 [] may become"),
      std::string::npos);
  EXPECT_NE(
      WarnedOf(RunCleanTags, entries(2000, "abstract {\n")).find("lit_tag.log:0 [] may become"),
      std::string::npos);
  EXPECT_EQ(WarnedOf(RunCleanTags, entries(2000, "abstract = {\n")), "") << "it is not written";
}

}  // namespace
}  // namespace tarvel
