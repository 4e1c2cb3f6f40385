// SPDX-License-Identifier: MIT
#include "core/file_system.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/disk_files.h"
#include "tests/support/failing_calls.h"

namespace tarvel {
namespace {

using testing::TemporaryDirectory;

TEST(RealFileSystem, DoesNotOpenWhatItShouldNot) {
  const TemporaryDirectory directory;
  FileSystem& files = RealFileSystem();
  EXPECT_FALSE(files.OpenLines(directory / "none", ReadMode::kRead));
  EXPECT_FALSE(files.OpenLines(directory / "", ReadMode::kRead)) << "a directory";
  EXPECT_FALSE(files.OpenLines(directory / "", ReadMode::kUpdate));
  EXPECT_FALSE(files.CreateSink(directory / "", CreateMode::kWrite));
  EXPECT_FALSE(files.CreateSink(directory / "none/x", CreateMode::kWrite));
  testing::WriteDiskFile(directory / "file", "x");
  ASSERT_EQ(chmod((directory / "file").c_str(), 0444), 0);
  EXPECT_TRUE(files.OpenLines(directory / "file", ReadMode::kRead));
  // Root's privileges, where the tests have them, open it all the same.
  const bool writable = access((directory / "file").c_str(), W_OK) == 0;
  EXPECT_EQ(files.OpenLines(directory / "file", ReadMode::kUpdate).has_value(), writable);
}

TEST(RealFileSystem, OpensForUpdatingOnlyWhatCouldBeWritten) {
  // A program that runs cannot be written, not even by root, whom permissions do not stop.
  EXPECT_NE(RealFileSystem().OpenSource("/proc/self/exe", ReadMode::kRead), nullptr);
  EXPECT_EQ(RealFileSystem().OpenSource("/proc/self/exe", ReadMode::kUpdate), nullptr);
}

TEST(RealFileSystem, OpensRegularFilesOnlyAndWaitsForNone) {
  const TemporaryDirectory directory;
  ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0666), 0);
  ASSERT_EQ(symlink("pipe", (directory / "link").c_str()), 0);
  for (const std::string& path : {directory / "pipe", directory / "link", std::string("/dev/null"),
                                  std::string("/dev/zero")}) {
    EXPECT_EQ(RealFileSystem().OpenSource(path, ReadMode::kRead), nullptr) << path;
    EXPECT_EQ(RealFileSystem().OpenSource(path, ReadMode::kUpdate), nullptr) << path;
    EXPECT_FALSE(RealFileSystem().StateAt(path)) << path;
  }
}

TEST(RealFileSystem, ReadsOnAfterASignalAndGivesUpWhenTheSystemDoes) {
  using testing::FailingCall;
  const TemporaryDirectory directory;
  const std::string path = directory / "file";
  testing::WriteDiskFile(path, "one\n");
  FileSystem& files = RealFileSystem();
  {
    const FailingCall broken_off("read", EINTR);
    const auto lines = files.OpenLines(path, ReadMode::kRead);
    ASSERT_TRUE(lines);
    EXPECT_EQ(lines->Bytes(), "one\n");
    EXPECT_TRUE(broken_off.Failed());
  }
  for (const char* const call : {"read", "open", "fstat", "stat"}) {
    const FailingCall failing(call, EIO);
    EXPECT_FALSE(files.OpenLines(path, ReadMode::kRead)) << call;
    EXPECT_TRUE(failing.Failed()) << call;
  }
  const FailingCall second("stat", EIO, 2);
  EXPECT_FALSE(files.IsSameFile(path, path));
}

TEST(RealFileSystem, KnowsAFileFromItsChangedSelfAndFromOthers) {
  const TemporaryDirectory directory;
  const std::string path = directory / "file";
  testing::WriteDiskFile(path, "one");
  const auto state = RealFileSystem().OpenSource(path, ReadMode::kRead)->State();
  ASSERT_TRUE(state);
  EXPECT_EQ(RealFileSystem().StateAt(path), state);
  std::filesystem::resize_file(path, 2);
  EXPECT_NE(RealFileSystem().StateAt(path), state);
  testing::WriteDiskFile(directory / "other", "one");
  EXPECT_NE(RealFileSystem().StateAt(directory / "other"), state);
  EXPECT_FALSE(RealFileSystem().StateAt(directory / "none"));
}

TEST(RealFileSystem, ReadsFilesThatDoNotReportTheirSize) {
  const auto lines = RealFileSystem().OpenLines("/proc/self/status", ReadMode::kRead);
  ASSERT_TRUE(lines);
  EXPECT_NE(lines->Bytes().find("Name:"), std::string_view::npos);
}

TEST(FileState, DistinguishesWhatDiffersInAnything) {
  const FileState state{1, 2, 3, 4, 5, 6, 7};
  EXPECT_TRUE(state == FileState(state));
  for (const FileState& other : {FileState{0, 2, 3, 4, 5, 6, 7}, FileState{1, 0, 3, 4, 5, 6, 7},
                                 FileState{1, 2, 0, 4, 5, 6, 7}, FileState{1, 2, 3, 0, 5, 6, 7},
                                 FileState{1, 2, 3, 4, 0, 6, 7}, FileState{1, 2, 3, 4, 5, 0, 7},
                                 FileState{1, 2, 3, 4, 5, 6, 0}}) {
    EXPECT_FALSE(state == other);
  }
}

TEST(RealFileSystem, ReadsNoPipeThatTookTheNameOfAFile) {
  const TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "file", "x");
  const testing::FailingCall exchanged("fstat", 0);
  EXPECT_EQ(RealFileSystem().OpenSource(directory / "file", ReadMode::kRead), nullptr);
  EXPECT_TRUE(exchanged.Failed());
}

}  // namespace
}  // namespace tarvel
