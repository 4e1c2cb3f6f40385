// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string_view>

namespace tarvel {

/// How the program speaks to its user. The dialog shows boxes, the batch program prints them, the
/// tests record them.
class Reporter {
 public:
  virtual ~Reporter() = default;
  /// Prints on standard output, at once; returns the number of bytes printed.
  virtual int Print(std::string_view text) = 0;
  /// Shows a message box with an OK button and waits for it.
  virtual void Box(std::string_view message, std::string_view caption) = 0;
  /// Prints a warning on standard error: one line, given without its line break. It begins with a
  /// place in a file, as in "lit.bib:3: warning: ...", or, where there is none, with "warning: ".
  virtual void Warn(std::string_view line) = 0;
};

/// Speaks on the terminal: boxes and warnings go to standard error, so that standard output holds
/// exactly what an operation prints.
class TerminalReporter : public Reporter {
 public:
  /// `program` is the name that warnings begin with; it must outlive the reporter.
  explicit TerminalReporter(std::string_view program) : program_(program) {}
  int Print(std::string_view text) override;
  /// Prints "[CAPTION] MESSAGE" and a line break.
  void Box(std::string_view message, std::string_view caption) override;
  /// Prints the line, after "PROGRAM: " where it begins with "warning: ".
  void Warn(std::string_view line) override;

 private:
  std::string_view program_;
};

/// Writes the text on `stream` and flushes it.
void PrintOn(std::FILE* stream, std::string_view text);

/// Prints "Attention, an error occured!", the text and an empty line on standard output; returns
/// what printing returned. Operations report each of their failures this way, without a box.
int PrintError(Reporter& reporter, std::string_view text);

/// The modes of `ReportError`.
inline constexpr int kReportOnTerminal = 999999;
inline constexpr int kReportInBox = 999998;

/// Reports a failure on the terminal (the title is then not shown) or in a box. Any other mode
/// does nothing.
void ReportError(Reporter& reporter, std::string_view text, std::string_view title, int mode);

}  // namespace tarvel
