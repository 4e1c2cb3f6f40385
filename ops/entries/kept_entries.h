// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>

#include "core/hash_index.h"
#include "core/keyed_hash.h"
#include "ops/entries/entries_by_offset.h"
#include "ops/entries/entry_path.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/group_rules.h"
#include "ops/entries/kept_entry.h"

namespace tarvel {

/// The sizes of what a record lacks of each value; 0 for a whole value.
using LackingSizes = std::array<std::size_t, kFieldCount>;

/// Entries that share something, in the order of the file. Nearly always it is just one.
class EntryList {
 public:
  void Add(const KeptEntry& entry);
  void Remove(const KeptEntry& entry);
  bool IsEmpty() const { return !only_ && !several_; }
  /// The first entry whose head stands at `offset` or after, or null.
  const KeptEntry* FirstFrom(std::size_t offset) const;

 private:
  struct ByOffset {
    using is_transparent = void;
    static std::size_t OffsetOf(const KeptEntry* entry) { return entry->head; }
    static std::size_t OffsetOf(std::size_t offset) { return offset; }
    template <typename One, typename Other>
    bool operator()(const One& one, const Other& other) const {
      return OffsetOf(one) < OffsetOf(other);
    }
  };
  using Ordered = std::set<const KeptEntry*, ByOffset>;

  const KeptEntry* only_ = nullptr;
  std::unique_ptr<Ordered> several_;  // two or more; `only_` is then null
};

struct SameKey {
  std::string_view id;
  EntryList all = {};
  // For each rule the entries that are complete for it. Made with the second entry.
  std::unique_ptr<std::array<EntryList, kDoublesRules.size()>> complete = {};
};

struct SameContent {
  std::size_t id;  // the hash of the type and its compared values
  EntryList all = {};
};

/// Groups of entries, each found by its `id`, which all its entries share. A group is never
/// removed, and its address does not change. Takes at most 2^32 - 1 groups.
template <typename Group>
class GroupTable {
 public:
  using Id = decltype(Group::id);

  /// The group; null if there is none.
  const Group* Find(const Id& id) const {
    const auto number = index_.Find(HashOf(id), IsGroupOf(id));
    return number ? &groups_[*number] : nullptr;
  }
  /// The group, which is added if there is none, with a copy of its id.
  Group& FindOrAdd(const Id& id) {
    const auto number = index_.FindOrPut(HashOf(id), groups_.size(), IsGroupOf(id));
    return number ? groups_[*number] : groups_.emplace_back(Group{Keep(id)});
  }

 private:
  static std::size_t HashOf(const Id& id) {
    if constexpr (std::is_integral_v<Id>)
      return id;  // a hash itself
    else
      return KeyedHash(id);
  }
  Id Keep(const Id& id) {
    if constexpr (std::is_integral_v<Id>)
      return id;
    else
      return texts_.Keep(id);
  }
  auto IsGroupOf(const Id& id) const {
    return [this, &id](std::size_t number) { return groups_[number].id == id; };
  }

  TextStore texts_;
  std::deque<Group> groups_;
  HashIndexOf<std::uint32_t> index_;
};

/// The entries of the new library, found by their keys and by their compared tags. Each search
/// gives the first of the file that fits, without looking at those that do not.
class KeptEntries {
 public:
  /// Reads an entry of the library again.
  using ReadEntry = std::function<EntryRecord(const KeptEntry& entry)>;

  /// `read` must return the record with which the entry was added. The path has blocks of
  /// 2^`block_bits` bytes.
  explicit KeptEntries(ReadEntry read, unsigned block_bits = EntryPath::kBlockBits)
      : read_(std::move(read)), path_(entries_, block_bits) {}

  /// Adds an entry, which stands from `head` to `end`; there is none yet with the same head. It is
  /// found when the path leads to it. Values that lack a part are read when some of the same size
  /// are searched for.
  KeptEntry& Add(const EntryRecord& record, std::size_t head, std::size_t end,
                 const LackingSizes& lacking = {});
  /// Removes all entries whose heads stand at `begin` or after, but before `end`.
  void Remove(std::size_t begin, std::size_t end);
  /// The entry with this head; null if there is none.
  KeptEntry* At(std::size_t head) { return entries_.Find(head); }
  /// The path on which entries are found.
  EntryPath& Path() { return path_; }

  /// The first entry with this key that has all tags that `rule` compares; null if there is none.
  const KeptEntry* FirstComplete(std::string_view key, const DoublesRule& rule) const;
  /// The first entry of this type with these values in the compared tags; null if there is none.
  const KeptEntry* FirstEqual(const TypeRule<DoublesRule>& rule,
                              const ComparedValues& values) const;
  /// The first entry with this key; null if there is none.
  const KeptEntry* FirstWithKey(std::string_view key) const;
  /// The number of entries with this key whose heads stand before `offset`.
  std::size_t CountWithKey(std::string_view key, std::size_t offset) const;
  /// The values of an entry, which is read again when it is asked for the first time. They live as
  /// long as the entry.
  const KeptValues& ValuesOf(const KeptEntry& entry) const;

 private:
  const KeptEntry* FirstVisible(const EntryList& list, std::size_t offset = 0) const;
  void AddContent(KeptEntry& entry, const EntryRecord& record) const;
  void ReadLacking(std::uint32_t size) const;
  static void AddToIndexes(const KeptEntry& entry);
  void RemoveFromIndexes(KeptEntry& entry);

  ReadEntry read_;
  EntriesByOffset<KeptEntry> entries_;  // the groups and the path point into it
  mutable EntryPath path_;
  // Groups stay until the end, also those of entries that were removed: few are.
  GroupTable<SameKey> by_key_;
  mutable GroupTable<SameContent> by_content_;
  mutable std::set<std::pair<std::uint32_t, KeptEntry*>> unread_;  // by their sizes
};

}  // namespace tarvel
