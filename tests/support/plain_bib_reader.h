// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvel::testing {

/// An entry as BibTeX reads it.
struct PlainBibEntry {
  std::string type;  // in lower case
  std::string key;
  std::vector<std::pair<std::string, std::string>> tags;  // names in lower case, all of them

  /// The first tag of the name; empty when there is none.
  std::string Value(std::string_view name) const;
  bool Holds(std::string_view name) const;
};

struct PlainBibLibrary {
  std::vector<PlainBibEntry> entries;
  std::vector<std::string> preambles;
  std::vector<std::string> strings;  // their texts
  std::string outside;               // what stands around all of these, white space left out
  bool is_whole = true;              // false: it breaks the grammar after the last of these
};

/// Reads a library by the grammar of BibTeX's manual: byte after byte, every text a
/// copy, up to the first command that breaks the grammar. The judge of the reader that is fast. The
/// name of an undefined string is its text.
PlainBibLibrary ReadPlainBib(std::string_view bytes);

}  // namespace tarvel::testing
