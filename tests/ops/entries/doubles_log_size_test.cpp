// SPDX-License-Identifier: MIT
#include "ops/entries/doubles_log_size.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "ops/operations.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

std::string Entry(const std::string& head, int value_size) {
  return "@" + head + ",\n  note = {" + std::string(static_cast<std::size_t>(value_size), 'n') +
         "},\n}\n\n";
}

std::string Repeat(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

struct Outcome {
  std::uint64_t expected = 0;  // by `DoublesLogSize`
  std::size_t log_size = 0;
  std::vector<std::string> warned;
};

/// Runs Clean doubles on a library in which each entry begins with an "@" at the start of a line.
Outcome RunDoubles(const std::string& library) {
  DoublesLogSize size;
  for (std::size_t at = library.find('@'); at != std::string::npos;
       at = library.find('@', at + 1)) {
    const std::string_view text = std::string_view(library).substr(at + 1);
    const std::size_t brace = text.find('{');
    size.Take({text.substr(0, brace), text.substr(brace + 1, text.find(',') - brace - 1), at});
  }
  testing::RecordingReporter reporter;
  testing::RecordingWarnings warnings;
  testing::MemoryFiles files;
  files.files["lit.bib"] = library;
  RunContext run = testing::MemoryRun(files, "lit.bib");
  run.warnings = &warnings;
  EXPECT_EQ(RunCleanDoubles(run), 1);
  return {size.Bytes(library.size()), files.files["lit_double.log"].size(),
          warnings.Of(WarningKind::kLargeOutput)};
}

TEST(DoublesLogSize, IsNothingForAnOrdinaryLibrary) {
  std::string library;
  for (int i = 0; i < 100; ++i)
    library += Repeat(Entry("MISC{k" + std::to_string(i), 50), 1 + i % 3);
  EXPECT_EQ(RunDoubles(library).expected, 0U);
  EXPECT_EQ(RunDoubles(Repeat(Entry("OTHER{k", 50), 1)).expected, 0U);
  EXPECT_EQ(RunDoubles(Repeat(Entry("OTHER{", 50), 9)).expected, 0U)
      << "keyless ones are counted apart";
}

TEST(DoublesLogSize, HoldsTheNotesOnEntriesThatAreNotCompared) {
  const Outcome outcome = RunDoubles(Entry("MISC{key", 5) + Repeat(Entry("OTHER{key", 0), 99));
  EXPECT_GE(outcome.log_size, 4950U * 80);
  EXPECT_GE(outcome.expected, outcome.log_size - 500) << "but for the header and the summary";
  EXPECT_LE(outcome.expected, outcome.log_size + 4950 * 5);
}

TEST(DoublesLogSize, HoldsTheTagsOfALongEntryForEachOther) {
  std::string library = Entry("MISC{key", 4000);
  for (int i = 0; i < 100; ++i) library += Entry("MISC{key", i);
  const Outcome outcome = RunDoubles(library);
  EXPECT_GE(outcome.log_size, 100U * 4000);
  EXPECT_GE(outcome.expected + 3 * library.size(), outcome.log_size);
  EXPECT_LE(outcome.expected, outcome.log_size);
}

TEST(DoublesLogSize, IsAnnouncedBeforeALargeLogIsWritten) {
  EXPECT_TRUE(RunDoubles(Repeat(Entry("OTHER{key", 0), 300)).warned.empty());
  const Outcome outcome = RunDoubles(Repeat(Entry("OTHER{key", 0), 600));
  ASSERT_EQ(outcome.warned.size(), 1U);
  EXPECT_NE(outcome.warned[0].find("lit_double.log:0 [] may become large, up to about 15 MB: each "
                                   "entry is compared with every other entry of its key"),
            std::string::npos)
      << outcome.warned[0];
}

}  // namespace
}  // namespace tarvel
