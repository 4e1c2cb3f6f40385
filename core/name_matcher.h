// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
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
  template <typename StillWanted>
  std::uint64_t Search(std::string_view text, StillWanted still_wanted) const;
  bool Covers(std::string_view text, std::size_t at, std::string_view name) const;

  std::vector<std::string> names_;  // in capitals
  // Two bytes are looked at, then those this far on: a name has one of its first pairs there. With
  // a step of one, Text's names take 1.4 times as long to find.
  std::size_t step_ = 1;
  // By the lower five bits of two bytes, which are those of a letter in either case: bit i is set
  // when the two may be one of the first `step_` pairs of names_[i].
  std::array<std::uint64_t, 1024> candidates_{};
};

}  // namespace tarvel
