// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tarvel {

/// Whether the word, in capitals, is one of the 24 types of entries that are known.
bool IsKnownType(std::string_view word);

inline constexpr std::size_t kLongestType = 17;
/// Room for a known type, and for so many zeros behind it that it is compared in whole words.
using TypeWord = std::array<char, 24>;
/// The type of the entry that begins with `head`, in capitals, which are put into `word`; empty
/// when the text begins with no entry of a known type.
std::string_view TakeKnownType(std::string_view head, TypeWord& word);

/// How far the text of an entry goes, and what can be told of it in passing.
struct EntryText {
  std::size_t size;
  /// Whether it is an entry of a known type in the usual form, after which nothing is open: of such
  /// an entry there is nothing to tell.
  bool is_usual;
};

/// Measures the entry at the start of `text`, which is not empty: up to the next "@" behind the
/// first byte, or to the end. One pass.
EntryText MeasureEntry(std::string_view text);

}  // namespace tarvel
