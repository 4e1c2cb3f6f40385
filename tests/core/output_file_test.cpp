// SPDX-License-Identifier: MIT
#include "core/output_file.h"

#include <gtest/gtest.h>

#include <string>

#include "core/file_system.h"
#include "tests/support/disk_files.h"
#include "tests/support/memory_files.h"

namespace tarvel {
namespace {

using testing::MemoryFiles;
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
    EXPECT_EQ(file.Written(), expected.size());
    const std::string large(3 << 20, 'x');
    file.Write(large);
    file.Write("end");
    expected += large + "end";
    EXPECT_EQ(file.Written(), expected.size());
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(file.Written(), expected.size());
    EXPECT_EQ(file.Error(), "");
  }
  EXPECT_EQ(testing::ReadDiskFile(path), expected);
}

TEST(OutputFile, ReportsAFullDevice) {
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

TEST(OutputFile, ReportsAFailingClose) {
  MemoryFiles files;
  files.close_fails.insert("a.log");
  OutputFile file(files.CreateSink("a.log", CreateMode::kWrite), "a.log");
  file.Write("x");
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(file.Error(), "Input/output error");
}

TEST(OutputFile, WritesNothingAfterALargeWriteThatFailed) {
  MemoryFiles files;
  files.most_room = 10;
  OutputFile file(files.CreateSink("a.log", CreateMode::kWrite), "a.log");
  const std::string large(3 << 20, 'x');
  file.Write(large);
  file.Write(large);
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(files.files["a.log"], std::string(10, 'x'));
}

}  // namespace
}  // namespace tarvel
