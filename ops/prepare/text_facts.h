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

/// What a scan for the end of a delimited text found.
struct DelimitedText {
  std::size_t end = 0;  // of the closing delimiter, or where the scan broke off
  bool is_closed = false;
  TextFacts facts;
};

/// Looks for the delimiter that closes the text from `from` to before `limit`: '}' or '"', outside
/// of any braces within. Stops at a "}" that closes none of these.
DelimitedText FindDelimiter(std::string_view bytes, std::size_t from, std::size_t limit,
                            char delimiter);

}  // namespace tarvel
