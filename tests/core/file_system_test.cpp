// SPDX-License-Identifier: MIT
#include "core/file_system.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "app/process.h"
#include "tests/support/disk_files.h"

namespace tarvel {
namespace {

using testing::TemporaryDirectory;

// Mapping is switched on for a whole program: these tests do it in processes of their own.
constexpr std::size_t kLarge = std::size_t{5} << 20;

/// A file of numbered lines, as long as is asked for; the last one does not end.
std::string Lines(std::size_t size) {
  std::string text;
  text.reserve(size + 16);
  for (int number = 0; text.size() < size; ++number) text += std::to_string(number) + "\n";
  text.resize(size);
  return text;
}

void ReadMapped(const std::string& path, const std::string& bytes) {
  const auto source = RealFileSystem(LargeFiles::kMapped).OpenSource(path, ReadMode::kRead);
  if (source->Map().empty()) std::exit(1);
  auto lines = RealFileSystem(LargeFiles::kMapped).OpenLines(path, ReadMode::kUpdate);
  std::string read;
  while (const auto line = lines->ReadLine(limits::kShortLine)) read += *line;
  lines->SetPosition(3);
  const bool goes_back = lines->ReadLine(4) == std::string_view(bytes).substr(3, 1);
  std::exit(read == bytes && lines->Bytes() == bytes && !lines->ReadFailed() && goes_back ? 0 : 1);
}

TEST(MappedFilesDeathTest, AreReadAsOthersAre) {
  const TemporaryDirectory directory;
  const std::string bytes = Lines(kLarge);
  testing::WriteDiskFile(directory / "large", bytes);
  EXPECT_EXIT(ReadMapped(directory / "large", bytes), ::testing::ExitedWithCode(0), "");
}

void LookForMapped(const std::string& path) {
  std::exit(
      RealFileSystem(LargeFiles::kMapped).OpenSource(path, ReadMode::kRead)->Map().empty() ? 0 : 1);
}

TEST(MappedFilesDeathTest, AreNoSmallOnes) {
  const TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "small", Lines((std::size_t{4} << 20) - 1));
  EXPECT_EXIT(LookForMapped(directory / "small"), ::testing::ExitedWithCode(0), "");
}

TEST(MappedFilesDeathTest, AreNoneUnlessTheProgramAsks) {
  const TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "large", Lines(kLarge));
  EXPECT_TRUE(RealFileSystem().OpenSource(directory / "large", ReadMode::kRead)->Map().empty());
}

void ReadWhatIsCutShort(const std::string& path) {
  ReportLostFiles();
  auto lines = RealFileSystem(LargeFiles::kMapped).OpenLines(path, ReadMode::kRead);
  std::filesystem::resize_file(path, 0);
  while (lines->ReadLine(limits::kShortLine)) {
  }
  std::exit(0);
}

TEST(MappedFilesDeathTest, EndTheProgramWithAMessageWhenTheyAreCutShort) {
  const TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "large", Lines(kLarge));
  EXPECT_EXIT(ReadWhatIsCutShort(directory / "large"), ::testing::ExitedWithCode(1),
              "A file was changed by another program, or could not be read");
}

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

TEST(RealFileSystem, ReadsFilesThatDoNotTellTheirSize) {
  const auto lines = RealFileSystem().OpenLines("/proc/self/status", ReadMode::kRead);
  ASSERT_TRUE(lines);
  EXPECT_NE(lines->Bytes().find("Name:"), std::string_view::npos);
}

}  // namespace
}  // namespace tarvel
