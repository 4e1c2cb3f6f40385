// SPDX-License-Identifier: MIT
#include "core/reports.h"

#include <string>

namespace tarvel {

int TerminalReporter::Print(std::string_view text) {
  PrintOn(stdout, text);
  return static_cast<int>(text.size());
}

void TerminalReporter::Box(std::string_view message, std::string_view caption) {
  PrintOn(stderr, std::string("[").append(caption).append("] ").append(message).append("\n"));
}

void TerminalReporter::Warn(std::string_view line) {
  std::string whole;
  if (line.starts_with("warning: ")) whole.append(program_).append(": ");
  PrintOn(stderr, whole.append(line).append("\n"));
}

void PrintOn(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

int PrintError(Reporter& reporter, std::string_view text) {
  std::string message = "Attention, an error occured!\nError: ";  // sic
  return reporter.Print(message.append(text).append("\n\n"));
}

void ReportError(Reporter& reporter, std::string_view text, std::string_view title, int mode) {
  if (mode == kReportOnTerminal) PrintError(reporter, text);
  if (mode == kReportInBox) reporter.Box(text, title);
}

}  // namespace tarvel
