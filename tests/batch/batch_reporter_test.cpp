// SPDX-License-Identifier: MIT
#include "batch/batch_reporter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "app/texts.h"

namespace tarvel {
namespace {

using std::chrono::milliseconds;

class Progress : public ::testing::Test {
 protected:
  Progress() : stream_(open_memstream(&bytes_, &size_)) {}
  ~Progress() override {
    std::fclose(stream_);
    std::free(bytes_);
  }
  std::string Written() {
    std::fflush(stream_);
    return {bytes_, size_};
  }
  ProgressLine::Clock Clock() {
    return [this] { return now_; };
  }

  std::chrono::steady_clock::time_point now_{};
  char* bytes_ = nullptr;
  std::size_t size_ = 0;
  std::FILE* stream_;
};

TEST_F(Progress, IsShownAfterTwoSecondsAndRemoved) {
  {
    ProgressLine line(stream_, Clock());
    line.OnRead(10, 100);
    now_ += milliseconds(1999);
    line.OnRead(20, 100);
    line.Remove();
    EXPECT_EQ(Written(), "");
    now_ += milliseconds(1);
    line.OnRead(30, 100);
    EXPECT_EQ(Written(), "\rtarvel-batch:  30 %");
    now_ += milliseconds(249);
    line.OnRead(40, 100);
    now_ += milliseconds(1);
    line.OnRead(30, 100);
    EXPECT_EQ(Written(), "\rtarvel-batch:  30 %") << "not yet, and nothing new";
    now_ += milliseconds(250);
    line.OnRead(100, 100);
    EXPECT_EQ(Written(), "\rtarvel-batch:  30 %\rtarvel-batch: 100 %");
  }
  EXPECT_EQ(Written(), "\rtarvel-batch:  30 %\rtarvel-batch: 100 %\r                    \r");
}

TEST_F(Progress, IsNotShownWithoutAStream) {
  ProgressLine line(nullptr, Clock());
  now_ += milliseconds(9000);
  line.OnRead(30, 100);
  line.Remove();
}

TEST_F(Progress, GivesWayToWhatIsPrinted) {
  ProgressLine line(stream_, Clock());
  BatchReporter reporter(false, line);
  now_ += milliseconds(2000);
  line.OnRead(1, 2);
  ::testing::internal::CaptureStderr();
  reporter.Warn("warning: w");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "tarvel-batch: warning: w\n");
  EXPECT_EQ(Written(), "\rtarvel-batch:  50 %\r                    \r");
  now_ += milliseconds(2000);
  line.OnRead(1, 2);
  EXPECT_TRUE(Written().ends_with("\rtarvel-batch:  50 %")) << "and comes back";
}

TEST_F(Progress, FollowsTheLinesOfAFile) {
  ProgressLine line(stream_, [this] { return now_ += milliseconds(3000); });
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "0123456789\n";
  LineStream lines{std::string_view(text)};
  lines.Observe(line);
  while (lines.ReadLine(1000)) {
  }
  EXPECT_EQ(Written(),
            "\rtarvel-batch:   0 %\rtarvel-batch:  23 %\rtarvel-batch:  47 %\rtarvel-batch:  71 %"
            "\rtarvel-batch:  95 %");
}

TEST(BatchReporter, IsQuietOfAllButFailures) {
  ProgressLine line(nullptr);
  for (const bool quiet : {false, true}) {
    BatchReporter reporter(quiet, line);
    for (const std::string_view caption :
         {NoteTitle, DoneText, std::string_view("No support !"), std::string_view("Correct files?"),
          std::string_view("File conversion")}) {
      ::testing::internal::CaptureStderr();
      reporter.Box("m", caption);
      EXPECT_EQ(::testing::internal::GetCapturedStderr().empty(), quiet) << caption;
    }
    ::testing::internal::CaptureStderr();
    reporter.Box("m", "BibTeX file ?");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "[BibTeX file ?] m\n");
  }
}

}  // namespace
}  // namespace tarvel
