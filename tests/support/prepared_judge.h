// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "ops/prepare/prepare.h"

namespace tarvel::testing {

/// Prepares a library and holds the result to what is promised, by `ReadPlainBib` and by reading
/// the new library as the operations do, line by line:
///   - every value, string, preamble and text outside entries stands in the library or in the log;
///   - a tag has the value that BibTeX reads, but for the groups that guard it, and nothing is
///   added;
///   - the operations read of each entry what stands in its tags, unless a warning says otherwise;
///   - every word of the library, read or not, stands in the new one or in the log;
///   - no line is longer than the shortest limit, unless a warning says so;
///   - preparing the new library changes nothing.
/// Gives an empty text, or what was broken. What stands after the first place that breaks BibTeX's
/// grammar is held to the last four only.
std::string JudgePrepared(std::string_view library, const PrepareOptions& options);

/// Reads a library as Compare and as Text do and holds the values to those that BibTeX reads, white
/// space and braces aside. Gives an empty text, or what they read wrongly. Also empty when the
/// library breaks BibTeX's grammar. For libraries of which nothing is warned.
std::string JudgeReading(std::string_view library);

}  // namespace tarvel::testing
