// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "ops/entries/entries_by_offset.h"
#include "ops/entries/kept_entry.h"

namespace tarvel {

/// Which of the known entries a reading of the file from its beginning finds. Each entry leads to
/// the one that is found after it; the path is the chain of these from the first.
///
/// A write in the middle of a file can lead the path to other entries up to the end, and the next
/// write back. To switch without a step for each entry, the file is divided into blocks. Each block
/// knows where the path enters it, and for each entry at which a path has entered it, the last
/// entry of that path in the block.
class EntryPath {
 public:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
  /// Blocks of 16 KiB: in 20 MB there are a thousand, each with some hundred entries at most.
  static constexpr unsigned kBlockBits = 14;

  /// A path among `entries`, which must outlive it. A block has 2^`block_bits` bytes.
  explicit EntryPath(EntriesByOffset<KeptEntry>& entries, unsigned block_bits = kBlockBits)
      : entries_(entries), block_bits_(block_bits) {}

  /// Whether the path leads to the entry.
  bool Holds(const KeptEntry& entry);
  /// For an entry that is not on the path: the offset after its head from which to search for the
  /// next entry that is; `kNowhere` if there is none.
  std::size_t SearchFrom(const KeptEntry& entry) const;

  /// Leads the path from an entry on it, null for the beginning, to the next. Nothing has changed
  /// from the offset `settled` on. Returns true when the path led to `to` before: the rest of it
  /// then stays as it is. `settled` is `kNowhere` where the path grows at its end, and no entry
  /// after `to` is known.
  bool Lead(const KeptEntry* from, KeptEntry& to, std::size_t settled);
  /// The entry to which this one leads; null if it is not known.
  KeptEntry* Following(KeptEntry& entry);
  /// The entry from which to continue after `Lead` to `first`: the last one of the path in this
  /// block, or `first` itself where the entries of the block are marked one by one.
  KeptEntry& GoOnFrom(KeptEntry& first);
  /// Ends the path at an entry, null for the beginning.
  void End(const KeptEntry* last);

  /// Notes a new entry, or one whose `next` has grown.
  void NoteReach(const KeptEntry& entry);
  /// The entries that begin before `offset` and whose `next` is after it. They must be removed, or
  /// their `next` set to `offset` or less.
  std::vector<KeptEntry*> TakeReaching(std::size_t offset);
  /// Forgets how paths lead through the blocks of the bytes from `begin` to `end`.
  void Forget(std::size_t begin, std::size_t end);

 private:
  /// A path through a block.
  struct Passage {
    std::size_t head;  // of the entry at which the path enters the block
    KeptEntry* last;   // before it leaves the block
  };
  struct Block {
    std::size_t first = kNowhere;  // the head at which the path enters the block, or one after it
    std::size_t reach = 0;         // the largest `next` of its entries
    bool is_marked = true;         // `on_path` is right in its entries
    std::vector<Passage> passages;
  };

  std::size_t NumberOf(std::size_t offset) const { return offset >> block_bits_; }
  std::size_t BeginOf(std::size_t number) const { return number << block_bits_; }
  Block& BlockAt(std::size_t number);
  KeptEntry* NextInBlock(KeptEntry& entry);
  void Mark(std::size_t number);
  void LeaveOut(std::size_t begin, std::size_t end);

  EntriesByOffset<KeptEntry>& entries_;
  unsigned block_bits_;
  std::vector<Block> blocks_;
  std::size_t farthest_ = 0;  // the largest distance from a head to its `next`
};

}  // namespace tarvel
