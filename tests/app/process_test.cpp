// SPDX-License-Identifier: MIT
#include "app/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <thread>

#include "app/globals.h"
#include "core/pending_file.h"
#include "tests/support/child.h"
#include "tests/support/disk_files.h"
#include "tests/support/failing_calls.h"

namespace tarvel {
namespace {

using testing::InChild;

int RaisedFrom(rlim_t before, rlim_t expected) {
  return InChild([=] {
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) != 0) return 10;
    const rlim_t hard = limit.rlim_max;
    limit.rlim_cur = before;
    if (setrlimit(RLIMIT_STACK, &limit) != 0) return 11;
    if (RaiseStackLimit() != 0) return 12;
    if (getrlimit(RLIMIT_STACK, &limit) != 0) return 13;
    return limit.rlim_cur == expected && limit.rlim_max == hard ? 0 : 1;
  });
}

TEST(RaiseStackLimit, RaisesALowerSoftLimitToExactly80MiB) {
  EXPECT_EQ(RaisedFrom(8 << 20, 83886080), 0);
  EXPECT_EQ(RaisedFrom(83886079, 83886080), 0);
}

TEST(RaiseStackLimit, LeavesAHigherOneAlone) {
  EXPECT_EQ(RaisedFrom(83886080, 83886080), 0);
  EXPECT_EQ(RaisedFrom(100 << 20, 100 << 20), 0);
  EXPECT_EQ(RaisedFrom(RLIM_INFINITY, RLIM_INFINITY), 0);
}

[[noreturn]] void RaiseUnderALowHardLimit() {
  const rlimit limit{8 << 20, 16 << 20};
  setrlimit(RLIMIT_STACK, &limit);
  std::exit(RaiseStackLimit());
}

TEST(RaiseStackLimitDeathTest, ReportsALimitThatCannotBeSetAndGoesOn) {
  EXPECT_EXIT(RaiseUnderALowHardLimit(), ::testing::ExitedWithCode(0),
              "^setrlimit returned result = -1\n$");
}

TEST(PrepareProcess, OpensTheStandardStreamsThatAreClosed) {
  EXPECT_EQ(InChild([] {
              close(0);
              close(2);
              PrepareProcess();
              struct stat null {};
              struct stat status {};
              if (stat("/dev/null", &null) != 0) return 10;
              for (const int descriptor : {0, 2}) {
                if (fstat(descriptor, &status) != 0 || status.st_rdev != null.st_rdev) return 11;
              }
              return fcntl(1, F_GETFD) >= 0 ? 0 : 12;
            }),
            0);
}

TEST(PrepareProcess, LetsWritesFailInsteadOfEndingTheProcess) {
  EXPECT_EQ(InChild([] {
              PrepareProcess();
              int ends[2] = {};
              if (pipe(ends) != 0 || close(ends[0]) != 0) return 10;
              return write(ends[1], "x", 1) < 0 && errno == EPIPE ? 0 : 11;
            }),
            0);
}

/// How a process ends that gets SIGTERM, given what it does with it at its start.
int EndBySigterm(void (*before)(int)) {
  return InChild([before] {
    std::signal(SIGTERM, before);
    PrepareProcess();
    raise(SIGTERM);
    return 0;
  });
}

TEST(PrepareProcess, LeavesTheEndBySignalsAsTheShellExpectsIt) {
  EXPECT_EQ(EndBySigterm(SIG_DFL), -SIGTERM);
  EXPECT_EQ(EndBySigterm(SIG_IGN), 0) << "what was ignored stays so";
}

/// A file system without unnamed files shows what a run that is interrupted would leave.
TEST(PrepareProcess, RemovesTemporaryFilesWhenASignalEndsTheRun) {
  const testing::TemporaryDirectory directory;
  const int status = InChild([&] {
    std::signal(SIGINT, SIG_DFL);  // it is ignored when the tests are a job in the background
    PrepareProcess();
    const testing::FailingCalls no_unnamed_files("access", ENOENT);
    const auto file = CreatePendingFile(directory / "lit_journals.bib", CreateMode::kWrite);
    if (std::filesystem::is_empty(directory / "")) return 1;
    raise(SIGINT);
    return 2;
  });
  EXPECT_EQ(status, -SIGINT);
  EXPECT_TRUE(std::filesystem::is_empty(directory / ""));
}

/// The toolkit's threads take signals that the one that publishes keeps waiting.
TEST(PrepareProcess, LeavesASignalToTheFirstThread) {
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  const int status = InChild([&] {
    std::signal(SIGTERM, SIG_DFL);
    PrepareProcess();
    std::atomic<bool> begins = false;
    std::atomic<bool> has_come = false;
    std::thread other([&] {
      while (!begins) std::this_thread::yield();
      kill(getpid(), SIGTERM);  // handled here before `kill` returns: no other thread takes it
      has_come = true;
      pause();
    });
    other.detach();
    const PublishGuard guard(std::set<std::string>{});
    begins = true;
    while (!has_come) std::this_thread::yield();
    return write(ends[1], "published", 9) == 9 ? 0 : 1;
  });
  EXPECT_EQ(status, -SIGTERM) << "after the guard's end";
  close(ends[1]);
  char text[16] = {};
  EXPECT_EQ(read(ends[0], text, sizeof text), 9);
  close(ends[0]);
}

TEST(GetProgramDirectory, FindsTheExecutable) {
  PathBuffer directory("directory");
  PathBuffer executable("executable");
  EXPECT_EQ(GetProgramDirectory(directory, executable), 1);
  EXPECT_EQ(executable.Get(), std::filesystem::read_symlink("/proc/self/exe").string());
  EXPECT_EQ(directory.Get() + "/tarvel-tests", executable.Get());
}

TEST(DirectoryOf, CutsAtTheLastSlash) {
  EXPECT_EQ(DirectoryOf("/usr/bin/tarvel"), "/usr/bin");
  EXPECT_EQ(DirectoryOf("/tarvel"), "") << "an executable in the root directory";
  EXPECT_EQ(DirectoryOf("tarvel"), "");
  EXPECT_EQ(DirectoryOf(""), "");
}

TEST(PrepareProcess, HoldsAClosedStreamWithoutANullDeviceToo) {
  EXPECT_EQ(InChild([] {
              close(0);
              const testing::FailingCall no_device("open", EMFILE);
              PrepareProcess();
              return no_device.Failed() && fcntl(0, F_GETFD) >= 0 && write(0, "x", 1) < 0 ? 0 : 11;
            }),
            0);
}

TEST(GetProgramDirectory, IsEmptyWhereTheSystemDoesNotSay) {
  const testing::FailingCall no_proc("readlink", EACCES);
  PathBuffer directory("directory");
  PathBuffer executable("executable");
  EXPECT_EQ(GetProgramDirectory(directory, executable), 1);
  EXPECT_TRUE(directory.Empty());
  EXPECT_TRUE(executable.Empty());
}

TEST(RaiseStackLimit, LeavesAnUnknownOneAlone) {
  const testing::FailingCall unknown("getrlimit", EPERM);
  EXPECT_EQ(RaiseStackLimit(), 0);
  EXPECT_TRUE(unknown.Failed());
}

}  // namespace
}  // namespace tarvel
