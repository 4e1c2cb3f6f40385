// SPDX-License-Identifier: MIT
#include "ops/entries/untagged_lines.h"

#include <iterator>

namespace tarvel {

/// Remembers what was passed since the last tag, and that it leads to `next`.
void UntaggedLines::Keep(std::size_t next) {
  for (const auto& [begin, end] : passed_) known_.insert_or_assign(begin, Lines{end, next});
  known_.insert_or_assign(begin_, Lines{next, next});
}

std::size_t UntaggedLines::SkipFrom(std::size_t line) const {
  const auto after = known_.upper_bound(line);
  if (after == known_.begin()) return line;
  const Lines& lines = std::prev(after)->second;
  return line < lines.end ? lines.next : line;
}

}  // namespace tarvel
