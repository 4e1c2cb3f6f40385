// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "ops/prepare/tag_names.h"

namespace tarvel {

/// How a tag's lines fit into what operations read at once.
enum class LineFit {
  kOneLine,       // the usual
  kManyLines,     // the value is broken at blanks outside of inner braces
  kTangledLines,  // it is broken inside them too: a line does not close all braces that it opens
  kTooLong,       // a word is longer than a line that every operation reads whole
};

/// How the lines of a tag would fit. `name` is in lower case, and empty for a preamble.
LineFit FitOf(std::string_view name, std::string_view value);

/// Appends "  name = {value}," to the library, in as many lines as need be, and a line break. A
/// value is broken only where reading the next line loses nothing: in front of a printable ASCII
/// character, and not in front of what looks like a line of authors.
void AppendTag(std::string& library, const TagName& tag, std::string_view value);

/// Appends "@PREAMBLE{{text}}" and a line break, broken like a value.
void AppendPreamble(std::string& library, std::string_view text);

}  // namespace tarvel
