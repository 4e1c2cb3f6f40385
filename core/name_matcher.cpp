// SPDX-License-Identifier: MIT
#include "core/name_matcher.h"

#include <algorithm>
#include <bit>

#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::size_t kCodes = 32;
constexpr std::size_t kLongestStep = 5;

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
  std::size_t shortest = kLongestStep + 1;
  for (const std::string& name : names_) shortest = std::min(shortest, name.size());
  step_ = std::max<std::size_t>(shortest, 2) - 1;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    std::string& name = names_[i];
    StringToUpper(name);
    for (std::size_t at = 0; at < step_; ++at) {
      for (std::size_t second = 0; second < kCodes; ++second) {
        if (at + 1 < name.size() && CodeOf(name[at + 1]) != second) continue;
        candidates_[CodeOf(name[at]) * kCodes + second] |= std::uint64_t{1} << i;
      }
    }
  }
}

/// Whether `name` covers the byte at `at` with one of its first `step_` bytes.
bool NameMatcher::Covers(std::string_view text, std::size_t at, std::string_view name) const {
  for (std::size_t before = 0; before < step_ && before <= at; ++before) {
    if (CodeOf(name[before]) != CodeOf(text[at])) continue;
    if (BeginsWith(text.substr(at - before), name)) return true;
  }
  return false;
}

/// The names that occur, as far as they are looked for: all at first, and after each find those of
/// `still_wanted(find)`. A search for fewer names meets fewer candidates: asking for the first name
/// and not for all takes a fifth less of Compare.
template <typename StillWanted>
std::uint64_t NameMatcher::Search(std::string_view text, StillWanted still_wanted) const {
  std::uint64_t found = 0;
  std::uint64_t wanted = ~std::uint64_t{0};
  for (std::size_t at = 0; at < text.size() && wanted != 0; at += step_) {
    const std::size_t second = at + 1 < text.size() ? CodeOf(text[at + 1]) : 0;
    std::uint64_t candidates = candidates_[CodeOf(text[at]) * kCodes + second] & wanted;
    for (; candidates != 0; candidates &= (candidates - 1) & wanted) {
      const auto i = static_cast<std::size_t>(std::countr_zero(candidates));
      if (!Covers(text, at, names_[i])) continue;
      const std::uint64_t name = std::uint64_t{1} << i;
      found |= name;
      wanted &= still_wanted(name);
    }
  }
  return found;
}

std::uint64_t NameMatcher::Find(std::string_view text) const {
  return Search(text, [](std::uint64_t name) { return ~name; });
}

bool NameMatcher::Any(std::string_view text) const {
  return Search(text, [](std::uint64_t) { return std::uint64_t{0}; }) != 0;
}

int NameMatcher::First(std::string_view text) const {
  const std::uint64_t found = Search(text, [](std::uint64_t name) { return name - 1; });
  return found == 0 ? -1 : std::countr_zero(found);
}

}  // namespace tarvel
