// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <type_traits>

#include "core/hash_index.h"
#include "core/keyed_hash.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/group_rules.h"

namespace tarvel {

/// An entry as it stands in the new library.
struct KeptEntry {
  /// Keeps what `record` holds in `store`, which must outlive the entry. `head` and `end` are the
  /// offsets of the entry's first line and of the line after its last.
  KeptEntry(const EntryRecord& record, std::size_t head, std::size_t end, TextStore& store);

  ComparedValues ComparedValuesOf(const TypeGroup& group) const;
  /// Whether all the compared tags of `rule` are present.
  bool IsComplete(const DoublesRule& rule) const;

  std::size_t head;
  std::size_t end;
  std::string_view key;
  TypeRule<DoublesRule> rule;
  std::size_t content_hash = 0;  // of the type and its compared values, if they are complete

 private:
  // All values in one text, as most entries have few and there are many entries.
  std::string_view values_;
  std::array<std::size_t, kFieldCount + 1> bounds_;
  std::uint32_t complete_ = 0;  // bit i: complete for kDoublesRules[i]
};

/// Entries that share something, in the order of the file. Nearly always it is just one.
class EntryList {
 public:
  void Add(const KeptEntry& entry);
  void Remove(const KeptEntry& entry);
  bool IsEmpty() const { return !only_ && !several_; }
  /// The number of entries whose heads stand before `offset`.
  std::size_t CountBefore(std::size_t offset) const;
  /// The first entry, or null.
  const KeptEntry* First() const;
  /// The first entry for which `test` is true, or null.
  const KeptEntry* First(const std::function<bool(const KeptEntry&)>& test) const;

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

/// Groups of entries, each found by its `id`, which all its entries share. A group stays once it is
/// there, and so does its place in memory.
template <typename Group>
class GroupTable {
 public:
  using Id = decltype(Group::id);

  /// The group; null if there is none.
  const Group* Find(const Id& id) const {
    const auto number = index_.Find(HashOf(id), IsGroupOf(id));
    return number ? &groups_[*number] : nullptr;
  }
  /// The group, which is added if there is none.
  Group& FindOrAdd(const Id& id) {
    const auto number = index_.FindOrPut(HashOf(id), groups_.size(), IsGroupOf(id));
    return number ? groups_[*number] : groups_.emplace_back(Group{id});
  }

 private:
  static std::size_t HashOf(const Id& id) {
    if constexpr (std::is_integral_v<Id>)
      return id;  // a hash itself
    else
      return KeyedHash(id);
  }
  auto IsGroupOf(const Id& id) const {
    return [this, &id](std::size_t number) { return groups_[number].id == id; };
  }

  std::deque<Group> groups_;
  HashIndex index_;
};

/// The entries of the new library, found by their keys and by their compared tags. Each search
/// gives the first of the file that fits, without looking at those that do not.
class KeptEntries {
 public:
  /// Adds an entry, which stands from `head` to `end`; there is none yet with the same head.
  void Add(const EntryRecord& record, std::size_t head, std::size_t end);
  /// Removes all entries whose heads stand at `begin` or after, but before `end`.
  void Remove(std::size_t begin, std::size_t end);
  /// Keeps the entries whose heads stand at `offset` or after from being found, until it is called
  /// with a later offset.
  void HideFrom(std::size_t offset) { hidden_from_ = offset; }

  /// The first entry with this key that has all tags that `rule` compares; null if there is none.
  const KeptEntry* FirstComplete(std::string_view key, const DoublesRule& rule) const;
  /// The first entry of this type with these values in the compared tags; null if there is none.
  const KeptEntry* FirstEqual(const TypeRule<DoublesRule>& rule,
                              const ComparedValues& values) const;
  /// The first entry with this key; null if there is none.
  const KeptEntry* FirstWithKey(std::string_view key) const;
  /// The number of entries with this key whose heads stand before `offset`.
  std::size_t CountWithKey(std::string_view key, std::size_t offset) const;

 private:
  struct SameKey {
    std::string_view id;
    EntryList all = {};
    // For each rule the entries that are complete for it. Made with the second entry.
    std::unique_ptr<std::array<EntryList, kDoublesRules.size()>> complete = {};
  };
  struct SameContent {
    std::size_t id;  // `content_hash`
    EntryList all = {};
  };

  const KeptEntry* Visible(const KeptEntry* entry) const {
    return entry && entry->head < hidden_from_ ? entry : nullptr;
  }
  void AddToIndexes(const KeptEntry& entry);
  void RemoveFromIndexes(const KeptEntry& entry);

  // Texts and groups stay until the end, also those of entries that were removed: few are, and this
  // way the keys of groups do not depend on which entries are left.
  TextStore texts_;
  std::map<std::size_t, KeptEntry> entries_;  // by head; the groups point into it
  GroupTable<SameKey> by_key_;
  GroupTable<SameContent> by_content_;
  std::size_t hidden_from_ = static_cast<std::size_t>(-1);
};

}  // namespace tarvel
