// SPDX-License-Identifier: MIT
#include "core/pending_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/support/child.h"
#include "tests/support/disk_files.h"
#include "tests/support/no_unnamed_files.h"

namespace tarvel {
namespace {

using testing::ReadDiskFile;
using testing::WriteDiskFile;

class PendingFileTest : public ::testing::Test {
 protected:
  std::size_t FilesThere() const {
    const std::filesystem::directory_iterator files(directory_ / "");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
  }

  testing::TemporaryDirectory directory_;
  const std::string path_ = directory_ / "lit.bib";
  const std::string first_name_ = directory_ / ".lit.bib.tarvel-0";
};

TEST_F(PendingFileTest, IsNotSeenUntilItIsPublished) {
  const auto file = CreatePendingFile(path_, CreateMode::kWriteRead);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->Write("new"), "");
  EXPECT_EQ(file->Close(), "");
  EXPECT_FALSE(std::filesystem::exists(path_));
  EXPECT_EQ(ReadDiskFile(file->PendingPath()), "new");
  EXPECT_EQ(file->MakeReady(), "");
  EXPECT_FALSE(std::filesystem::exists(path_));
  EXPECT_EQ(file->Publish(), "");
  EXPECT_EQ(ReadDiskFile(path_), "new");
  EXPECT_EQ(FilesThere(), 1U);
}

TEST_F(PendingFileTest, LeavesNothingBehind) {
  for (const bool ready : {false, true}) {
    const auto file = CreatePendingFile(path_, CreateMode::kWrite);
    EXPECT_EQ(file->Write("new"), "");
    EXPECT_EQ(ready ? file->MakeReady() : "", "");
  }
  EXPECT_EQ(FilesThere(), 0U);
}

TEST_F(PendingFileTest, TakesAnotherNameThanALivingRunAndThatOfADeadOne) {
  WriteDiskFile(first_name_, "half");
  const int held = open(first_name_.c_str(), O_RDONLY);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  auto file = CreatePendingFile(path_, CreateMode::kWrite);
  EXPECT_EQ(file->MakeReady(), "");
  EXPECT_EQ(file->Publish(), "");
  EXPECT_EQ(ReadDiskFile(first_name_), "half");
  close(held);
  file = CreatePendingFile(path_, CreateMode::kWrite);
  EXPECT_FALSE(std::filesystem::exists(first_name_));
}

/// Where no file can be without a name, it has a temporary one until it is published.
TEST_F(PendingFileTest, HasATemporaryNameWhereThereAreNoUnnamedFiles) {
  WriteDiskFile(path_, "old");
  const int status = testing::InChild([&] {
    testing::RefuseUnnamedFiles();
    const auto file = CreatePendingFile(path_, CreateMode::kWrite);
    if (file->PendingPath() != first_name_) return 1;
    if (!file->Write("new").empty() || !file->Close().empty()) return 2;
    if (ReadDiskFile(path_) != "old") return 3;
    if (!file->MakeReady().empty() || !file->Publish().empty()) return 4;
    return 0;
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ReadDiskFile(path_), "new");
  EXPECT_EQ(FilesThere(), 1U);
}

TEST_F(PendingFileTest, DoesNotTouchWhatItCannotReplace) {
  WriteDiskFile(path_, "old");
  ASSERT_EQ(chmod(path_.c_str(), 0444), 0);
  const bool writable = access(path_.c_str(), W_OK) == 0;  // so for root
  EXPECT_EQ(CreatePendingFile(path_, CreateMode::kWrite) != nullptr, writable);
  EXPECT_EQ(ReadDiskFile(path_), "old");
  EXPECT_EQ(CreatePendingFile("/proc/self/exe", CreateMode::kWrite), nullptr)
      << "a program that runs cannot be written";
}

TEST_F(PendingFileTest, IsWrittenInPlaceWhereTheDirectoryTakesNoFile) {
  if (geteuid() == 0) GTEST_SKIP() << "root may create files anywhere";
  WriteDiskFile(path_, "old");
  ASSERT_EQ(chmod((directory_ / "").c_str(), 0555), 0);
  const auto file = CreatePendingFile(path_, CreateMode::kWrite);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->PendingPath(), "");
  EXPECT_EQ(ReadDiskFile(path_), "");
  EXPECT_EQ(CreatePendingFile(directory_ / "other", CreateMode::kWrite), nullptr);
  ASSERT_EQ(chmod((directory_ / "").c_str(), 0755), 0);
}

}  // namespace
}  // namespace tarvel
