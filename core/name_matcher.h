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
  /// The same without vector code.
  std::uint64_t FindPlain(std::string_view text) const;
  /// Whether any of the names occurs in `text`.
  bool Any(std::string_view text) const;
  /// The lowest index of a name that occurs in `text`, or -1.
  int First(std::string_view text) const;

  /// By the lower and upper four bits of a byte: bit g is set when a name of group g may have it.
  struct GroupsOfByte {
    std::array<std::uint8_t, 16> by_lower{};
    std::array<std::uint8_t, 16> by_upper{};
  };
  /// So many bytes at the beginning of a name decide where it is looked for.
  static constexpr std::size_t kPrefix = 3;
  using Prefixes = std::array<GroupsOfByte, kPrefix>;

 private:
  template <typename StillWanted>
  std::uint64_t Search(std::string_view text, bool plain, StillWanted still_wanted) const;

  std::vector<std::string> names_;  // in capitals
  bool has_short_ = false;          // a name is shorter than the prefix
  // Names that begin alike share a group. Bit i: names_[i] is of the group.
  std::array<std::uint64_t, 8> groups_{};
  Prefixes prefixes_{};
};

}  // namespace tarvel
