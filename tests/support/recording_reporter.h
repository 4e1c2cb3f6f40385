// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/reporter.h"

namespace tarvel::testing {

/// Records what is said while it lives, and is then uninstalled.
class RecordingReporter final : public Reporter {
 public:
  struct ShownBox {
    std::string message;
    std::string caption;
    bool operator==(const ShownBox&) const = default;
  };

  RecordingReporter() { InstallReporter(*this); }
  RecordingReporter(const RecordingReporter&) = delete;
  RecordingReporter& operator=(const RecordingReporter&) = delete;
  ~RecordingReporter() override;

  int Print(std::string_view text) override {
    printed += text;
    return static_cast<int>(text.size());
  }
  void Box(std::string_view message, std::string_view caption) override {
    boxes.push_back({std::string(message), std::string(caption)});
  }
  void Warn(std::string_view text) override { warnings.emplace_back(text); }

  std::string printed;
  std::vector<ShownBox> boxes;
  std::vector<std::string> warnings;
};

/// What `PrintError` prints for a text.
std::string Printed(std::string_view error);

}  // namespace tarvel::testing
