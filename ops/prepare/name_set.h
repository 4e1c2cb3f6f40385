// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
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
      if (std::find(names_.begin(), names_.end(), name) != names_.end()) return false;
      names_.push_back(name);
      return true;
    }
    if (table_.empty()) table_.insert(names_.begin(), names_.end());
    return table_.insert(name).second;
  }
  void Clear() {
    names_.clear();
    table_.clear();
  }

 private:
  static constexpr std::size_t kFew = 32;

  std::vector<std::string_view> names_;
  std::unordered_set<std::string_view> table_;  // empty while there are few
};

}  // namespace tarvel
