// SPDX-License-Identifier: MIT
#include "batch/suggestions.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

#include "core/ascii.h"

namespace tarvel {

namespace {

constexpr std::size_t kLongestName = 64;  // a longer word is no slip of a name

/// The least number of changes that make `to` of `from`, without regard to case.
std::size_t Changes(std::string_view from, std::string_view to) {
  std::vector<std::vector<std::size_t>> least(from.size() + 1,
                                              std::vector<std::size_t>(to.size() + 1));
  for (std::size_t i = 0; i <= from.size(); ++i) {
    for (std::size_t j = 0; j <= to.size(); ++j) {
      if (i == 0 || j == 0) {
        least[i][j] = i + j;
        continue;
      }
      const auto same = [&](std::size_t a, std::size_t b) {
        return ToUpper(from[a - 1]) == ToUpper(to[b - 1]);
      };
      least[i][j] = std::min(
          {least[i - 1][j] + 1, least[i][j - 1] + 1, least[i - 1][j - 1] + (same(i, j) ? 0 : 1)});
      if (i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j)) {
        least[i][j] = std::min(least[i][j], least[i - 2][j - 2] + 1);
      }
    }
  }
  return least[from.size()][to.size()];
}

std::string OneOf(std::span<const std::string_view> names) {
  std::string text;
  for (const std::string_view name : names)
    text.append(text.empty() ? "; one of: " : ", ").append(name);
  return text;
}

/// The names that begin with `word`.
std::vector<std::string_view> NamesWith(std::string_view word,
                                        std::span<const std::string_view> names) {
  std::vector<std::string_view> found;
  std::copy_if(names.begin(), names.end(), std::back_inserter(found),
               [&](std::string_view name) { return !word.empty() && name.starts_with(word); });
  return found;
}

}  // namespace

std::string_view NearestName(std::string_view word, std::span<const std::string_view> names) {
  if (word.size() > kLongestName) return {};
  if (const auto longer = NamesWith(word, names); longer.size() == 1) return longer.front();
  std::string_view nearest;
  std::size_t fewest = kLongestName;
  for (const std::string_view name : names) {
    const std::size_t changes = Changes(word, name);
    if (changes >= fewest || changes * 3 > name.size()) continue;
    fewest = changes;
    nearest = name;
  }
  return nearest;
}

std::string Suggestion(std::string_view word, std::span<const std::string_view> names) {
  constexpr std::size_t kMost = 6;  // names to choose from
  if (const std::string_view nearest = NearestName(word, names); !nearest.empty()) {
    return std::string("; did you mean '").append(nearest).append("'?");
  }
  const auto longer = NamesWith(word, names);
  if (!longer.empty() && longer.size() <= kMost) return OneOf(longer);
  return names.size() <= kMost ? OneOf(names) : std::string();
}

}  // namespace tarvel
