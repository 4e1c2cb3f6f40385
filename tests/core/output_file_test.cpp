// SPDX-License-Identifier: MIT
#include "core/output_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/file_system.h"
#include "ops/run_context.h"
#include "tests/support/disk_files.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

using testing::MemoryFiles;
using testing::MemoryRun;
using testing::TemporaryDirectory;

TEST(OutputFile, WritesEveryByteInOrder) {
  const TemporaryDirectory directory;
  const std::string path = directory / "new.log";
  std::string expected;
  {
    OutputFile file(RealFileSystem().CreateSink(path, CreateMode::kWrite), path);
    for (int i = 0; i < 100000; ++i) {
      const std::string part = std::to_string(i);
      file.Write({part, "\n"});
      expected += part + "\n";
    }
    const std::string large(3 << 20, 'x');
    file.Write(large);
    file.Write("end");
    expected += large + "end";
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(file.Error(), "");
  }
  EXPECT_EQ(testing::ReadDiskFile(path), expected);
}

TEST(OutputFile, TellsOfAFullDevice) {
  auto sink = RealFileSystem().CreateSink("/dev/full", CreateMode::kWrite);
  ASSERT_TRUE(sink);
  OutputFile file(std::move(sink), "/dev/full");
  file.Write("a byte");
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(file.Error(), "No space left on device");
}

TEST(OutputFile, KeepsTheFirstFailureAndWritesNothingAfterIt) {
  MemoryFiles files;
  files.room["a.log"] = 10;
  OutputFile file(files.CreateSink("a.log", CreateMode::kWrite), "a.log");
  file.Write(std::string(1 << 20, 'x'));
  file.Write(std::string(1 << 20, 'y'));
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(files.files["a.log"], std::string(10, 'x'));
}

TEST(OutputFile, TellsOfAFailingClose) {
  MemoryFiles files;
  files.close_fails.insert("a.log");
  OutputFile file(files.CreateSink("a.log", CreateMode::kWrite), "a.log");
  file.Write("x");
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(file.Error(), "Input/output error");
}

TEST(CreateOutput, RefusesAFileThatIsAPickedInput) {
  const TemporaryDirectory directory;
  const std::string first = directory / "first.bib";
  const std::string second = directory / "second.bib";
  testing::WriteDiskFile(first, "one");
  testing::WriteDiskFile(second, "two");
  std::filesystem::create_symlink(first, directory / "link");
  std::filesystem::create_hard_link(second, directory / "hard");
  MemoryFiles unused;
  RunContext run = MemoryRun(unused, first, second);
  RunContext on_disk{.first_path = run.first_path,
                     .second_path = run.second_path,
                     .settings = run.settings,
                     .files = RealFileSystem(),
                     .reporter = run.reporter,
                     .styles = run.styles,
                     .program_directory = run.program_directory};
  for (const auto* name : {"first.bib", "second.bib", "link", "hard"}) {
    EXPECT_FALSE(CreateOutput(on_disk, directory / name, CreateMode::kWrite)) << name;
  }
  EXPECT_EQ(testing::ReadDiskFile(first), "one");
  EXPECT_EQ(testing::ReadDiskFile(second), "two");
  EXPECT_TRUE(CreateOutput(on_disk, directory / "other", CreateMode::kWriteRead));
  EXPECT_FALSE(CreateOutput(on_disk, "", CreateMode::kWrite)) << "no path, no file";
}

TEST(CloseOutputs, PrintsEachFileThatDidNotArrive) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.room["a.log"] = 0;
  const RunContext run = MemoryRun(files, "a.bib");
  const auto log = CreateOutput(run, "a.log", CreateMode::kWrite);
  const auto library = CreateOutput(run, "b.bib", CreateMode::kWrite);
  log->Write("x");
  library->Write("y");
  EXPECT_FALSE(CloseOutputs(run, {log.get(), library.get()}));
  EXPECT_EQ(reporter.printed,
            testing::Printed("Could not write the file 'a.log': No space left on device"));
  EXPECT_EQ(files.files["b.bib"], "y") << "the others are closed all the same";
}

}  // namespace
}  // namespace tarvel
