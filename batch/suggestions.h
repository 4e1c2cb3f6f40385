// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tarvel {

/// The name that `word` probably was meant to be: the one that takes the fewest changes of a byte
/// (one left out, added or replaced, or two swapped), if these are at most a third of its length,
/// or the only one that begins with `word`. Empty when there is none.
std::string_view NearestName(std::string_view word, std::span<const std::string_view> names);

/// "; did you mean 'NAME'?" for the nearest name; empty when there is none.
std::string Suggestion(std::string_view word, std::span<const std::string_view> names);

}  // namespace tarvel
