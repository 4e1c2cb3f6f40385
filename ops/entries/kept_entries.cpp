// SPDX-License-Identifier: MIT
#include "ops/entries/kept_entries.h"

#include <algorithm>
#include <span>
#include <utility>

namespace tarvel {

namespace {

std::size_t IndexOf(const DoublesRule& rule) {
  return static_cast<std::size_t>(&rule - kDoublesRules.data());
}

/// Whether entries of this rule's types are distinguished by their tags at all.
bool ComparesTags(const DoublesRule* rule) { return rule && !rule->group.compared.empty(); }

}  // namespace

KeptValues::KeptValues(const EntryRecord& record) : type_(DoublesRuleFor(record.type).type) {
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    text_ += record.fields[i].Text();
    bounds_[i + 1] = text_.size();
  }
}

ComparedValues KeptValues::ComparedValuesOf(const TypeGroup& group) const {
  ComparedValues compared;
  for (const Field field : group.compared) {
    const auto index = static_cast<std::size_t>(field);
    const std::size_t begin = bounds_[index];
    compared.values[compared.count++] =
        std::string_view(text_).substr(begin, bounds_[index + 1] - begin);
  }
  return compared;
}

std::string_view KeptEntry::Key() const { return same_key->id; }

bool KeptEntry::IsComplete(const DoublesRule& rule) const {
  const std::span<const Field> compared = rule.group.compared;
  return !compared.empty() && std::all_of(compared.begin(), compared.end(), [this](Field field) {
    return (present >> static_cast<unsigned>(field) & 1U) != 0;
  });
}

void EntryList::Add(const KeptEntry& entry) {
  if (IsEmpty()) {
    only_ = &entry;
    return;
  }
  if (!several_) several_ = std::make_unique<Ordered>(Ordered{std::exchange(only_, nullptr)});
  several_->insert(several_->end(), &entry);
}

void EntryList::Remove(const KeptEntry& entry) {
  if (!several_) {
    if (only_ == &entry) only_ = nullptr;
    return;
  }
  several_->erase(&entry);
  if (several_->size() > 1) return;
  only_ = *several_->begin();
  several_.reset();
}

const KeptEntry* EntryList::FirstFrom(std::size_t offset) const {
  if (!several_) return only_ && only_->head >= offset ? only_ : nullptr;
  const auto first = several_->lower_bound(offset);
  return first == several_->end() ? nullptr : *first;
}

KeptEntry& KeptEntries::Add(const EntryRecord& record, std::size_t head, std::size_t end,
                            const LackingSizes& lacking) {
  KeptEntry entry{head, end, end};
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    const bool present = lacking[i] > 0 || !record.fields[i].Text().empty();
    if (present) entry.present |= static_cast<std::uint16_t>(1U << i);
  }
  entry.same_key = &by_key_.FindOrAdd(record.key);
  KeptEntry& added = entries_.Add(std::move(entry));
  AddToIndexes(added);
  path_.NoteReach(added);
  const TypeRule<DoublesRule> rule = DoublesRuleFor(record.type);
  if (!rule.rule || !added.IsComplete(*rule.rule)) return added;
  std::size_t size = 0;
  bool is_whole = true;
  for (const Field field : rule.rule->group.compared) {
    size += record[field].Text().size() + lacking[static_cast<std::size_t>(field)];
    is_whole = is_whole && lacking[static_cast<std::size_t>(field)] == 0;
  }
  if (is_whole) {
    AddContent(added, record);
  } else {
    added.unread_size = static_cast<std::uint32_t>(size);
    unread_.emplace(added.unread_size, &added);
  }
  return added;
}

void KeptEntries::AddContent(KeptEntry& entry, const EntryRecord& record) const {
  const TypeRule<DoublesRule> rule = DoublesRuleFor(record.type);
  const ComparedValues values = ComparedValuesOf(rule.rule->group, record);
  entry.same_content = &by_content_.FindOrAdd(ContentHash(rule.type, values));
  entry.same_content->all.Add(entry);
}

