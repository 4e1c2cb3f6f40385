// SPDX-License-Identifier: MIT
#include "app/run_operation.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/texts.h"
#include "tests/support/disk_files.h"
#include "tests/support/failing_calls.h"
#include "tests/support/operation_runs.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

using Box = testing::RecordingReporter::ShownBox;

/// How often the operation of a test ran, and what it gives.
int runs = 0;
int outcome = 1;

class RunningAnOperation : public ::testing::TestWithParam<Operation> {
 protected:
  RunningAnOperation() {
    testing::WriteDiskFile(directory_ / "lit.bib", "@misc{a,\n}\n");
    testing::WriteDiskFile(directory_ / "paper.tex", "\\begin{document}\n");
    runs = 0;
    outcome = 1;
  }
  ~RunningAnOperation() override {
    FirstFilePath.Set("");
    SecondFilePath.Set("");
  }

  int Run() {
    Operation row = GetParam();
    row.run = [] {
      ++runs;
      return outcome;
    };
    return RunOperation(row);
  }

  void PickWhatItNeeds() {
    const bool document = GetParam().needs == Needs::kDocumentAndLibrary;
    FirstFilePath.Set(directory_ / (document ? "paper.tex" : "lit.bib"));
    SecondFilePath.Set(directory_ / "lit.bib");
  }

  /// The boxes of a run whose last one is `end`.
  std::vector<Box> Boxes(const Box& end) const {
    std::vector<Box> boxes;
    if (const auto note = GetParam().note; !note.empty()) {
      boxes.push_back({std::string(note), std::string(NoteTitle)});
    }
    boxes.push_back(end);
    return boxes;
  }

  testing::TemporaryDirectory directory_;
  testing::RecordingReporter reporter_;
};

TEST_P(RunningAnOperation, StopsWhenTheChecksDo) {
  EXPECT_EQ(Run(), 0) << "no file is picked";
  testing::WriteDiskFile(directory_ / "other", "text\n");
  FirstFilePath.Set(directory_ / "other");
  SecondFilePath.Set(directory_ / "other");
  EXPECT_EQ(Run(), 0) << "the files are of another kind";
  EXPECT_EQ(runs, 0);
  EXPECT_EQ(reporter_.boxes.size(), 2U) << "the box of the check, no note, and no other";
  EXPECT_EQ(reporter_.printed, "");
}

TEST_P(RunningAnOperation, EndsWithDoneOnlyForOne) {
  PickWhatItNeeds();
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(reporter_.boxes, Boxes({"Done!", "Done!"}));
  for (const int failure : {0, 2999, 2, -1}) {
    reporter_.boxes.clear();
    outcome = failure;
    EXPECT_EQ(Run(), failure);
    EXPECT_EQ(reporter_.boxes,
              Boxes({"An error in the function occured! Analyse the error output in a terminal.",
                     std::string(GetParam().error_caption)}));
  }
  EXPECT_EQ(reporter_.printed, "") << "the terminal is the operation's";
}

TEST_P(RunningAnOperation, FailsWhenAFileOfWarningsTakesNoByte) {
  PickWhatItNeeds();
  const auto full = CreateOutput(GlobalRun(), "/dev/full", CreateMode::kWrite);
  ASSERT_TRUE(full);
  full->Write("x");
  GlobalWarningOutputs = {.file = full.get()};
  EXPECT_EQ(Run(), 0);
  GlobalWarningOutputs = {};
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(reporter_.boxes.back().caption, GetParam().error_caption);
}

TEST(WholeRun, FailsWithAFileThatDoesNotArrive) {
  const testing::TemporaryDirectory directory;
  testing::RecordingReporter reporter;
  const auto run = [&](const std::string& path) {
    WholeRun whole;
    return whole.Run(
        [&] {
          const auto output = CreateOutput(GlobalRun(), path, CreateMode::kWrite);
          output->Write("x");
          (void)output->Close();  // an operation that does not look
          return 1;
        },
        "no memory");
  };
  EXPECT_EQ(run(directory / "new"), 1);
  EXPECT_EQ(reporter.printed, "");
  EXPECT_EQ(run("/dev/full"), 0);
  EXPECT_EQ(reporter.printed, "") << "the operation has reported it";
  const testing::FailingCall read_only("rename", EROFS);
  EXPECT_EQ(run(directory / "other"), 0);
  EXPECT_EQ(reporter.printed, testing::Printed("Could not write the file '" +
                                               (directory / "other") + "': Read-only file system"));
}

INSTANTIATE_TEST_SUITE_P(All, RunningAnOperation,
                         ::testing::ValuesIn(kOperations.begin(), kOperations.end()),
                         [](const auto& row) { return testing::TestName(row.param.batch_name); });

}  // namespace
}  // namespace tarvel
