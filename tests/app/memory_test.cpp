// SPDX-License-Identifier: MIT
// Each request for memory fails in turn, in every operation and when files are picked: the user is
// reported, the inputs and the files of the run before stay, and the program goes on.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/reporter.h"
#include "app/run_operation.h"
#include "app/texts.h"
#include "tests/support/disk_files.h"
#include "tests/support/failing_memory.h"
#include "tests/support/operation_runs.h"

namespace tarvel {
namespace {

using testing::FailingMemory;
using testing::OperationRun;
using testing::UncountedMemory;

/// Whether a signal would still end the process.
bool TakesSignals() {
  sigset_t blocked;
  pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  return sigismember(&blocked, SIGTERM) == 0;
}

/// The number that the next file to be opened gets: higher when a descriptor was left open.
int NextDescriptor() {
  const int descriptor = open("/", O_PATH | O_CLOEXEC);
  close(descriptor);
  return descriptor;
}

/// Notes what is shown with memory that never lacks. (What a box itself takes is the toolkit's.)
class CalmReporter final : public Reporter {
 public:
  CalmReporter() { InstallReporter(*this); }
  int Print(std::string_view text) override {
    const UncountedMemory uncounted;
    printed += text;
    return static_cast<int>(text.size());
  }
  void Box(std::string_view message, std::string_view) override {
    const UncountedMemory uncounted;
    last_box = message;
  }
  void Warn(std::string_view) override {}

  std::string printed;
  std::string last_box;
};

class LackOfMemory : public ::testing::TestWithParam<OperationRun> {
 protected:
  LackOfMemory() {
    testing::MemoryFiles memory;
    const RunContext sample = testing::SampleRun(GetParam(), memory);
    for (const auto& [path, bytes] : memory.files) {
      const std::string place = directory_ / path;
      std::filesystem::create_directories(std::filesystem::path(place).parent_path());
      testing::WriteDiskFile(place, bytes);
      inputs_[place] = bytes;
    }
    FirstFilePath.Set(directory_ / sample.first_path);
    SecondFilePath.Set(sample.second_path.empty() ? "" : directory_ / sample.second_path);
    GlobalSettings = Settings();
    outputs_ = testing::OutputPaths(GetParam(), GlobalRun());
    for (const std::string& path : outputs_) testing::WriteDiskFile(path, "old\n");
  }
  ~LackOfMemory() override {
    FirstFilePath.Set("");
    SecondFilePath.Set("");
  }

  int Run() {
    static const OperationRun* operation = nullptr;
    static std::string program;
    {
      const UncountedMemory uncounted;
      program = directory_ / "program";
    }
    operation = &GetParam();
    Operation row = GetParam().row;
    row.run = [] {
      RunContext run = GlobalRun();
      run.program_directory = [] { return program; };
      return operation->run(run);
    };
    reporter_.printed.clear();
    return RunOperation(row);
  }

  testing::TemporaryDirectory directory_;
  CalmReporter reporter_;
  std::map<std::string, std::string> inputs_;
  std::vector<std::string> outputs_;
};

TEST_P(LackOfMemory, IsAFailureThatHarmsNothing) {
  std::size_t n = 1;
  for (bool enough = false; !enough; ++n) {
    SCOPED_TRACE("request " + std::to_string(n));
    int result = 0;
    const int next_descriptor = NextDescriptor();
    {
      const FailingMemory memory(n);
      result = Run();
      enough = !memory.Failed();
    }
    EXPECT_TRUE(TakesSignals());
    EXPECT_EQ(NextDescriptor(), next_descriptor);
    if (result == 1) {  // also where the library does without what it asked for
      EXPECT_EQ(reporter_.last_box, DoneText);
      for (const std::string& path : outputs_) {
        EXPECT_NE(testing::ReadDiskFile(path), "old\n");
        if (!enough) testing::WriteDiskFile(path, "old\n");
      }
      continue;
    }
    EXPECT_FALSE(enough);
    EXPECT_EQ(reporter_.last_box, ErrorHintText);
    EXPECT_NE(reporter_.printed.find(GetParam().row.no_memory), std::string::npos)
        << reporter_.printed;
    for (const auto& [path, bytes] : inputs_) EXPECT_EQ(testing::ReadDiskFile(path), bytes);
    for (const std::string& path : outputs_) EXPECT_EQ(testing::ReadDiskFile(path), "old\n");
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(n, 20U);
}

INSTANTIATE_TEST_SUITE_P(All, LackOfMemory,
                         ::testing::ValuesIn(testing::OperationRuns().begin(),
                                             testing::OperationRuns().end()),
                         [](const auto& row) { return testing::TestName(row.param.name); });

TEST(LackOfMemoryWhenPicking, LeavesThePickedPathOrConverts) {
  const testing::TemporaryDirectory directory;
  const std::string picked = directory / "lit.bib";
  const std::string copy = directory / "lit_linux.bib";
  testing::WriteDiskFile(picked, "@misc{a,\r\n}\r\n");
  CalmReporter reporter;
  PathBuffer path("picked file");
  std::size_t n = 1;
  for (bool enough = false; !enough; ++n) {
    SCOPED_TRACE("request " + std::to_string(n));
    testing::WriteDiskFile(copy, "old\n");
    reporter.printed.clear();
    path.Set(picked);
    const int next_descriptor = NextDescriptor();
    {
      const FailingMemory memory(n);
      PickFile(path, picked);
      enough = !memory.Failed();
    }
    EXPECT_TRUE(TakesSignals());
    EXPECT_EQ(NextDescriptor(), next_descriptor);
    if (enough) break;
    EXPECT_NE(reporter.printed.find("Not enough memory!"), std::string::npos);
    const bool whole = path.Get() == copy || testing::ReadDiskFile(copy) == "@misc{a,\n}\n";
    EXPECT_TRUE(whole || (path.Get() == picked && testing::ReadDiskFile(copy) == "old\n"));
    EXPECT_EQ(testing::ReadDiskFile(picked), "@misc{a,\r\n}\r\n");
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_EQ(path.Get(), copy);
  EXPECT_EQ(testing::ReadDiskFile(copy), "@misc{a,\n}\n");
}

}  // namespace
}  // namespace tarvel
