// SPDX-License-Identifier: MIT
#include "core/reports.h"

#include <cstdio>
#include <string>

namespace tarvel {

namespace {

/// What speaks until a program installs its own: the terminal.
class TerminalReporter final : public Reporter {
 public:
  int Print(std::string_view text) override {
    const std::size_t size = std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    return static_cast<int>(size);
  }
  void Box(std::string_view message, std::string_view caption) override {
    Warn(std::string("[").append(caption).append("] ").append(message));
  }
  void Warn(std::string_view text) override {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fputc('\n', stderr);
  }
};

Reporter*& Installed() {
  static TerminalReporter terminal;
  static Reporter* installed = &terminal;
  return installed;
}

}  // namespace

void InstallReporter(Reporter& reporter) { Installed() = &reporter; }

int Print(std::string_view text) { return Installed()->Print(text); }

void ShowBox(std::string_view message, std::string_view caption) {
  Installed()->Box(message, caption);
}

void Warn(std::string_view text) { Installed()->Warn(text); }

int PrintError(std::string_view text) {
  std::string message = "Attention, an error occured!\nError: ";  // sic
  return Print(message.append(text).append("\n\n"));
}

void ReportError(std::string_view text, std::string_view title, int mode) {
  if (mode == kReportOnTerminal) PrintError(text);
  if (mode == kReportInBox) ShowBox(text, title);
}

}  // namespace tarvel
