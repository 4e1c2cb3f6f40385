// SPDX-License-Identifier: MIT
#include "core/file_places.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <filesystem>

#include "tests/support/disk_files.h"

namespace tarvel {
namespace {

TEST(AreOneFile, FollowsLinksAlsoToWhatIsNotThereYet) {
  const testing::TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "file", "x");
  ASSERT_EQ(link((directory / "file").c_str(), (directory / "hard").c_str()), 0);
  ASSERT_EQ(symlink("file", (directory / "soft").c_str()), 0);
  ASSERT_EQ(symlink("later", (directory / "dangling").c_str()), 0);
  EXPECT_TRUE(AreOneFile(directory / "file", directory / "hard"));
  EXPECT_TRUE(AreOneFile(directory / "file", directory / "soft"));
  EXPECT_TRUE(AreOneFile(directory / "dangling", directory / "later"));
  EXPECT_TRUE(AreOneFile(directory / "./new", directory / "new"));
  EXPECT_FALSE(AreOneFile(directory / "new", directory / "other"));
  EXPECT_FALSE(AreOneFile(directory / "file", directory / "other"));
  EXPECT_FALSE(AreOneFile("/dev/null", "/dev/null")) << "into which any number may write";
}

TEST(DirectoryOfFile, EndsWithTheLastSlash) {
  EXPECT_EQ(DirectoryOfFile("a/b/c"), "a/b/");
  EXPECT_EQ(DirectoryOfFile("/c"), "/");
  EXPECT_EQ(DirectoryOfFile("c"), ".");
}

TEST(AreOneFile, EndsForLinksThatLeadToEachOtherAndForNoDirectory) {
  const testing::TemporaryDirectory directory;
  std::filesystem::create_symlink("two", directory / "one");
  std::filesystem::create_symlink("one", directory / "two");
  EXPECT_TRUE(AreOneFile(directory / "one", directory / "one"));
  EXPECT_FALSE(AreOneFile(directory / "one", directory / "three"));
  EXPECT_TRUE(AreOneFile("/nowhere/at/all", "/nowhere/./at/all"));
  EXPECT_FALSE(AreOneFile("/nowhere/at/all", "/nowhere/at/none"));
  EXPECT_FALSE(AreOneFile("/dev/null", "/dev/null")) << "a device is nobody's file";
}

}  // namespace
}  // namespace tarvel
