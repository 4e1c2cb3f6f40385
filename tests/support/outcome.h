// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "core/file_names.h"
#include "ops/run_context.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_reporter.h"

namespace tarvel::testing {

// The headers of new files with the line break after them, written down a second time.

inline constexpr std::string_view kLogHeader =
    "#\n\nThis log file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n\n";
inline constexpr std::string_view kBibHeader =
    "#\n\nThis BibTeX file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n\n";
inline constexpr std::string_view kTextHeader =
    "#\n\nThis text file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n\n";
inline constexpr std::string_view kTexHeader =
    "#\n\nThis TeX file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n\n";

/// `text` without its beginning, which must be `start`.
std::string WithoutStart(std::string_view text, std::string_view start);

/// An operation that makes a new library and a log of one library.
struct Cleaning {
  int (*run)(const RunContext& run);
  Output library;
  Output log;
};

/// What such an operation leaves after.
struct Outcome {
  int result = 0;
  std::string library;  // without its header
  std::string log;      // without its header
  std::string printed;
  std::vector<RecordingReporter::ShownBox> boxes;
};

/// Runs the operation on `input`, the picked file at `path`, beside `files`. The input must stay as
/// it is.
Outcome OutcomeOf(const Cleaning& operation, std::string_view input, const Settings& settings = {},
                  MemoryFiles files = {}, const std::string& path = "a.bib");

}  // namespace tarvel::testing
