// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "app/globals.h"
#include "ops/operations.h"
#include "tests/support/plain_extract.h"
#include "tests/support/plain_text.h"
#include "tests/support/reference_worlds.h"

// Extract and Text look keys and rows up where a plain reading of their rules reads files and tries
// rows again and again. The results must be the same to the byte.

namespace tarvel::testing {
namespace {

constexpr int kWorlds = 3000;

void ExpectSame(const PlainOutcome& expected, const PlainOutcome& got, const PlainWorld& world,
                int number) {
  const bool same = expected.result == got.result && expected.files == got.files &&
                    expected.printed == got.printed && expected.boxes == got.boxes;
  ASSERT_TRUE(same) << "world " << number << "\n--- document\n"
                    << world.document << "\n--- library\n"
                    << world.library << "\n--- result " << expected.result << " and " << got.result
                    << "\n--- printed\n"
                    << expected.printed << "--- and\n"
                    << got.printed << "\n--- files\n"
                    << ::testing::PrintToString(expected.files) << "\n--- and\n"
                    << ::testing::PrintToString(got.files);
}

struct Tally {
  int succeeded = 0;
  int with_boxes = 0;
  int failed = 0;

  void Add(const PlainOutcome& outcome) {
    succeeded += outcome.result;
    failed += 1 - outcome.result;
    with_boxes += outcome.boxes.empty() ? 0 : 1;
  }
  /// The worlds are worth their time only if all kinds of endings occur.
  void ExpectVaried() const {
    EXPECT_GT(succeeded, kWorlds / 4);
    EXPECT_GT(failed, kWorlds / 20);
    EXPECT_GT(with_boxes, kWorlds / 10);
  }
};

TEST(ExtractAgainstPlain, GivesTheSameBytesOnHostileInputs) {
  WorldMaker maker(20140215);
  PlainStyles styles;
  GlobalJournalStyles = {};
  Tally tally;
  for (int i = 0; i < kWorlds && !HasFatalFailure(); ++i) {
    const PlainWorld world = maker.Make();
    MemoryFiles files = FilesOf(world);
    RunContext run = MemoryRun(files, kDocumentPath, kLibraryPath);
    run.settings = world.settings;
    const PlainOutcome expected = PlainExtract(world, styles);
    ExpectSame(expected, RunWorld(&RunExtract, run, files), world, i);
    tally.Add(expected);
  }
  tally.ExpectVaried();
}

TEST(TextAgainstPlain, GivesTheSameBytesOnHostileInputs) {
  WorldMaker maker(381);
  PlainStyles styles;
  GlobalJournalStyles = {};
  Tally tally;
  for (int i = 0; i < kWorlds && !HasFatalFailure(); ++i) {
    const PlainWorld world = maker.Make();
    MemoryFiles files = FilesOf(world);
    RunContext run = MemoryRun(files, kLibraryPath);
    run.settings = world.settings;
    const PlainOutcome expected = PlainText(world, styles);
    ExpectSame(expected, RunWorld(&RunText, run, files), world, i);
    tally.Add(expected);
  }
  tally.ExpectVaried();
}

}  // namespace
}  // namespace tarvel::testing
