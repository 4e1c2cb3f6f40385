// SPDX-License-Identifier: MIT
#include "tests/support/recording_reporter.h"

namespace tarvel::testing {

namespace {

class SilentReporter final : public Reporter {
 public:
  int Print(std::string_view text) override { return static_cast<int>(text.size()); }
  void Box(std::string_view, std::string_view) override {}
  void Warn(std::string_view) override {}
};

}  // namespace

RecordingReporter::~RecordingReporter() {
  static SilentReporter silent;
  InstallReporter(silent);
}

std::string Printed(std::string_view error) {
  return std::string("Attention, an error occured!\nError: ").append(error).append("\n\n");
}

}  // namespace tarvel::testing
