// SPDX-License-Identifier: MIT
// Every call to the disk fails in turn, in every operation: it is reported, nothing is called
// done, the inputs stay, and the next run is as good as new.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/globals.h"
#include "app/operations.h"
#include "app/run_operation.h"
#include "app/texts.h"
#include "gui/line_endings.h"
#include "tests/support/disk_files.h"
#include "tests/support/faulty_files.h"
#include "tests/support/memory_files.h"
#include "tests/support/operation_runs.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

using testing::FaultyFiles;
using testing::MemoryFiles;
using testing::OperationRun;
using Files = std::map<std::string, std::string>;

/// One operation on the sample files, through `RunOperation` as a button or the batch program calls
/// it. The input checks look at the disk, where the same files stand; the operation itself works in
/// memory, where calls can fail.
class FaultyOperation : public ::testing::TestWithParam<OperationRun> {
 protected:
  FaultyOperation() { MakeWorld(testing::kSampleLibrary); }

  void MakeWorld(std::string_view library) {
    disk_ = MemoryFiles();
    const RunContext sample = testing::SampleRun(GetParam(), disk_);
    disk_.files["lit.bib"] = library;
    Files moved;
    for (const auto& [path, bytes] : disk_.files) {
      if (path.starts_with("/")) {
        moved[path] = bytes;
        continue;
      }
      testing::WriteDiskFile(directory_ / path, bytes);
      moved[directory_ / path] = bytes;
    }
    disk_.files = inputs_ = moved;
    FirstFilePath.Set(directory_ / sample.first_path);
    SecondFilePath.Set(sample.second_path.empty() ? "" : directory_ / sample.second_path);
    GlobalSettings = Settings();
  }

  ~FaultyOperation() override {
    FirstFilePath.Set("");
    SecondFilePath.Set("");
  }

  RunContext Context(FileSystem& files) {
    return testing::MemoryRun(files, FirstFilePath.Get(), SecondFilePath.Get());
  }

  /// Runs on `files` as a user would; the boxes and what was printed are recorded.
  int Run(FileSystem& files, testing::RecordingReporter& reporter) {
    static const OperationRun* operation = nullptr;
    static FaultyOperation* test = nullptr;
    static FileSystem* current = nullptr;
    operation = &GetParam();
    test = this;
    current = &files;
    Operation row = GetParam().row;
    row.run = [] { return operation->run(test->Context(*current)); };
    reporter.boxes.clear();
    reporter.printed.clear();
    return RunOperation(row);
  }

  /// A run in which nothing fails: what the outputs are, and which calls it makes.
  void RunWell() {
    testing::RecordingReporter reporter;
    FaultyFiles files(disk_);
    ASSERT_EQ(Run(files, reporter), 1) << reporter.printed;
    calls_ = files.calls;
    good_ = disk_.files;
    for (const std::string& path : testing::OutputPaths(GetParam(), Context(disk_))) {
      ASSERT_TRUE(good_.contains(path)) << path;
    }
    ResetDisk();
  }

  void ResetDisk() { disk_.files = inputs_; }

  /// After a fault: it was reported, nothing was called done, the inputs are as they were, and a
  /// second run gives what a first one should have given.
  void ExpectAFailureThatHarmsNothing(int result, const testing::RecordingReporter& reporter) {
    EXPECT_NE(result, 1);
    const Operation& row = GetParam().row;
    ASSERT_FALSE(reporter.boxes.empty());
    EXPECT_TRUE(reporter.printed.find("Attention, an error occured!") != std::string::npos ||
                (reporter.boxes.size() > 1 &&
                 reporter.boxes[reporter.boxes.size() - 2].caption.ends_with("?")))
        << "the reason stands on the terminal, or in a box of its own before the last";
    EXPECT_EQ(reporter.boxes.back().message, ErrorHintText);
    EXPECT_EQ(reporter.boxes.back().caption, row.error_caption);
    for (const auto& box : reporter.boxes) EXPECT_NE(box.message, DoneText);
    for (const auto& [path, bytes] : inputs_) EXPECT_EQ(disk_.files[path], bytes) << path;

    testing::RecordingReporter second;
    EXPECT_EQ(Run(disk_, second), 1);
    EXPECT_TRUE(disk_.files == good_) << "the second run writes the right files";
    ResetDisk();
  }

  testing::TemporaryDirectory directory_;
  MemoryFiles disk_;
  Files inputs_;
  Files good_;
  std::vector<FaultyFiles::Call> calls_;
};

