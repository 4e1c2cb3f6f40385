// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "core/line_stream.h"

// The quirky primitives once more, byte by byte as their rules read in plain prose: the judges of
// the fast ones.

namespace tarvel::testing {

bool PlainIsKnownEntry(std::string& line);
bool PlainReplaceString(std::string& line, const std::string& pattern,
                        const std::string& replacement);
/// The value behind the first "{" of `line`, which becomes the joined text.
bool PlainReadFieldValue(std::string& line, LineStream& stream, std::string& value);

}  // namespace tarvel::testing
