// SPDX-License-Identifier: MIT
#include "core/pending_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"
#include "tests/support/disk_files.h"
#include "tests/support/failing_calls.h"

namespace tarvel {
namespace {

using testing::FailingCall;
using testing::FailingCalls;
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

/// A file whose name the system gives it only when it is made ready, and one that has a temporary
/// name from the start.
class PendingFileKinds : public PendingFileTest, public ::testing::WithParamInterface<bool> {
 protected:
  std::unique_ptr<ByteSink> Create() const {
    if (GetParam()) return CreatePendingFile(path_, CreateMode::kWrite);
    const FailingCall no_proc("access", ENOENT);
    auto file = CreatePendingFile(path_, CreateMode::kWrite);
    EXPECT_TRUE(no_proc.Failed());
    return file;
  }
};
INSTANTIATE_TEST_SUITE_P(Both, PendingFileKinds, ::testing::Bool());

TEST_P(PendingFileKinds, ReplacesAFile) {
  WriteDiskFile(path_, "old");
  ASSERT_EQ(chmod(path_.c_str(), 0640), 0);
  const auto file = Create();
  ASSERT_TRUE(file);
  EXPECT_EQ(file->PendingPath() == first_name_, !GetParam());
  EXPECT_EQ(file->Write("new"), "");
  EXPECT_EQ(file->Close(), "");
  EXPECT_EQ(ReadDiskFile(file->PendingPath()), "new");
  EXPECT_EQ(ReadDiskFile(path_), "old");
  EXPECT_EQ(file->MakeReady(), "");
  EXPECT_EQ(file->Publish(), "");
  EXPECT_EQ(ReadDiskFile(path_), "new");
  struct stat status {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  EXPECT_EQ(FilesThere(), 1U);
}

TEST_F(PendingFileTest, IsRemovedByASignal) {
  const FailingCall no_proc("access", ENOENT);
  const auto file = CreatePendingFile(path_, CreateMode::kWrite);
  EXPECT_EQ(file->MakeReady(), "");
  EXPECT_TRUE(std::filesystem::exists(first_name_));
  RemoveTemporaryFiles();
  EXPECT_EQ(FilesThere(), 0U);
  EXPECT_EQ(file->Publish(), "No such file or directory");
}

TEST_P(PendingFileKinds, ReportsWhatTheSystemHeldBack) {
  const auto file = Create();
  {
    const FailingCall full("close", EDQUOT);
    EXPECT_EQ(file->Close(), "Disk quota exceeded");
  }
  {
    const FailingCall broken_off("close", EINTR);
    EXPECT_EQ(file->Close(), "");
  }
  {
    const FailingCall no_descriptor("dup", EMFILE);
    EXPECT_EQ(file->Close(), "") << "then it is not known before the end";
  }
  EXPECT_EQ(file->MakeReady(), "");
  const FailingCall read_only("rename", EROFS);
  EXPECT_EQ(file->Publish(), "Read-only file system");
}

TEST_F(PendingFileTest, ReportsANameThatTheSystemDoesNotGive) {
  const auto file = CreatePendingFile(path_, CreateMode::kWrite);
  const FailingCall full("linkat", ENOSPC);
  EXPECT_EQ(file->MakeReady(), "No space left on device");
  EXPECT_TRUE(full.Failed());
}

TEST_F(PendingFileTest, GivesUpWhenAllTemporaryNamesAreTaken) {
  const auto file = CreatePendingFile(path_, CreateMode::kWrite);
  const FailingCalls taken("linkat", EEXIST);
  EXPECT_EQ(file->MakeReady(), "File exists");
}

TEST_F(PendingFileTest, LeavesWhatMayNotBeStale) {
  struct Row {
    std::string_view call;
    int error;
  };
  // The calls that look at ".lit.bib.tarvel-0" come first: it is searched for before a run.
  for (const Row& row :
       {Row{"open", EACCES}, Row{"fstat", EIO}, Row{"flock", EWOULDBLOCK}, Row{"unlink", EACCES}}) {
    WriteDiskFile(first_name_, "half");
    const FailingCall failing(row.call, row.error);
    const auto file = CreatePendingFile(path_, CreateMode::kWrite);
    EXPECT_TRUE(failing.Failed()) << row.call;
    EXPECT_TRUE(file) << row.call;
    EXPECT_EQ(ReadDiskFile(first_name_), "half") << row.call;
  }
  WriteDiskFile(first_name_, "half");
  {
    const FailingCall gone("lstat", ENOENT, 2);  // the first one looks at the file to be replaced
    EXPECT_TRUE(CreatePendingFile(path_, CreateMode::kWrite));
  }
  EXPECT_EQ(ReadDiskFile(first_name_), "half");
  std::filesystem::remove(first_name_);
  std::filesystem::create_directory(first_name_);
  EXPECT_TRUE(CreatePendingFile(path_, CreateMode::kWrite));
  EXPECT_TRUE(std::filesystem::is_directory(first_name_));
}

TEST_F(PendingFileTest, TakesTheNextNameWhenAnotherRunRemovesItsFirst) {
  const FailingCalls no_proc("access", ENOENT);
  auto file = CreatePendingFile(path_, CreateMode::kWrite);
  EXPECT_EQ(file->PendingPath(), first_name_);
  file.reset();
  const FailingCall removed("lstat", ENOENT, 2);
  file = CreatePendingFile(path_, CreateMode::kWrite);
  ASSERT_TRUE(file);
  EXPECT_TRUE(removed.Failed());
}

TEST_F(PendingFileTest, IsWrittenInPlaceWhereARenameWouldChangeMoreThanBytes) {
  struct Row {
    std::string_view call;
    int error;
  };
  // No directory, another user in a directory with the sticky bit, a file that something is mounted
  // on, and an owner or a mode that cannot be kept.
  ASSERT_EQ(chmod((directory_ / "").c_str(), 01755), 0);
  for (const Row& row : {Row{"stat", EACCES}, Row{"geteuid", EPERM}, Row{"statx", 0},
                         Row{"fstat", EIO}, Row{"fchmod", EPERM}}) {
    WriteDiskFile(path_, "old");
    const FailingCall failing(row.call, row.error);
    const auto file = CreatePendingFile(path_, CreateMode::kWrite);
    EXPECT_TRUE(failing.Failed()) << row.call;
    ASSERT_TRUE(file) << row.call;
    EXPECT_EQ(file->PendingPath(), "") << row.call;
    EXPECT_EQ(ReadDiskFile(path_), "old") << row.call;
    EXPECT_EQ(file->Write("n"), "") << row.call;
    EXPECT_EQ(file->Write("ew"), "") << row.call;
    EXPECT_EQ(file->Close(), "") << row.call;
    EXPECT_EQ(ReadDiskFile(path_), "new") << row.call;
    EXPECT_EQ(FilesThere(), 1U) << row.call;
  }
  const FailingCall old_kernel("statx", ENOSYS);
  EXPECT_NE(CreatePendingFile(path_, CreateMode::kWrite)->PendingPath(), "");
}

TEST_F(PendingFileTest, FailsWhereTheFileSystemDoes) {
  {
    const FailingCall unknown("lstat", EACCES);
    EXPECT_FALSE(CreatePendingFile(path_, CreateMode::kWrite));
  }
  {
    const FailingCalls nothing_opens("open", EACCES);
    EXPECT_FALSE(CreatePendingFile(path_, CreateMode::kWrite));
    EXPECT_FALSE(RealFileSystem().CreateSink(path_, CreateMode::kWrite));
  }
  WriteDiskFile(path_, "old");
  {
    const FailingCalls read_only("open", EROFS);
    EXPECT_FALSE(CreatePendingFile(path_, CreateMode::kWrite));
  }
  // The first call opens the old file, and four look for stale ones.
  constexpr int kFirstNew = 6;
  for (const int error : {ENOSPC, EDQUOT}) {
    const FailingCalls full("open", error, kFirstNew);
    const auto file = CreatePendingFile(path_, CreateMode::kWrite);
    ASSERT_TRUE(file);
    EXPECT_NE(file->Write("x"), "");
    EXPECT_EQ(file->Close(), file->Write("x"));
  }
  {
    const FailingCalls no_new_file("open", EACCES, kFirstNew);
    EXPECT_FALSE(CreatePendingFile(path_, CreateMode::kWrite)) << "nor in place";
  }
  EXPECT_EQ(ReadDiskFile(path_), "old");
}

TEST_F(PendingFileTest, HasNoNameForSignalsWhenThereAreTooManyFiles) {
  constexpr std::size_t kMany = 20;
  std::vector<std::unique_ptr<ByteSink>> files;
  const FailingCalls no_proc("access", ENOENT);
  for (std::size_t i = 0; i < kMany; ++i) {
    files.push_back(CreatePendingFile(directory_ / std::to_string(i), CreateMode::kWrite));
  }
  EXPECT_EQ(FilesThere(), kMany);
  RemoveTemporaryFiles();
  EXPECT_EQ(FilesThere(), kMany - 16);
  files.clear();
  EXPECT_EQ(FilesThere(), 0U);
}

TEST_F(PendingFileTest, PublishesAfterAWhileWhoeverHoldsTheDirectory) {
  const int held = open((directory_ / "").c_str(), O_RDONLY);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  { const PublishGuard guard({directory_ / ""}); }
  close(held);
  {
    const FailingCall no_locks("flock", ENOLCK);
    const PublishGuard guard({directory_ / ""});
    EXPECT_TRUE(no_locks.Failed());
  }
  const PublishGuard nowhere({directory_ / "none"});
}

TEST_F(PendingFileTest, LocksEachDirectoryOnce) {
  const std::string other = directory_ / "other";
  std::filesystem::create_directory(other);
  const auto is_locked = [](const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY);
    const bool locked = flock(descriptor, LOCK_EX | LOCK_NB) != 0;
    close(descriptor);
    return locked;
  };
  std::optional<PublishGuard> guard;
  {
    const FailingCall third("flock", ENOLCK, 3);
    guard.emplace(std::set<std::string>{other, other + "/", directory_ / ""});
    EXPECT_FALSE(third.Failed());
  }
  EXPECT_TRUE(is_locked(other));
  EXPECT_TRUE(is_locked(directory_ / ""));
  guard.reset();
  EXPECT_FALSE(is_locked(other));
}

TEST_F(PendingFileTest, LeavesANameThatIsAnothersNow) {
  WriteDiskFile(first_name_, "half");
  {
    const FailingCall exchanged("lstat", 0, 2);
    EXPECT_TRUE(CreatePendingFile(path_, CreateMode::kWrite));
    EXPECT_TRUE(exchanged.Failed());
  }
  {
    const FailingCall unknown("fstat", EIO, 2);
    EXPECT_TRUE(CreatePendingFile(path_, CreateMode::kWrite));
    EXPECT_TRUE(unknown.Failed());
  }
  EXPECT_EQ(ReadDiskFile(first_name_), "half");
}

TEST_F(PendingFileTest, IsWrittenThroughALink) {
  WriteDiskFile(directory_ / "other", "old");
  std::filesystem::create_symlink("other", path_);
  auto file = CreatePendingFile(path_, CreateMode::kWrite);
  EXPECT_EQ(file->PendingPath(), "");
  file.reset();
  EXPECT_EQ(ReadDiskFile(directory_ / "other"), "old") << "nothing was written";
  EXPECT_EQ(CreatePendingFile(path_, CreateMode::kWrite)->Close(), "");
  EXPECT_EQ(ReadDiskFile(directory_ / "other"), "");
}

TEST_F(PendingFileTest, DoesNotWriteIntoAPipeThatNobodyReads) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  errno = 0;
  EXPECT_FALSE(CreatePendingFile(path_, CreateMode::kWriteRead));
  EXPECT_EQ(errno, ENXIO);
  const int reader = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  const auto file = CreatePendingFile(path_, CreateMode::kWriteRead);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->Write("new"), "");
  EXPECT_EQ(file->Close(), "");
  std::string bytes(8, ' ');
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(read(reader, bytes.data(), 8), 0)));
  EXPECT_EQ(bytes, "new");
  close(reader);
}

