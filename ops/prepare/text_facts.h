// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "ops/prepare/tag_words.h"

namespace tarvel {

/// The properties of a text that decide how it is written and whether an operation misreads it.
/// Found in one pass, as most texts need no other.
struct TextFacts {
  WordSet words = 0;         // that stand in it, letter case ignored
  bool is_plain = true;      // single blanks are its only white space
  bool has_brace = false;    // a "{"
  bool has_at = false;       // an "@"
  bool has_equals = false;   // a "="
  bool may_journal = false;  // a "j" that may begin a "journal" with blanks in it
};

TextFacts FactsOf(std::string_view text);

/// Looks for the delimiter that closes the text from `from` to before `limit`: '}' or '"', outside
/// of any braces within. Gives its offset, that of a "}" that closes none of these, or `limit`; and
/// the facts of the text before it.
std::size_t FindDelimiter(std::string_view bytes, std::size_t from, std::size_t limit,
                          char delimiter, TextFacts& facts);
/// The same without the facts, for which it takes less time.
std::size_t FindDelimiter(std::string_view bytes, std::size_t from, std::size_t limit,
                          char delimiter);

/// The first white space from `from` on that is not a single blank, or the size of the text. Takes
/// a blank in front of other white space for a single one.
std::size_t FindOddWhite(std::string_view text, std::size_t from);

}  // namespace tarvel
