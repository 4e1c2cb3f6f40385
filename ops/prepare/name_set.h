// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tarvel {

/// The names of an entry's tags, in lower case. Few names are compared one by one, which is faster;
/// for an entry of very many there is a table.
class NameSet {
 public:
  /// Puts a name in; false when it was there already. The name's bytes must outlive the set.
  bool Insert(std::string_view name) {
    if (names_.size() < kFew) {
      const std::uint64_t bit = BitOf(name);
      const bool may_be_there = (seen_ & bit) != 0;
      if (may_be_there && std::find(names_.begin(), names_.end(), name) != names_.end()) {
        return false;
      }
      seen_ |= bit;
      names_.push_back(name);
      return true;
    }
    if (table_.empty()) table_.insert(names_.begin(), names_.end());
    return table_.insert(name).second;
  }
  void Clear() {
    names_.clear();
    table_.clear();
    seen_ = 0;
  }

 private:
  static constexpr std::size_t kFew = 32;

  /// A bit that names share only by chance.
  static std::uint64_t BitOf(std::string_view name) {
    const auto first = static_cast<unsigned char>(name.empty() ? '\0' : name.front());
    const auto last = static_cast<unsigned char>(name.empty() ? '\0' : name.back());
    return std::uint64_t{1} << ((first * 5U + last * 3U + name.size()) % 64U);
  }

  std::vector<std::string_view> names_;
  std::uint64_t seen_ = 0;                      // the bits of `names_`
  std::unordered_set<std::string_view> table_;  // empty while there are few
};

}  // namespace tarvel