TEST_F(PendingFileTest, KeepsTheOwnerOfWhatItReplaces) {
  constexpr uid_t kOther = 54321;
  WriteDiskFile(path_, "old");
  if (chown(path_.c_str(), kOther, 0) != 0) GTEST_SKIP() << "only root can give files away";
  const auto pends = [&] {
    return CreatePendingFile(path_, CreateMode::kWrite)->PendingPath() != "";
  };
  for (const bool owner : {true, false}) {
    WriteDiskFile(path_, "old");
    ASSERT_EQ(chown(path_.c_str(), owner ? kOther : 0, owner ? 0 : kOther), 0);
    EXPECT_TRUE(pends());
    const FailingCall refused("fchown", EPERM);
    EXPECT_FALSE(pends());
    EXPECT_TRUE(refused.Failed());
  }
  // Under the sticky bit the owner of the file, and that of the directory, may replace it.
  ASSERT_EQ(chmod((directory_ / "").c_str(), 01777), 0);
  for (const std::string& owned : {path_, directory_ / ""}) {
    ASSERT_EQ(chown(path_.c_str(), 0, 0), 0);
    ASSERT_EQ(chown(owned.c_str(), kOther, 0), 0);
    const FailingCall other("geteuid", 0);
    EXPECT_TRUE(pends()) << owned;
  }
}

}  // namespace
}  // namespace tarvel
