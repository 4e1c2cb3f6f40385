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
///
/// The pass looks at three bytes of the text at every other place. Wherever a name stands, three
/// bytes of it that were chosen beforehand stand at such a place; nearly everywhere else the three
/// are of no name, and two bytes of text are done with in a few instructions.
class NameMatcher {
 public:
  /// At most 64 names, none empty.
  explicit NameMatcher(std::span<const std::string_view> names);

  /// Bit i is set when names[i] occurs anywhere in `text`.
  std::uint64_t Find(std::string_view text) const { return Search<false>(text); }
  /// Whether any of the names occurs in `text`.
  bool Any(std::string_view text) const { return Search<true>(text) != 0; }
  /// The lowest index of a name that occurs in `text`, or -1.
  int First(std::string_view text) const;

 private:
  /// Where three bytes may be part of a name: `offset` bytes behind its beginning.
  struct Candidate {
    std::uint8_t name;
    std::int8_t offset;
  };

  void AddPieces(std::size_t name);
  void AddPiece(std::size_t name, std::ptrdiff_t offset);
  template <bool kStopsAtFirst>
  std::uint64_t Search(std::string_view text) const;
  std::uint64_t NamesAround(std::string_view text, std::size_t place) const;

  std::vector<std::string> names_;  // in capitals
  // Letters of either case have the same lower five bits. By those of two bytes: those of a third
  // that make up a piece of a name with them.
  std::array<std::uint32_t, 1024> thirds_{};
  std::array<std::uint16_t, 1024> list_of_{};       // of candidates, by the same two bytes
  std::vector<std::vector<Candidate>> candidates_;  // the first list is empty
};

}  // namespace tarvel
