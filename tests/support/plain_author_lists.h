// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tarvel::testing {

/// A list of authors as Clean authors rearranges it, and which of its seven flags is set, 0 for
/// none. Shares no code with the program: whole copies of strings, one byte after the other.
std::string PlainNewAuthorList(const std::string& old_list, int& flag);

}  // namespace tarvel::testing
