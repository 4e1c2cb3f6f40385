// SPDX-License-Identifier: MIT
#include "core/name_matcher.h"

#include <algorithm>
#include <bit>

#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::size_t kCodes = 32;

/// The lower five bits of a byte: the same for both cases of a letter.
constexpr std::size_t CodeOf(char byte) { return static_cast<unsigned char>(byte) % kCodes; }

/// Whether `text` begins with `name`, given in capitals.
bool BeginsWith(std::string_view text, std::string_view name) {
  return text.size() >= name.size() &&
         std::equal(name.begin(), name.end(), text.begin(),
                    [](char one, char other) { return one == ToUpper(other); });
}

}  // namespace

NameMatcher::NameMatcher(std::span<const std::string_view> names)
    : names_(names.begin(), names.end()) {
  for (std::size_t i = 0; i < names_.size(); ++i) {
    std::string& name = names_[i];
    StringToUpper(name);
    for (std::size_t second = 0; second < kCodes; ++second) {
      if (name.size() > 1 && CodeOf(name[1]) != second) continue;
      candidates_[CodeOf(name[0]) * kCodes + second] |= std::uint64_t{1} << i;
    }
  }
}

std::uint64_t NameMatcher::Search(std::string_view text, bool stops_at_first) const {
  std::uint64_t found = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::size_t second = at + 1 < text.size() ? CodeOf(text[at + 1]) : 0;
    std::uint64_t candidates = candidates_[CodeOf(text[at]) * kCodes + second] & ~found;
    for (; candidates != 0; candidates &= candidates - 1) {
      const auto i = static_cast<std::size_t>(std::countr_zero(candidates));
      if (!BeginsWith(text.substr(at), names_[i])) continue;
      found |= std::uint64_t{1} << i;
      if (stops_at_first) return found;
    }
  }
  return found;
}

int NameMatcher::First(std::string_view text) const {
  const std::uint64_t found = Find(text);
  return found == 0 ? -1 : std::countr_zero(found);
}

}  // namespace tarvel
