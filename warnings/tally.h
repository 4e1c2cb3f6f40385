// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/keyed_hash.h"

namespace tarvel {

/// How often something occurs in a file, and where first.
struct Occurrences {
  std::size_t count = 0;
  std::size_t first = 0;  // an offset

  void Add(std::size_t offset) {
    if (count++ == 0) first = offset;
  }
};

/// The occurrences of many names.
class Tally {
 public:
  void Add(std::string_view name, std::size_t offset);
  /// All names, the most frequent first, and of equally frequent ones the first in the file. The
  /// views live as long as the tally.
  std::vector<std::pair<std::string_view, Occurrences>> ByCount() const;

 private:
  std::unordered_map<std::string, Occurrences, KeyedStringHash, std::equal_to<>> names_;
};

}  // namespace tarvel
