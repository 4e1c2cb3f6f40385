// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "core/large_memory.h"

namespace tarvel {

/// Finds things of a list by their hashes. Holds the number of each in one flat table with a piece
/// of its hash, so that a search in a large list waits for memory once where a tree or a table of
/// chains waits for every link. The hashes must be well mixed in all their bits.
class HashIndex {
 public:
  /// Room for `most` numbers; more than that must not be put in. Numbers are below 2^40 - 1.
  explicit HashIndex(std::size_t most = 0) {
    const std::size_t size = std::bit_ceil(2 * most + 2);
    slots_.reserve(size);
    AskForLargePages(slots_.data(), size * sizeof(std::uint64_t));
    slots_.resize(size);
  }

  /// The number under this hash for which `is_same(number)` is true.
  template <typename IsSame>
  std::optional<std::size_t> Find(std::size_t hash, const IsSame& is_same) const {
    return NumberIn(slots_[SlotOf(hash, is_same)]);
  }

  /// Puts `number` under the hash, in the place of the one for which `is_same` is true: gives that
  /// one.
  template <typename IsSame>
  std::optional<std::size_t> Put(std::size_t hash, std::size_t number, const IsSame& is_same) {
    std::uint64_t& slot = slots_[SlotOf(hash, is_same)];
    return NumberIn(std::exchange(slot, SlotFor(hash, number)));
  }

  /// The number under this hash for which `is_same(number)` is true. When there is none, puts
  /// `number` there.
  template <typename IsSame>
  std::optional<std::size_t> FindOrPut(std::size_t hash, std::size_t number,
                                       const IsSame& is_same) {
    std::uint64_t& slot = slots_[SlotOf(hash, is_same)];
    if (slot == 0) {
      slot = SlotFor(hash, number);
      return std::nullopt;
    }
    return NumberIn(slot);
  }

  /// Doubles the room. `hash_of(number)` gives the hash under which a number was put in.
  template <typename HashOf>
  void MakeRoom(const HashOf& hash_of) {
    HashIndex larger(2 * Room() + 1);
    for (const std::uint64_t slot : slots_) {
      const auto number = NumberIn(slot);
      if (!number) continue;
      larger.Put(hash_of(*number), *number, [](std::size_t /*other*/) { return false; });
    }
    *this = std::move(larger);
  }

  /// For how many numbers there is room.
  std::size_t Room() const { return slots_.size() / 2 - 1; }

  /// Brings the place of a hash near, for a search that is to follow soon.
  void Prefetch(std::size_t hash) const { __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]); }

 private:
  // A slot: the upper bits of the hash, the number plus 1 below them; 0 is an empty slot. The lower
  // bits of the hash choose the slot.
  static constexpr std::uint64_t kNumber = (std::uint64_t{1} << 40) - 1;

  static std::uint64_t SlotFor(std::size_t hash, std::size_t number) {
    return (hash & ~kNumber) | (number + 1);
  }
  static std::optional<std::size_t> NumberIn(std::uint64_t slot) {
    if (slot == 0) return std::nullopt;
    return static_cast<std::size_t>(slot & kNumber) - 1;
  }

  /// The slot that holds the number asked for, or the empty one where it belongs.
  template <typename IsSame>
  std::size_t SlotOf(std::size_t hash, const IsSame& is_same) const {
    const std::size_t last = slots_.size() - 1;
    for (std::size_t at = hash & last;; at = (at + 1) & last) {
      const std::uint64_t slot = slots_[at];
      if (slot == 0) return at;
      const bool alike = ((slot ^ hash) & ~kNumber) == 0;
      if (alike && is_same(static_cast<std::size_t>(slot & kNumber) - 1)) return at;
    }
  }

  std::vector<std::uint64_t> slots_;
};

}  // namespace tarvel
