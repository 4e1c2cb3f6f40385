// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tarvel {

/// The name that `word` probably was meant to be: the only one that begins with it, or else the one
/// that takes the fewest changes of a byte (one left out, added or replaced, or two swapped), if
/// these are at most a third of its length. Empty when there is none.
std::string_view NearestName(std::string_view word, std::span<const std::string_view> names);

/// "; did you mean 'NAME'?" for the nearest name; where there is none "; one of: ..." with those
/// that begin with the word, or with all if these are few; else empty.
std::string Suggestion(std::string_view word, std::span<const std::string_view> names);

}  // namespace tarvel
