// SPDX-License-Identifier: MIT
#include "ops/entries/hidden_ranges.h"

#include <iterator>

namespace tarvel {

HiddenRanges::Ranges::const_iterator HiddenRanges::Find(std::size_t offset) const {
  const auto after = outer_.upper_bound(offset);
  if (after == outer_.begin() || std::prev(after)->second <= offset) return outer_.end();
  return std::prev(after);
}

std::optional<std::size_t> HiddenRanges::RangeAt(std::size_t offset) const {
  const auto range = Find(offset);
  return range == outer_.end() ? std::nullopt : std::optional(range->first);
}

std::size_t HiddenRanges::VisibleFrom(std::size_t offset) const {
  const auto range = Find(offset);
  return range == outer_.end() ? offset : range->second;
}

void HiddenRanges::Add(std::size_t begin, std::size_t end) {
  for (auto range = outer_.lower_bound(begin); range != outer_.end() && range->first < end;) {
    inner_.insert(outer_.extract(range++));
  }
  outer_.emplace(begin, end);
}

void HiddenRanges::Close(std::size_t begin, std::size_t end) {
  const auto outer = outer_.find(begin);
  (outer == outer_.end() ? inner_.find(begin) : outer)->second = end;
}

void HiddenRanges::Remove(std::size_t begin) {
  const auto removed = outer_.find(begin);
  const std::size_t end = removed->second;
  outer_.erase(removed);
  for (auto range = inner_.lower_bound(begin); range != inner_.end() && range->first < end;) {
    const std::size_t range_end = range->second;
    outer_.insert(inner_.extract(range));
    range = inner_.lower_bound(range_end);
  }
}

void HiddenRanges::RemoveAll(std::size_t begin, std::size_t end) {
  for (Ranges* const ranges : {&outer_, &inner_}) {
    ranges->erase(ranges->lower_bound(begin), ranges->lower_bound(end));
  }
}

}  // namespace tarvel
