// SPDX-License-Identifier: MIT
#pragma once

#include "core/reports.h"

namespace tarvel {

/// How the dialog speaks: boxes of the toolkit, and the terminal.
class WxReporter final : public TerminalReporter {
 public:
  WxReporter() : TerminalReporter("tarvel") {}
  /// The caption is looked up in the toolkit's translations; without one it is shown as it is.
  void Box(std::string_view message, std::string_view caption) override;
};

}  // namespace tarvel