TEST_P(FaultyOperation, ReportsEveryCallThatFails) {
  RunWell();
  for (const FaultyFiles::Call kind :
       {FaultyFiles::Call::kOpen, FaultyFiles::Call::kRead, FaultyFiles::Call::kCreate,
        FaultyFiles::Call::kWrite, FaultyFiles::Call::kClose}) {
    EXPECT_NE(std::count(calls_.begin(), calls_.end(), kind), 0) << "the run makes every call";
  }
  for (std::size_t call = 0; call < calls_.size(); ++call) {
    SCOPED_TRACE("call " + std::to_string(call) + " of kind " +
                 std::to_string(static_cast<int>(calls_[call])));
    testing::RecordingReporter reporter;
    FaultyFiles files(disk_);
    files.fail_at = call;
    ExpectAFailureThatHarmsNothing(Run(files, reporter), reporter);
  }
}

TEST_P(FaultyOperation, ReportsADiskThatFillsUpAtAnyByte) {
  RunWell();
  std::size_t size = 0;
  for (const auto& [path, bytes] : good_) size += inputs_.contains(path) ? 0 : bytes.size();
  for (std::size_t room = 0; room < size; ++room) {
    SCOPED_TRACE("room for " + std::to_string(room) + " of " + std::to_string(size) + " bytes");
    testing::RecordingReporter reporter;
    FaultyFiles files(disk_);
    files.room = room;
    ExpectAFailureThatHarmsNothing(Run(files, reporter), reporter);
    EXPECT_NE(reporter.printed.find("No space left on device"), std::string::npos)
        << "the reason is reported";
    if (HasFailure()) return;
  }
  testing::RecordingReporter reporter;
  FaultyFiles files(disk_);
  files.room = size;
  EXPECT_EQ(Run(files, reporter), 1) << "with room for the last byte nothing fails";
}

TEST_P(FaultyOperation, ReportsEveryWriteOfALargeRun) {
  // Outputs of more than one buffer: writes fail in the middle of the walk, not only at its end.
  std::string library;
  while (library.size() < 700000) {
    const std::string key = "k" + std::to_string(library.size());
    library += "@article{" + key + ",\n  author = {Anna Berg},\n  title = {" + key +
               "},\n  journal = {J. Phys.},\n  year = {2001},\n  note = {caf\xc3\xa9 " +
               std::string(500, 'n') + "}\n}\n\n";
  }
  MakeWorld(std::string(testing::kSampleLibrary) + library);
  RunWell();
  for (std::size_t call = 0; call < calls_.size(); ++call) {
    if (calls_[call] != FaultyFiles::Call::kWrite && calls_[call] != FaultyFiles::Call::kRead) {
      continue;
    }
    SCOPED_TRACE("call " + std::to_string(call));
    testing::RecordingReporter reporter;
    FaultyFiles files(disk_);
    files.fail_at = call;
    ExpectAFailureThatHarmsNothing(Run(files, reporter), reporter);
  }
}

INSTANTIATE_TEST_SUITE_P(All, FaultyOperation,
                         ::testing::ValuesIn(testing::OperationRuns().begin(),
                                             testing::OperationRuns().end()),
                         [](const auto& row) { return testing::TestName(row.param.name); });

TEST(FaultyConversion, LeavesThePickedPathWhateverFails) {
  const std::string bytes = "@misc{a,\r\n}\r\n";
  MemoryFiles disk;
  disk.files["lit.bib"] = bytes;
  int failures = 0;
  std::size_t call = 0;
  for (bool all_worked = false; !all_worked; ++call) {
    ASSERT_LT(call, 30U);
    SCOPED_TRACE("call " + std::to_string(call));
    disk.files.erase("lit_linux.bib");
    testing::RecordingReporter reporter;
    FaultyFiles files(disk);
    files.fail_at = call;
    PathBuffer path("picked file");
    path.Set("lit.bib");
    const int result = ConvertLineEndings(path, files);
    all_worked = files.calls.size() <= call;
    // The search for a copy that is there already may fail, and does no harm.
    const bool converted = result == 1;
    failures += converted ? 0 : 1;
    EXPECT_TRUE(converted || !all_worked);
    if (converted) {
      EXPECT_EQ(disk.files["lit_linux.bib"], "@misc{a,\n}\n");
    }
    EXPECT_EQ(path.Get(), converted ? "lit_linux.bib" : "lit.bib");
    EXPECT_EQ(disk.files["lit.bib"], bytes);
    if (!converted && files.calls.back() == FaultyFiles::Call::kClose) {
      EXPECT_NE(reporter.printed, "") << "a copy that broke off is reported";
    }
    for (const auto& box : reporter.boxes) EXPECT_EQ(box.caption == "File conversion", converted);
  }
  EXPECT_GE(failures, 6) << "two opens, reads, a create, a write, a close";
}

}  // namespace
}  // namespace tarvel
