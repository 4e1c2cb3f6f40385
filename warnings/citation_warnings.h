// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "warnings/warnings.h"

namespace tarvel {

/// Whether a command with this name, without its "\", looks as if it cites: the name contains
/// "cite" or ends with "cquote", and it is none that is known to cite nothing.
bool LooksLikeCitation(std::string_view name);

/// Looks through a LaTeX document, in the lines that `ScanCitations` reads, and reports citations
/// that it skips, takes out of a comment or reads in part.
void ReportCitations(std::string_view document, FileWarnings& warnings);

/// Reports what is odd about cited keys: blanks in them. `offsets` are those of their lines.
void ReportKeys(const std::vector<std::string>& keys, const std::vector<std::size_t>& offsets,
                FileWarnings& warnings);

}  // namespace tarvel
