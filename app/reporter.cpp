// SPDX-License-Identifier: MIT
#include "app/reporter.h"

namespace tarvel {

namespace {

Reporter*& Installed() {
  static TerminalReporter terminal("tarvel");
  static Reporter* installed = &terminal;
  return installed;
}

}  // namespace

void InstallReporter(Reporter& reporter) { Installed() = &reporter; }

Reporter& GlobalReporter() { return *Installed(); }

int PrintError(std::string_view text) { return PrintError(GlobalReporter(), text); }

void ReportError(std::string_view text, std::string_view title, int mode) {
  ReportError(GlobalReporter(), text, title, mode);
}

void ShowBox(std::string_view message, std::string_view caption) {
  GlobalReporter().Box(message, caption);
}

}  // namespace tarvel
