// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "ops/entries/entries_by_offset.h"
#include "ops/entries/kept_entry.h"

namespace tarvel {

/// The entries that reading a file from its beginning finds, among all that are known. Each entry
/// leads to the one at which it is read on after it; the path follows these steps from the first.
///
/// A write in the middle of a file may lead the path to other entries up to the end, and the next
/// one back. So that this takes no step for each entry, the file is divided into blocks: for each
/// is noted where the path enters it, and at which entry a path that enters there leaves it.
class EntryPath {
 public:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
  /// In bytes. A step for each block costs as much as one for each entry of a block.
  static constexpr std::size_t kBlockSize = std::size_t{1} << 14;

  /// A path among `entries`, which must outlive it.
  explicit EntryPath(EntriesByOffset<KeptEntry>& entries, std::size_t block_size = kBlockSize)
      : entries_(entries), block_size_(block_size) {}

  /// Whether the path leads to the entry.
  bool Holds(const KeptEntry& entry);
  /// An offset after an entry that the path does not lead to, before which it leads to no other
  /// entry that comes after this one; `kNowhere` if there is none.
  std::size_t SearchFrom(const KeptEntry& entry) const;

  /// Leads the path from one entry on it, null for the beginning, to the next. True when the path
  /// was led to that one before, and nothing changed from `settled` on: then the rest of it stays.
  /// `settled` is `kNowhere` where the path grows at its end: no entry after `to` is known then.
  bool Lead(const KeptEntry* from, KeptEntry& to, std::size_t settled);
  /// The entry to which this one leads; null if it is not known.
  KeptEntry* Following(KeptEntry& entry);
  /// An entry that the path from `first`, to which it was led, comes to: the last in its block, or
  /// `first` itself where the steps in the block must be led one by one.
  KeptEntry& GoOnFrom(KeptEntry& first);
  /// Ends the path at an entry, null for the beginning.
  void End(const KeptEntry* last);

  /// Notes that `entry.next` has grown.
  void NoteReach(const KeptEntry& entry);
  /// The entries before `offset` that end, or were read on, after it. Their `next` must be set to
  /// `offset` or less, or they must be removed.
  std::vector<KeptEntry*> TakeReaching(std::size_t offset);
  /// Forgets how paths lead through the blocks of the bytes from `begin` to `end`.
  void Forget(std::size_t begin, std::size_t end);

 private:
  struct Passage {
    std::size_t head;  // of the entry at which it enters the block
    KeptEntry* last;
  };
  struct Block {
    std::size_t first = kNowhere;  // the head at which the path enters the block, or one after it
    std::size_t reach = 0;         // the largest `next` of its entries
    bool is_marked = true;         // `on_path` is right in its entries
    std::vector<Passage> passages;
  };

  std::size_t NumberOf(std::size_t offset) const { return offset / block_size_; }
  Block& BlockAt(std::size_t number);
  KeptEntry* NextInBlock(KeptEntry& entry);
  void Mark(std::size_t number);
  void LeaveOut(std::size_t begin, std::size_t end);

  EntriesByOffset<KeptEntry>& entries_;
  std::size_t block_size_;
  std::vector<Block> blocks_;
  std::size_t farthest_ = 0;  // the largest distance from a head to its `next`
};

}  // namespace tarvel
