// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <map>
#include <utility>

namespace tarvel {

/// The entries of a file, found by their offsets. An `Entry` has two offsets, `head` and `end`,
/// which must differ. The address of an entry does not change; that of a removed one is not used
/// again, and its `end` is its `head`.
///
/// Nearly all entries of a growing library are added in the order of the file. A list of them takes
/// a third of the memory of a map.
template <typename Entry>
class EntriesByOffset {
 public:
  /// Adds an entry; there is none yet with the same head.
  Entry& Add(Entry entry) {
    const std::size_t head = entry.head;
    const bool is_last = in_order_.empty() || in_order_.back().head < head;
    if (is_last) return in_order_.emplace_back(std::move(entry));
    return *others_.emplace(head, &out_of_order_.emplace_back(std::move(entry))).first->second;
  }

  /// Removes the entries whose heads stand at `begin` or after, but before `end`; calls `removed`
  /// with each of them first.
  template <typename Removed>
  void Remove(std::size_t begin, std::size_t end, const Removed& removed) {
    for (auto at = FirstIn(in_order_, begin); at != in_order_.end() && at->head < end; ++at) {
      if (at->end == at->head) continue;
      removed(*at);
      *at = Entry{at->head, at->head};
    }
    const auto first = others_.lower_bound(begin);
    auto next = first;
    for (; next != others_.end() && next->first < end; ++next) {
      removed(*next->second);
      *next->second = Entry{next->first, next->first};
    }
    others_.erase(first, next);
  }

  /// The entry with this head; null if there is none.
  Entry* Find(std::size_t head) {
    if (!in_order_.empty() && in_order_.back().head >= head) {
      const auto listed = FirstIn(in_order_, head);
      if (listed->head == head && listed->end != head) return &*listed;
    }
    if (others_.empty() || others_.rbegin()->first < head) return nullptr;
    const auto other = others_.find(head);
    return other == others_.end() ? nullptr : other->second;
  }

  /// Calls `visit` with each entry whose head stands at `begin` or after, but before `end`, in any
  /// order.
  template <typename Visit>
  void ForEach(std::size_t begin, std::size_t end, const Visit& visit) {
    if (!in_order_.empty() && in_order_.back().head >= begin) {
      for (auto at = FirstIn(in_order_, begin); at != in_order_.end() && at->head < end; ++at) {
        if (at->end != at->head) visit(*at);
      }
    }
    for (auto at = others_.lower_bound(begin); at != others_.end() && at->first < end; ++at) {
      visit(*at->second);
    }
  }

  /// The head of the entry that begins before `offset` and ends after it; `offset` if there is
  /// none. No two entries may share a byte.
  std::size_t HeadOfEntryAt(std::size_t offset) const {
    const auto listed = FirstIn(in_order_, offset);
    if (listed != in_order_.begin() && std::prev(listed)->end > offset) {
      return std::prev(listed)->head;
    }
    const auto other = others_.lower_bound(offset);
    const bool holds = other != others_.begin() && std::prev(other)->second->end > offset;
    return holds ? std::prev(other)->first : offset;
  }

 private:
  template <typename List>
  static auto FirstIn(List& list, std::size_t offset) {
    return std::lower_bound(
        list.begin(), list.end(), offset,
        [](const Entry& entry, std::size_t wanted) { return entry.head < wanted; });
  }

  std::deque<Entry> in_order_;
  std::deque<Entry> out_of_order_;
  std::map<std::size_t, Entry*> others_;  // those of `out_of_order_`, by head
};

}  // namespace tarvel
