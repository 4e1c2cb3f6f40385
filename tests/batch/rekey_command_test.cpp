// SPDX-License-Identifier: MIT
// Whole runs stand in tests/cases/batch/.
#include "batch/rekey_command.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <filesystem>
#include <string>

#include "batch/request.h"
#include "tests/support/disk_files.h"
#include "tests/support/failing_calls.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

TEST(Rekey, WritesBesideTheDocumentOrWhereItIsAskedTo) {
  const testing::TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "keys", "a\tb\n");
  std::filesystem::create_directories(directory / "v1.0");
  testing::WriteDiskFile(directory / "v1.0/paper", "\\cite{a}\r\n");
  testing::WriteDiskFile(directory / "my.paper.ltx", "\\cite{a}");
  BatchRequest request;
  request.quiet = true;
  request.files = {directory / "keys", directory / "v1.0/paper", directory / "my.paper.ltx"};
  EXPECT_EQ(RunRekeyCommand(request), 0);
  EXPECT_EQ(testing::ReadDiskFile(directory / "v1.0/paper_rekeyed"), "\\cite{b}\r\n");
  EXPECT_EQ(testing::ReadDiskFile(directory / "my.paper_rekeyed.ltx"), "\\cite{b}");
  EXPECT_EQ(testing::ReadDiskFile(directory / "v1.0/paper"), "\\cite{a}\r\n");

  request.output_directory = directory / "v1.0";
  request.files.erase(request.files.begin() + 1);
  EXPECT_EQ(RunRekeyCommand(request), 0);
  EXPECT_EQ(testing::ReadDiskFile(directory / "v1.0/my.paper_rekeyed.ltx"), "\\cite{b}");
  request.output_directory = directory / "gone";
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(RunRekeyCommand(request), 1) << "the output cannot be written";
  EXPECT_NE(::testing::internal::GetCapturedStderr(), "");
}

TEST(Rekey, SaysWhatItReplacedAndWhatItDidNotRead) {
  const testing::TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "keys", "a\tb\nk\tk_a\nc\td\nc\te\n");
  testing::WriteDiskFile(directory / "one.tex", "\\cite{a}\n\\mycite{a}\n\\mycite{c}\n");
  testing::WriteDiskFile(directory / "two.tex", "\\cite{a,k}\n");
  BatchRequest request;
  request.files = {directory / "keys", directory / "one.tex", directory / "two.tex"};
  testing::RecordingReporter reporter;
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(RunRekeyCommand(request), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            (directory / "one_rekeyed.tex") + ": 1 key replaced\n" +
                (directory / "two_rekeyed.tex") + ": 2 keys replaced\n");
  EXPECT_EQ(reporter.warnings.size(), 3U);
  EXPECT_EQ(reporter.warnings.back(),
            (directory / "one.tex") +
                ":2: warning: '\\mycite' is not read, and its keys are not replaced, times: 2; add "
                "it to the list of --cite-commands [other-citation]");
  request.quiet = true;
  reporter.warnings.clear();
  EXPECT_EQ(RunRekeyCommand(request), 0);
  EXPECT_TRUE(reporter.warnings.empty());
}

TEST(Rekey, GoesOnWithTheOtherDocumentsAfterOneThatFails) {
  const testing::TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "keys", "a\tb\n");
  testing::WriteDiskFile(directory / "one.tex", "\\cite{a}");
  testing::WriteDiskFile(directory / "one_rekeyed.tex", "earlier");
  testing::WriteDiskFile(directory / "two.tex", "\\cite{a}");
  BatchRequest request;
  request.quiet = true;
  request.files = {directory / "keys", directory / "one.tex", directory / "two.tex"};
  ::testing::internal::CaptureStderr();
  {
    const testing::FailingCall full("write", ENOSPC);
    EXPECT_EQ(RunRekeyCommand(request), 1);
  }
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "tarvel-batch: could not write the file '" +
                                                          (directory / "one_rekeyed.tex") +
                                                          "': No space left on device\n");
  EXPECT_EQ(testing::ReadDiskFile(directory / "one_rekeyed.tex"), "earlier");
  EXPECT_EQ(testing::ReadDiskFile(directory / "two_rekeyed.tex"), "\\cite{b}");
}

}  // namespace
}  // namespace tarvel
