// SPDX-License-Identifier: MIT
#pragma once

#include "core/reports.h"

namespace tarvel {

/// How the dialog speaks: boxes of the toolkit over the main window, and the terminal. What goes to
/// the terminal is also kept for the window "Messages".
class WxReporter final : public TerminalReporter {
 public:
  WxReporter() : TerminalReporter("tarvel") {}
  int Print(std::string_view text) override;
  void Box(std::string_view message, std::string_view caption) override;
  void Warn(std::string_view text) override;
};

}  // namespace tarvel
