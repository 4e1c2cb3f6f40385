// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <optional>

namespace tarvel {

/// The ranges of a file that lie inside entries, and so hide the entries that stand in them. Two
/// ranges are apart, or one lies in the other.
class HiddenRanges {
 public:
  /// The end of a range that nothing closes.
  static constexpr std::size_t kOpen = static_cast<std::size_t>(-1);

  /// Where the range begins that hides `offset`; of several the largest. Nothing if none does.
  std::optional<std::size_t> RangeAt(std::size_t offset) const;
  /// `offset`, or the end of the largest range that hides it.
  std::size_t VisibleFrom(std::size_t offset) const;

  /// Adds a range. It must not overlap others in part, nor lie in one.
  void Add(std::size_t begin, std::size_t end);
  /// Gives an open range an end.
  void Close(std::size_t begin, std::size_t end);
  /// Removes a range that lies in no other. Those that lie in it stay.
  void Remove(std::size_t begin);
  /// Removes all ranges that begin at `begin` or after, but before `end`. None of them may lie in
  /// another that stays.
  void RemoveAll(std::size_t begin, std::size_t end);

 private:
  using Ranges = std::map<std::size_t, std::size_t>;  // the ends, by the begins

  Ranges::const_iterator Find(std::size_t offset) const;

  Ranges outer_;  // those that lie in no other
  Ranges inner_;
};

}  // namespace tarvel
