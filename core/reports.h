// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tarvel {

/// How the program speaks to its user. Each program installs its own: the dialog shows boxes, the
/// batch program prints them, the tests record them.
class Reporter {
 public:
  virtual ~Reporter() = default;
  /// Prints on standard output, at once; gives the number of bytes printed, or a negative number.
  virtual int Print(std::string_view text) = 0;
  /// Shows a message box with an OK button and waits for it.
  virtual void Box(std::string_view message, std::string_view caption) = 0;
  /// Tells on standard error what a run passed over; one line, without its line break.
  virtual void Warn(std::string_view text) = 0;
};

/// Makes `reporter` the one that is spoken through. It must outlive its use.
void InstallReporter(Reporter& reporter);

/// Prints on standard output through the installed reporter.
int Print(std::string_view text);
/// Shows a message box through the installed reporter.
void ShowBox(std::string_view message, std::string_view caption);
/// Tells of something that a run passed over, through the installed reporter.
void Warn(std::string_view text);

/// Prints "Attention, an error occured!", the text and an empty line on standard output; gives what
/// printing gave. Every failure of an operation is told this way; no box comes with it.
int PrintError(std::string_view text);

/// The modes of `ReportError`.
inline constexpr int kReportOnTerminal = 999999;
inline constexpr int kReportInBox = 999998;

/// Tells of a failure on the terminal (the title is then not shown) or in a box. Any other mode
/// does nothing.
void ReportError(std::string_view text, std::string_view title, int mode);

}  // namespace tarvel
