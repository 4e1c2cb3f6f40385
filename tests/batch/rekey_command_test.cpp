// SPDX-License-Identifier: MIT
// Whole runs stand in tests/cases/batch/.
#include "batch/rekey_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "batch/request.h"
#include "tests/support/disk_files.h"

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

}  // namespace
}  // namespace tarvel
