// SPDX-License-Identifier: MIT
#include "core/reports.h"

#include <gtest/gtest.h>

#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

TEST(PrintError, PrintsOnStandardOutputOnly) {
  testing::RecordingReporter reporter;
  EXPECT_EQ(PrintError(reporter, "Function X()_1 => %s 100%"), 63);
  EXPECT_EQ(reporter.printed, "Attention, an error occured!\nError: Function X()_1 => %s 100%\n\n");
  EXPECT_TRUE(reporter.boxes.empty());
}

TEST(ReportError, ObeysItsModes) {
  testing::RecordingReporter reporter;
  ReportError(reporter, "text", "title", 999999);
  EXPECT_EQ(reporter.printed, "Attention, an error occured!\nError: text\n\n");
  EXPECT_TRUE(reporter.boxes.empty()) << "the terminal's mode shows no box";
  ReportError(reporter, "text", "title", 999998);
  ASSERT_EQ(reporter.boxes.size(), 1U);
  EXPECT_EQ(reporter.boxes[0].message, "text");
  EXPECT_EQ(reporter.boxes[0].caption, "title");
  ReportError(reporter, "text", "title", 999997);
  ReportError(reporter, "text", "title", 0);
  EXPECT_EQ(reporter.boxes.size(), 1U) << "any other mode does nothing";
  EXPECT_EQ(reporter.printed, "Attention, an error occured!\nError: text\n\n");
}

TEST(TerminalReporter, KeepsStandardOutputForWhatIsPrinted) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  TerminalReporter reporter("program");
  EXPECT_EQ(reporter.Print(std::string_view("a%s\0b", 5)), 5);
  reporter.Box("message %d\n", "caption");
  reporter.Warn("warning: text");
  reporter.Warn("a.bib:3: warning: text");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), std::string("a%s\0b", 5));
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "[caption] message %d\n\nprogram: warning: text\na.bib:3: warning: text\n");
}

}  // namespace
}  // namespace tarvel
