// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tarvel {

/// Finds which of a list of names occur in a text, ASCII letter case ignored: the answer of
/// `ContainsNoCase` for every name at once, in one pass over the text.
///
/// The order of the names matters: where only one of several names found is served, it is the first
/// of the list.
class NameMatcher {
 public:
  /// At most 64 names, none empty.
  explicit NameMatcher(std::span<const std::string_view> names);

  /// Bit i is set when names[i] occurs anywhere in `text`.
  std::uint64_t Find(std::string_view text) const;
  /// Whether any of the names occurs in `text`.
  bool Any(std::string_view text) const;
  /// The lowest index of a name that occurs in `text`, or -1.
  int First(std::string_view text) const;

 private:
  static constexpr std::size_t kClasses = 64;
  using State = std::uint16_t;

  std::array<std::uint8_t, 256> class_of_{};
  std::vector<std::array<State, kClasses>> next_;  // states of an Aho-Corasick automaton
  std::vector<std::uint64_t> found_;               // names that end in a state
};

}  // namespace tarvel
