// SPDX-License-Identifier: MIT
// Compare against the plain version, on many small hostile libraries.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

#include "ops/operations.h"
#include "tests/support/hostile_library.h"
#include "tests/support/memory_files.h"
#include "tests/support/plain_compare.h"
#include "tests/support/recording_reporter.h"

namespace tarvel::testing {

namespace {

struct Outcome {
  int result = 0;
  std::string printed;
  ComparedFiles files;
};

Outcome Compared(const std::string& first, const std::string& second) {
  MemoryFiles files;
  files.files = {{"/d/one.bib", first}, {"/d/two.bib", second}};
  RecordingReporter reporter;
  Outcome outcome;
  outcome.result = RunCompare(MemoryRun(files, "/d/one.bib", "/d/two.bib"));
  outcome.printed = reporter.printed;
  outcome.files = {files.files["/d/one_comp.log"], files.files["/d/one_comp_missing.bib"],
                   files.files["/d/one_comp_equal.bib"]};
  EXPECT_EQ(files.files["/d/one.bib"], first);
  EXPECT_EQ(files.files["/d/two.bib"], second);
  return outcome;
}

/// What a text counts as when it stands in a log: to see that the libraries reach all verdicts.
constexpr std::array<std::string_view, 9> kReached{"does not have",
                                                   "OTHER - Exactly the same",
                                                   " - Exactly the same",
                                                   "OTHER - Same item",
                                                   " - Same item",
                                                   "OTHER - Probably the same",
                                                   "ELECTRONIC - Probably the same",
                                                   " - Probably the same",
                                                   "----    - Missing entry"};

TEST(CompareRandomly, ReadsEntriesThatLieInEachOtherLikeThePlainVersion) {
  HostileLibraries libraries(20261121);
  const int runs = RandomRuns(500);
  for (int run = 0; run < runs; ++run) {
    const std::string second = libraries.NextNested();
    const std::string first = run % 2 == 0 ? libraries.NextNested() : libraries.Related(second);
    const ComparedFiles plain = PlainCompare("/d/one.bib", first, "/d/two.bib", second);
    const Outcome fast = Compared(first, second);
    ASSERT_EQ(fast.files.log, plain.log) << run << "\n" << first << "\n=====\n" << second;
    ASSERT_EQ(fast.files.missing, plain.missing) << run << "\n" << first << "\n=====\n" << second;
    ASSERT_EQ(fast.files.equal, plain.equal) << run << "\n" << first << "\n=====\n" << second;
  }
}

TEST(CompareRandomly, WritesWhatThePlainVersionWrites) {
  HostileLibraries libraries(20260417);
  std::array<int, kReached.size()> reached{};
  const int runs = RandomRuns(2000);
  for (int run = 0; run < runs; ++run) {
    std::string first = libraries.Next();
    std::string second = run % 3 == 0 ? libraries.Next() : libraries.Related(first);
    if (run % 5 == 0) std::swap(first, second);
    if (run % 50 == 0) second = first;
    const ComparedFiles plain = PlainCompare("/d/one.bib", first, "/d/two.bib", second);
    const Outcome fast = Compared(first, second);
    ASSERT_EQ(fast.files.log, plain.log) << run << "\n" << first << "\n=====\n" << second;
    ASSERT_EQ(fast.files.missing, plain.missing) << run << "\n" << first << "\n=====\n" << second;
    ASSERT_EQ(fast.files.equal, plain.equal) << run << "\n" << first << "\n=====\n" << second;
    ASSERT_EQ(fast.result, 1) << run;
    ASSERT_EQ(fast.printed, "") << run;
    for (std::size_t i = 0; i < kReached.size(); ++i) {
      if (plain.log.find(kReached[i]) != std::string::npos) ++reached[i];
    }
  }
  for (std::size_t i = 0; i < kReached.size(); ++i) {
    EXPECT_GT(reached[i], runs / 500) << kReached[i];
    RecordProperty(std::string("reached_").append(std::to_string(i)), reached[i]);
  }
}

}  // namespace

}  // namespace tarvel::testing
