// SPDX-License-Identifier: MIT
#include "batch/side_outputs.h"

#include <gtest/gtest.h>

#include "app/globals.h"
#include "tests/support/disk_files.h"

namespace tarvel {
namespace {

TEST(RunWithSideFiles, GivesTheStatusOfTheRun) {
  BatchRequest request;
  EXPECT_EQ(RunWithSideFiles(request, [] { return true; }), 0);
  EXPECT_EQ(RunWithSideFiles(request, [] { return false; }), 1);
  const auto lose = [] {
    if (GlobalWarningOutputs.losses) *GlobalWarningOutputs.losses = 1;
    return true;
  };
  EXPECT_EQ(RunWithSideFiles(request, lose), 0) << "losses count on request only";
  request.strict = true;
  EXPECT_EQ(RunWithSideFiles(request, lose), kLosses);
}

TEST(RunWithSideFiles, HandsTheFilesToTheRun) {
  const testing::TemporaryDirectory directory;
  BatchRequest request;
  request.quiet = true;
  request.warnings_file = directory / "warnings";
  request.key_map_file = directory / "keys";
  const int status = RunWithSideFiles(request, [] {
    EXPECT_TRUE(GlobalWarningOutputs.quiet);
    EXPECT_FALSE(GlobalWarningOutputs.all);
    EXPECT_TRUE(GlobalWarningOutputs.file);
    EXPECT_TRUE(GlobalWarningOutputs.key_map);
    return true;
  });
  EXPECT_EQ(status, 0);
  EXPECT_FALSE(GlobalWarningOutputs.file || GlobalWarningOutputs.key_map);
  request.warnings_file = kAllOnTerminal;
  EXPECT_EQ(RunWithSideFiles(request,
                             [] { return GlobalWarningOutputs.all && !GlobalWarningOutputs.file; }),
            0);
  request.warnings_file = directory / "none/warnings";
  EXPECT_EQ(RunWithSideFiles(request, [] { return true; }), 1) << "it cannot be created";
}

TEST(RunWithSideFiles, FailsWhereAFileTakesNoByte) {
  BatchRequest request;
  request.key_map_file = "/dev/full";
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(RunWithSideFiles(request,
                             [] {
                               GlobalWarningOutputs.key_map->Write("x");
                               return true;
                             }),
            1);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "tarvel-batch: could not write the file '/dev/full': No space left on device\n");
  request.key_map_file = "/nowhere/keys";
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(RunWithSideFiles(request, [] { return true; }), 1);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "tarvel-batch: could not create the file '/nowhere/keys': No such file or "
            "directory\n");
}

}  // namespace
}  // namespace tarvel