/// Reads the values of which not all is known, if they have this size.
void KeptEntries::ReadLacking(std::uint32_t size) const {
  for (auto at = unread_.lower_bound({size, nullptr}); at != unread_.end() && at->first == size;) {
    KeptEntry& entry = *unread_.extract(at++).value().second;
    AddContent(entry, read_(entry));
  }
}

void KeptEntries::Remove(std::size_t begin, std::size_t end) {
  entries_.Remove(begin, end, [this](KeptEntry& entry) { RemoveFromIndexes(entry); });
  path_.Forget(begin, end);
}

const KeptValues& KeptEntries::ValuesOf(const KeptEntry& entry) const {
  if (!entry.values) entry.values = std::make_unique<const KeptValues>(read_(entry));
  return *entry.values;
}

void KeptEntries::AddToIndexes(const KeptEntry& entry) {
  SameKey& same = *entry.same_key;
  const auto add_complete = [&same](const KeptEntry& added) {
    for (std::size_t i = 0; i < kDoublesRules.size(); ++i) {
      if (added.IsComplete(kDoublesRules[i])) (*same.complete)[i].Add(added);
    }
  };
  if (!same.all.IsEmpty() && !same.complete) {
    same.complete = std::make_unique<std::array<EntryList, kDoublesRules.size()>>();
    add_complete(*same.all.FirstFrom(0));
  }
  same.all.Add(entry);
  if (same.complete) add_complete(entry);
}

void KeptEntries::RemoveFromIndexes(KeptEntry& entry) {
  SameKey& same = *entry.same_key;
  same.all.Remove(entry);
  if (same.all.IsEmpty()) same.complete.reset();
  for (std::size_t i = 0; same.complete && i < kDoublesRules.size(); ++i) {
    if (entry.IsComplete(kDoublesRules[i])) (*same.complete)[i].Remove(entry);
  }
  if (entry.same_content) entry.same_content->all.Remove(entry);
  unread_.erase({entry.unread_size, &entry});
}

/// The first entry of the list, from `offset` on, that is on the path.
const KeptEntry* KeptEntries::FirstVisible(const EntryList& list, std::size_t offset) const {
  const KeptEntry* entry = list.FirstFrom(offset);
  while (entry && !path_.Holds(*entry)) entry = list.FirstFrom(path_.SearchFrom(*entry));
  return entry;
}

const KeptEntry* KeptEntries::FirstComplete(std::string_view key, const DoublesRule& rule) const {
  const SameKey* const same = by_key_.Find(key);
  if (!same || same->all.IsEmpty()) return nullptr;
  if (same->complete) return FirstVisible((*same->complete)[IndexOf(rule)]);
  const KeptEntry* const only = FirstVisible(same->all);
  return only && only->IsComplete(rule) ? only : nullptr;
}

const KeptEntry* KeptEntries::FirstEqual(const TypeRule<DoublesRule>& rule,
                                         const ComparedValues& values) const {
  if (!ComparesTags(rule.rule) || !values.Complete()) return nullptr;
  std::size_t size = 0;
  for (const std::string_view value : values.values) size += value.size();
  ReadLacking(static_cast<std::uint32_t>(size));
  const SameContent* const found = by_content_.Find(ContentHash(rule.type, values));
  const KeptEntry* entry = found ? FirstVisible(found->all) : nullptr;
  for (; entry; entry = FirstVisible(found->all, entry->head + 1)) {
    const KeptValues& kept = ValuesOf(*entry);
    if (kept.Type() == rule.type && kept.ComparedValuesOf(rule.rule->group) == values) break;
  }
  return entry;
}

const KeptEntry* KeptEntries::FirstWithKey(std::string_view key) const {
  const SameKey* const same = by_key_.Find(key);
  return same ? FirstVisible(same->all) : nullptr;
}

std::size_t KeptEntries::CountWithKey(std::string_view key, std::size_t offset) const {
  const SameKey* const same = by_key_.Find(key);
  const KeptEntry* entry = same ? FirstVisible(same->all) : nullptr;
  std::size_t count = 0;
  for (; entry && entry->head < offset; ++count) {
    entry = FirstVisible(same->all, entry->head + 1);
  }
  return count;
}

}  // namespace tarvel
