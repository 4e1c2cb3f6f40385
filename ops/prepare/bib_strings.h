// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/keyed_hash.h"

namespace tarvel {

/// The strings of a library: what its "@string" commands define, and the twelve months that BibTeX
/// styles define. Names are the same in any letter case. A name may be defined again; what stands
/// after that in the library gets the new text.
class BibStrings {
 public:
  BibStrings();

  /// Defines a string; `offset` is the offset of its command, from which on it is known.
  void Define(std::string_view name, std::string_view text, std::size_t offset);
  /// The text of a string at an offset of the library; null when it is not defined there.
  const std::string* Find(std::string_view name, std::size_t offset) const;

 private:
  struct Definition {
    std::size_t offset;
    std::string text;
  };

  std::unordered_map<std::string, std::vector<Definition>, KeyedStringHash>
      definitions_;  // by name in lower case
};

}  // namespace tarvel
