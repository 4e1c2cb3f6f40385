// SPDX-License-Identifier: MIT
#include "app/reporter.h"

#include <gtest/gtest.h>

#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

TEST(GlobalReporter, IsTheOneInstalledLast) {
  testing::RecordingReporter first;
  {
    testing::RecordingReporter second;
    EXPECT_EQ(&GlobalReporter(), &second);
  }
  InstallReporter(first);
  EXPECT_EQ(&GlobalReporter(), &first);
}

TEST(GlobalReporter, TakesWhatTheFormsWithoutReporterSay) {
  testing::RecordingReporter reporter;
  EXPECT_EQ(PrintError("text"), 42);
  ReportError("on the terminal", "title", kReportOnTerminal);
  ReportError("in a box", "title", kReportInBox);
  ReportError("nowhere", "title", 1);
  ShowBox("message", "caption");
  EXPECT_EQ(reporter.printed, testing::Printed("text") + testing::Printed("on the terminal"));
  using Boxes = std::vector<testing::RecordingReporter::ShownBox>;
  EXPECT_EQ(reporter.boxes, (Boxes{{"in a box", "title"}, {"message", "caption"}}));
}

}  // namespace
}  // namespace tarvel
