// SPDX-License-Identifier: MIT
#include "ops/entries/entry_path.h"

#include <algorithm>

namespace tarvel {

EntryPath::Block& EntryPath::BlockAt(std::size_t number) {
  if (number >= blocks_.size()) blocks_.resize(number + 1);
  return blocks_[number];
}

KeptEntry* EntryPath::Following(KeptEntry& entry) {
  const KeptEntry* const last = entry.following;
  const bool is_same = last && last->head == entry.next && last->end != last->head;
  if (!is_same) entry.following = entries_.Find(entry.next);
  return entry.following;
}

/// The same if it is in the same block.
KeptEntry* EntryPath::NextInBlock(KeptEntry& entry) {
  return NumberOf(entry.next) == NumberOf(entry.head) ? Following(entry) : nullptr;
}

bool EntryPath::Holds(const KeptEntry& entry) {
  const std::size_t number = NumberOf(entry.head);
  if (!BlockAt(number).is_marked) Mark(number);
  return entry.on_path;
}

std::size_t EntryPath::SearchFrom(const KeptEntry& entry) const {
  return std::max(entry.head + 1, blocks_[NumberOf(entry.head)].first);
}

/// Sets `on_path` in the entries of a block.
void EntryPath::Mark(std::size_t number) {
  Block& block = blocks_[number];
  block.is_marked = true;
  LeaveOut(BeginOf(number), BeginOf(number + 1));
  if (NumberOf(block.first) != number) return;
  for (KeptEntry* entry = entries_.Find(block.first); entry; entry = NextInBlock(*entry)) {
    entry->on_path = true;
  }
}

/// Marks the entries with heads from `begin` on, but before `end`, as none of the path.
void EntryPath::LeaveOut(std::size_t begin, std::size_t end) {
  entries_.ForEach(begin, end, [](KeptEntry& entry) { entry.on_path = false; });
}

bool EntryPath::Lead(const KeptEntry* from, KeptEntry& to, std::size_t settled) {
  const std::size_t number = NumberOf(to.head);
  BlockAt(number);
  const std::size_t begin = from ? from->head + 1 : 0;
  std::size_t entered = from ? NumberOf(from->head) + 1 : 0;
  if (entered > number) {
    Block& block = blocks_[number];
    if (!block.is_marked) return false;
    if (settled != kNowhere) LeaveOut(begin, to.head);
    if (to.on_path) return true;  // it did not change: a new entry is not on the path yet
    to.on_path = true;
    block.is_marked = to.head < settled;  // many may follow that were left out before
    return false;
  }
  if (from && settled != kNowhere && blocks_[entered - 1].is_marked) {
    LeaveOut(begin, BeginOf(entered));
  }
  for (; entered <= number; ++entered) {
    Block& block = blocks_[entered];
    const bool stays = block.first == to.head && BeginOf(entered) >= settled;
    if (stays && entered == number) return true;
    if (stays) continue;
    block.first = to.head;
    block.is_marked = block.is_marked && settled == kNowhere;
  }
  if (blocks_[number].is_marked) to.on_path = true;
  return false;
}

KeptEntry& EntryPath::GoOnFrom(KeptEntry& first) {
  Block& block = BlockAt(NumberOf(first.head));
  if (block.is_marked) return first;
  std::vector<Passage>& passages = block.passages;
  auto found = std::find_if(passages.begin(), passages.end(),
                            [&](const Passage& passage) { return passage.head == first.head; });
  if (found == passages.end()) found = passages.insert(found, {first.head, &first});
  while (KeptEntry* const next = NextInBlock(*found->last)) found->last = next;
  return *found->last;
}

void EntryPath::End(const KeptEntry* last) {
  const std::size_t begin = last ? last->head + 1 : 0;
  const std::size_t after = last ? NumberOf(last->head) + 1 : 0;
  LeaveOut(begin, BeginOf(after));
  for (std::size_t number = after; number < blocks_.size(); ++number) {
    blocks_[number].first = kNowhere;
    blocks_[number].is_marked = false;
  }
}

void EntryPath::NoteReach(const KeptEntry& entry) {
  Block& block = BlockAt(NumberOf(entry.head));
  block.reach = std::max(block.reach, entry.next);
  farthest_ = std::max(farthest_, entry.next - entry.head);
}

std::vector<KeptEntry*> EntryPath::TakeReaching(std::size_t offset) {
  std::vector<KeptEntry*> reaching;
  const std::size_t first = NumberOf(offset - std::min(offset, farthest_));
  const std::size_t last = std::min(NumberOf(offset) + 1, blocks_.size());
  for (std::size_t number = first; number < last; ++number) {
    Block& block = blocks_[number];
    if (block.reach <= offset) continue;
    block.passages.clear();
    block.reach = 0;
    entries_.ForEach(BeginOf(number), BeginOf(number + 1), [&](KeptEntry& entry) {
      const bool reaches = entry.head < offset && entry.next > offset;
      if (reaches) reaching.push_back(&entry);
      block.reach = std::max(block.reach, reaches ? offset : entry.next);
    });
  }
  return reaching;
}

void EntryPath::Forget(std::size_t begin, std::size_t end) {
  const std::size_t last = std::min(NumberOf(end - 1) + 1, blocks_.size());
  for (std::size_t number = NumberOf(begin); number < last; ++number) {
    blocks_[number].passages.clear();
  }
}

}  // namespace tarvel
