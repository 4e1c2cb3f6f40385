// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "core/reports.h"

namespace tarvel {

/// Makes `reporter`, which must outlive its use, the one through which this process speaks.
void InstallReporter(Reporter& reporter);
/// The installed reporter; the terminal until one is installed.
Reporter& GlobalReporter();

// The same as the functions of core/reports.h, through the installed reporter.

int PrintError(std::string_view text);
void ReportError(std::string_view text, std::string_view title, int mode);
void ShowBox(std::string_view message, std::string_view caption);

}  // namespace tarvel
