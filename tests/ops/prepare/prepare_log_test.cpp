// SPDX-License-Identifier: MIT
#include "ops/prepare/prepare_log.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvel {
namespace {

TEST(PrepareLog, GathersTheLinesOfAnEntryUnderItsKeyAndLine) {
  PrepareLog log("a\nb\nc\n", [](const PrepareWarning&) {});
  log.StartEntry("k", 2);
  log.Say({"one", " part"});
  log.Say({"two"});
  log.EndEntry();
  log.StartEntry("quiet", 4);
  log.EndEntry();
  log.SayText("left out", 4, "text");
  EXPECT_EQ(log.Text(), "Entry 'k', line 2:\n    one part\n    two\n\nLine 3: left out:\ntext\n\n");
}

TEST(PrepareLog, WarnsOfTheEntryThatWasStarted) {
  std::string reported;
  PrepareLog log("bytes", [&](const PrepareWarning& warning) {
    reported.append(warning.key).append("|").append(warning.text).append("\n");
    EXPECT_EQ(warning.kind, WarningKind::kMisreadKey);
    EXPECT_EQ(warning.offset, 3U);
  });
  log.StartEntry("k", 0);
  log.Warn(WarningKind::kMisreadKey, 3, "of the entry");
  log.EndEntry();
  log.Warn(WarningKind::kMisreadKey, 3, "of none");
  EXPECT_EQ(reported, "k|of the entry\n|of none\n");
}

TEST(PrepareLog, CountsTagsThatAreLeftOutAndWarnsOfThem) {
  std::string reported;
  PrepareLog log("abc", [&](const PrepareWarning& warning) {
    EXPECT_EQ(warning.kind, WarningKind::kLeftOut);
    reported.append(std::to_string(warning.offset)).append(" ").append(warning.text).append("\n");
  });
  log.LeaveOut(1, "note", "one reason");
  log.LeaveOut(2, "file", "another");
  EXPECT_EQ(log.LeftOut(), 2U);
  EXPECT_EQ(reported,
            "1 the tag 'note' was left out: one reason\n2 the tag 'file' was left out: another\n");
}

}  // namespace
}  // namespace tarvel
