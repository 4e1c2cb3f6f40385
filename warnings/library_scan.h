// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "warnings/scan_rules.h"
#include "warnings/warnings.h"

namespace tarvel {

/// Looks through the bytes of a library and reports what will be read otherwise than its author
/// meant, and how many values there are. One pass in linear time. Does nothing when `warnings` are
/// not wanted.
void ScanLibrary(std::string_view bytes, const ScanRules& rules, FileWarnings& warnings);

/// Passes the numbers on to the warnings, if a tag that is read has lost its value.
void ReportValues(const ValueCounts& counts, FileWarnings& warnings);

/// A part of a library, from the start of a line to that of another or to the end; offsets.
struct LibraryRange {
  std::size_t begin;
  std::size_t end;
};

/// The same for a range of the library, as if nothing stood before it; returns how many values it
/// has. Offsets count from the start of the library.
ValueCounts ScanRange(std::string_view bytes, const LibraryRange& range, const ScanRules& rules,
                      FileWarnings& warnings);

}  // namespace tarvel
