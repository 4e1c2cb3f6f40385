// SPDX-License-Identifier: MIT
#include "ops/entries/untagged_lines.h"

#include <iterator>

namespace tarvel {

void UntaggedLines::End(std::size_t offset) {
  constexpr std::size_t kMany = 500;  // bytes; fewer are read as fast
  if (offset - start_ < kMany) return;
  for (const auto& [begin, end] : passed_) known_.insert_or_assign(begin, Lines{end, offset});
  known_.insert_or_assign(begin_, Lines{offset, offset});
}

std::size_t UntaggedLines::SkipFrom(std::size_t line) const {
  const auto after = known_.upper_bound(line);
  if (after == known_.begin()) return line;
  const Lines& lines = std::prev(after)->second;
  return line < lines.end ? lines.next : line;
}

}  // namespace tarvel
