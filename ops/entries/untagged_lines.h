// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace tarvel {

/// Knows which lines hold no known tag. An entry that comes to them again, after a value that went
/// on over many entries, skips them: entries that do not close would take the square of their
/// number.
class UntaggedLines {
 public:
  /// Lines without a tag begin at an offset.
  void Start(std::size_t begin) {
    start_ = begin_ = begin;
    passed_.clear();
  }
  /// The value of an unknown tag begins on the line at `line`; reading continues at `next`.
  void Pass(std::size_t line, std::size_t next) {
    passed_.emplace_back(begin_, line + 1);
    begin_ = next;
  }
  /// A tag or a head begins at an offset.
  void End(std::size_t offset) {
    if (offset - start_ >= kMany) Keep(offset);
  }
  /// Where the next tag or head begins if the line at an offset was read before, else that offset.
  std::size_t SkipFrom(std::size_t line) const;

 private:
  static constexpr std::size_t kMany = 500;  // bytes; fewer are read as fast

  void Keep(std::size_t next);

  struct Lines {
    std::size_t end;
    std::size_t next;  // the tag or head after them
  };
  std::map<std::size_t, Lines> known_;  // by their beginnings
  std::size_t start_ = 0;
  std::size_t begin_ = 0;
  std::vector<std::pair<std::size_t, std::size_t>> passed_;  // from `start_` to `begin_`
};

}  // namespace tarvel
