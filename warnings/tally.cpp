// SPDX-License-Identifier: MIT
#include "warnings/tally.h"

#include <algorithm>

namespace tarvel {

void Tally::Add(std::string_view name, std::size_t offset) {
  auto found = names_.find(name);
  if (found == names_.end()) found = names_.try_emplace(std::string(name)).first;
  found->second.Add(offset);
}

std::vector<std::pair<std::string_view, Occurrences>> Tally::ByCount() const {
  std::vector<std::pair<std::string_view, Occurrences>> names(names_.begin(), names_.end());
  std::sort(names.begin(), names.end(), [](const auto& one, const auto& other) {
    return one.second.count != other.second.count ? one.second.count > other.second.count
                                                  : one.second.first < other.second.first;
  });
  return names;
}

}  // namespace tarvel
