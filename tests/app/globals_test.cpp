// SPDX-License-Identifier: MIT
#include "app/globals.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvel {
namespace {

TEST(PathBuffer, Takes1000Bytes) {
  PathBuffer buffer("first file");
  EXPECT_TRUE(buffer.Empty());
  buffer.Set(std::string(1000, 'x'));
  EXPECT_EQ(buffer.Get(), std::string(1000, 'x'));
  buffer.Set("");
  EXPECT_TRUE(buffer.Empty());
}

TEST(PathBufferDeathTest, EndsTheProcessOnALongerPath) {
  PathBuffer buffer("first file");
  EXPECT_EXIT(buffer.Set(std::string(1001, 'x')), ::testing::ExitedWithCode(1),
              "the path of the first file is 1001 bytes long; 1000 are the most\n");
}

TEST(Globals, StartEmptyAndNameThisSystem) {
  // Other tests of this process put back what they change.
  EXPECT_TRUE(FirstFilePath.Empty());
  EXPECT_TRUE(SecondFilePath.Empty());
  EXPECT_EQ(GlobalWarnings, nullptr);
  EXPECT_EQ(GlobalWarningOutputs.file, nullptr);
  EXPECT_EQ(GlobalWarningOutputs.key_map, nullptr);
  EXPECT_FALSE(GlobalWarningOutputs.quiet);
  EXPECT_EQ(HostSystemCode, 5555);
}

}  // namespace
}  // namespace tarvel
