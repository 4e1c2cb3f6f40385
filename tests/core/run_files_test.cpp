// SPDX-License-Identifier: MIT
#include "core/run_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

#include "tests/support/disk_files.h"
#include "tests/support/failing_calls.h"
#include "tests/support/faulty_files.h"
#include "tests/support/memory_files.h"

namespace tarvel {
namespace {

using testing::ReadDiskFile;
using testing::WriteDiskFile;

class RunFilesTest : public ::testing::Test {
 protected:
  void Create(const std::string& path, std::string_view bytes) {
    OutputFile file(run_.CreateSink(path, CreateMode::kWrite), path);
    file.Write(bytes);
    EXPECT_TRUE(file.Close());
  }

  testing::TemporaryDirectory directory_;
  RunFiles run_{RealFileSystem()};
  const std::string library_ = directory_ / "lit_tag.bib";
  const std::string log_ = directory_ / "lit_tag.log";
};

TEST_F(RunFilesTest, GiveNoNameBeforeTheEnd) {
  WriteDiskFile(library_, "old");
  Create(library_, "new");
  Create(log_, "log");
  EXPECT_EQ(ReadDiskFile(library_), "old");
  EXPECT_FALSE(std::filesystem::exists(log_));
  EXPECT_EQ(run_.Publish(), "");
  EXPECT_EQ(ReadDiskFile(library_), "new");
  EXPECT_EQ(ReadDiskFile(log_), "log");
}

TEST_F(RunFilesTest, LeaveNothingWhenTheyAreDiscarded) {
  WriteDiskFile(library_, "old");
  Create(library_, "new");
  Create(log_, "log");
  run_.Discard();
  EXPECT_EQ(run_.Publish(), "");
  EXPECT_EQ(ReadDiskFile(library_), "old");
  EXPECT_FALSE(std::filesystem::exists(log_));
}

TEST_F(RunFilesTest, ReadBackWhatTheRunHasWritten) {
  WriteDiskFile(library_, "old");
  Create(library_, "new");
  EXPECT_EQ(run_.OpenLines(library_, ReadMode::kUpdate)->Bytes(), "new");
  EXPECT_EQ(run_.Publish(), "") << "its own file is no input";
}

TEST_F(RunFilesTest, NameAnInputThatWasChanged) {
  const std::string input = directory_ / "lit.bib";
  WriteDiskFile(input, "input");
  WriteDiskFile(library_, "old");
  for (const bool removed : {false, true}) {
    EXPECT_TRUE(run_.OpenLines(input, ReadMode::kRead));
    Create(library_, "new");
    if (removed) {
      std::filesystem::remove(input);
    } else {
      std::filesystem::resize_file(input, 3);
    }
    EXPECT_NE(run_.Publish().find("'" + input + "' was changed"), std::string::npos);
    EXPECT_EQ(ReadDiskFile(library_), "old");
  }
}

TEST_F(RunFilesTest, RefuseToWriteThroughALinkToWhatTheRunHasRead) {
  const std::string chapter = directory_ / "ch1.tex";
  for (const bool hard : {false, true}) {
    WriteDiskFile(chapter, "chapter");
    ASSERT_EQ(hard ? link(chapter.c_str(), library_.c_str()) : symlink("ch1.tex", library_.c_str()),
              0);
    EXPECT_NE(run_.CreateSink(library_, CreateMode::kWrite), nullptr) << "not read so far";
    run_.Discard();
    EXPECT_TRUE(run_.OpenLines(chapter, ReadMode::kRead));
    EXPECT_EQ(run_.CreateSink(library_, CreateMode::kWrite), nullptr);
    EXPECT_EQ(errno, EBUSY);
    EXPECT_EQ(ReadDiskFile(chapter), "chapter");
    run_.Discard();
    std::filesystem::remove(library_);
  }
  // What an earlier run has written may be read and replaced.
  EXPECT_TRUE(run_.OpenLines(chapter, ReadMode::kRead));
  Create(chapter, "new");
  EXPECT_EQ(run_.Publish(), "");
  EXPECT_EQ(ReadDiskFile(chapter), "new");
}

TEST_F(RunFilesTest, WriteNothingToAProtectedFile) {
  WriteDiskFile(library_, "old");
  ASSERT_EQ(symlink("lit_tag.bib", (directory_ / "link").c_str()), 0);
  for (const std::string& path : {library_, directory_ / "link"}) {
    OutputFile file(run_.CreateSink(path, CreateMode::kWrite), path);
    EXPECT_FALSE(run_.Protect(log_));
    EXPECT_TRUE(run_.Protect(directory_ / "./lit_tag.bib"));
    file.Write("new");
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(file.Error(), "the run reads it");
    EXPECT_EQ(run_.Publish(), "") << "the run reports it";
    EXPECT_EQ(ReadDiskFile(library_), "old");
  }
}

TEST_F(RunFilesTest, WriteNothingThroughALinkToWhatTheRunReadsLater) {
  const std::string styles = directory_ / "styles.tvl";
  WriteDiskFile(styles, "styles");
  ASSERT_EQ(symlink("styles.tvl", library_.c_str()), 0);
  OutputFile file(run_.CreateSink(library_, CreateMode::kWrite), library_);
  EXPECT_TRUE(run_.OpenLines(styles, ReadMode::kRead));
  file.Write("new");
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(file.Error(), "the run reads it");
  EXPECT_EQ(ReadDiskFile(styles), "styles");
}

TEST_F(RunFilesTest, DropAFile) {
  WriteDiskFile(library_, "old");
  OutputFile dropped(run_.CreateSink(library_, CreateMode::kWrite), library_);
  Create(log_, "log");
  run_.Drop(library_);
  EXPECT_EQ(run_.Publish(), "");
  EXPECT_EQ(ReadDiskFile(library_), "old");
  EXPECT_EQ(ReadDiskFile(log_), "log");
  EXPECT_FALSE(dropped.Close()) << "nothing is left to write to";
}

TEST_F(RunFilesTest, NameWhatWasWrittenInPlace) {
  const std::string input = directory_ / "lit.bib";
  WriteDiskFile(input, "input");
  ASSERT_EQ(symlink("elsewhere", library_.c_str()), 0);
  EXPECT_TRUE(run_.OpenLines(input, ReadMode::kRead));
  Create(library_, "new");
  Create(log_, "log");
  std::filesystem::resize_file(input, 3);
  EXPECT_EQ(run_.Publish(), "The file '" + input +
                                "' was changed during the run. No new file was written, except in "
                                "place: '" +
                                library_ + "'.");
}

TEST_F(RunFilesTest, KeepWhatStandsWhenAWriteFailed) {
  testing::MemoryFiles memory;
  testing::FaultyFiles full(memory);
  full.room = 2;
  RunFiles run(full);
  OutputFile file(run.CreateSink("a.log", CreateMode::kWrite), "a.log");
  file.Write("long");
  EXPECT_FALSE(run.WriteFailed());
  EXPECT_FALSE(file.Close());
  EXPECT_TRUE(run.WriteFailed());
  EXPECT_EQ(run.Publish(), "") << "the run reports it";
  EXPECT_FALSE(run.WriteFailed()) << "a new run begins";
}

TEST_F(RunFilesTest, KeepAllThatStandsWhenOneOfSeveralWritesFailed) {
  WriteDiskFile(library_, "old");
  Create(library_, "new");
  OutputFile full(run_.CreateSink("/dev/full", CreateMode::kWrite), "/dev/full");
  full.Write("log");
  EXPECT_FALSE(full.Close());
  EXPECT_EQ(run_.Publish(), "") << "the run reports it";
  EXPECT_EQ(ReadDiskFile(library_), "old");
}

TEST_F(RunFilesTest, RefuseTwoOutputsThatAreOneFile) {
  ASSERT_EQ(symlink("lit_tag.bib", log_.c_str()), 0);
  Create(library_, "new");
  EXPECT_EQ(run_.CreateSink(log_, CreateMode::kWrite), nullptr) << "a link to what will be made";
  EXPECT_EQ(run_.CreateSink(directory_ / "./lit_tag.bib", CreateMode::kWrite), nullptr);
}

TEST_F(RunFilesTest, KeepTheModeOfWhatTheyReplace) {
  WriteDiskFile(library_, "old");
  ASSERT_EQ(chmod(library_.c_str(), 0640), 0);
  Create(library_, "new");
  const mode_t mask = umask(027);
  Create(log_, "log");
  umask(mask);
  EXPECT_EQ(run_.Publish(), "");
  struct stat status {};
  ASSERT_EQ(stat(library_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  ASSERT_EQ(stat(log_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(RunFilesTest, WriteThroughLinks) {
  const std::string target = directory_ / "target";
  WriteDiskFile(target, "old");
  ASSERT_EQ(symlink("target", library_.c_str()), 0);
  ASSERT_EQ(link(target.c_str(), log_.c_str()), 0);
  Create(library_, "new");
  EXPECT_EQ(ReadDiskFile(log_), "new");
  EXPECT_EQ(run_.CreateSink(log_, CreateMode::kWrite), nullptr) << "it is the same file";
  EXPECT_EQ(run_.Publish(), "");
  EXPECT_TRUE(std::filesystem::is_symlink(library_));
}

TEST_F(RunFilesTest, CreateNothingWhereNothingCanBeCreated) {
  EXPECT_EQ(run_.CreateSink(directory_ / "none/lit.bib", CreateMode::kWrite), nullptr);
  EXPECT_EQ(run_.CreateSink(directory_ / std::string(256, 'x'), CreateMode::kWrite), nullptr);
  std::filesystem::create_directory(library_);
  EXPECT_EQ(run_.CreateSink(library_, CreateMode::kWrite), nullptr);
  Create(directory_ / std::string(255, 'x'), "a long name");
  EXPECT_EQ(run_.Publish(), "");
  EXPECT_EQ(ReadDiskFile(directory_ / std::string(255, 'x')), "a long name");
}

TEST_F(RunFilesTest, RemoveWhatADeadRunLeft) {
  WriteDiskFile(directory_ / ".lit_tag.bib.tarvel-0", "half");
  WriteDiskFile(directory_ / ".lit_tag.bib.tarvel-1", "half");
  Create(library_, "new");
  EXPECT_EQ(run_.Publish(), "");
  EXPECT_FALSE(std::filesystem::exists(directory_ / ".lit_tag.bib.tarvel-0"));
  EXPECT_FALSE(std::filesystem::exists(directory_ / ".lit_tag.bib.tarvel-1"));
}

TEST_F(RunFilesTest, ReadBackAFileThatStandsUnderItsNameAtOnce) {
  testing::MemoryFiles files;
  RunFiles run(files);
  const auto sink = run.CreateSink("a.bib", CreateMode::kWrite);
  EXPECT_EQ(sink->Write("new\n"), "");
  EXPECT_EQ(sink->Close(), "");
  EXPECT_EQ(run.OpenLines("a.bib", ReadMode::kRead)->Bytes(), "new\n");
  EXPECT_EQ(run.Publish(), "");
}

TEST_F(RunFilesTest, LockTheDirectoryOfEachFileThatIsRenamed) {
  std::filesystem::create_directory(directory_ / "side");
  std::filesystem::create_symlink("/dev/null", directory_ / "nothing");
  Create(directory_ / "side/warnings.txt", "w");
  Create(directory_ / "nothing", "n");
  Create(library_, "new");
  const int held = open((directory_ / "").c_str(), O_RDONLY);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  const testing::FailingCall third("flock", ENOLCK, 3);
  EXPECT_EQ(run_.Publish(), "");
  EXPECT_TRUE(third.Failed()) << "what another run holds is asked for again";
  close(held);
}

TEST_F(RunFilesTest, AskTheFileSystemBehindThem) {
  WriteDiskFile(log_, "x");
  EXPECT_EQ(run_.StateAt(log_), RealFileSystem().StateAt(log_));
  EXPECT_FALSE(run_.StateAt(library_));
  EXPECT_TRUE(run_.IsSamePlace(library_, library_));
  EXPECT_FALSE(run_.IsSameFile(library_, library_)) << "it does not exist";
  testing::MemoryFiles simple;
  simple.files["a"] = "x";
  EXPECT_FALSE(simple.FileSystem::StateAt("a")) << "not every file system knows";
  EXPECT_TRUE(RunFiles(simple).IsSamePlace("a", "a"));
  EXPECT_FALSE(RunFiles(simple).IsSamePlace("b", "b"));
}

}  // namespace
}  // namespace tarvel
