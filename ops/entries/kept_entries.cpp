// SPDX-License-Identifier: MIT
#include "ops/entries/kept_entries.h"

#include <iterator>
#include <utility>

namespace tarvel {

namespace {

std::size_t IndexOf(const DoublesRule& rule) {
  return static_cast<std::size_t>(&rule - kDoublesRules.data());
}

/// Whether entries of this rule's types are distinguished by their tags at all.
bool ComparesTags(const DoublesRule* rule) { return rule && !rule->group.compared.empty(); }

}  // namespace

KeptEntry::KeptEntry(const EntryRecord& record, std::size_t head_place, std::size_t end_place,
                     TextStore& store)
    : head(head_place),
      end(end_place),
      key(store.Keep(record.key)),
      rule(DoublesRuleFor(record.type)) {
  std::array<std::string_view, kFieldCount> texts;
  bounds_[0] = 0;
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    texts[i] = record.fields[i].Text();
    bounds_[i + 1] = bounds_[i] + texts[i].size();
  }
  values_ = store.Keep(texts);
  for (std::size_t i = 0; i < kDoublesRules.size(); ++i) {
    const TypeGroup& group = kDoublesRules[i].group;
    if (!group.compared.empty() && ComparedValuesOf(group).Complete()) complete_ |= 1U << i;
  }
  if (rule.rule && IsComplete(*rule.rule)) {
    content_hash = ContentHash(rule.type, ComparedValuesOf(rule.rule->group));
  }
}

ComparedValues KeptEntry::ComparedValuesOf(const TypeGroup& group) const {
  ComparedValues compared;
  for (const Field field : group.compared) {
    const auto index = static_cast<std::size_t>(field);
    const std::size_t begin = bounds_[index];
    compared.values[compared.count++] = values_.substr(begin, bounds_[index + 1] - begin);
  }
  return compared;
}

bool KeptEntry::IsComplete(const DoublesRule& by_rule) const {
  return (complete_ >> IndexOf(by_rule) & 1U) != 0;
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

std::size_t EntryList::Size() const { return several_ ? several_->size() : IsEmpty() ? 0 : 1; }

std::size_t EntryList::CountUpTo(const KeptEntry& last) const {
  if (!several_) return only_ && only_->head <= last.head ? 1 : 0;
  const auto after = several_->upper_bound(&last);
  return static_cast<std::size_t>(std::distance(several_->begin(), after));
}

const KeptEntry* EntryList::First() const { return several_ ? *several_->begin() : only_; }

const KeptEntry* EntryList::First(const std::function<bool(const KeptEntry&)>& test) const {
  if (!several_) return only_ && test(*only_) ? only_ : nullptr;
  for (const KeptEntry* entry : *several_) {
    if (test(*entry)) return entry;
  }
  return nullptr;
}

void KeptEntries::Add(const EntryRecord& record, std::size_t head, std::size_t end) {
  const auto added =
      entries_.emplace_hint(entries_.end(), head, KeptEntry(record, head, end, texts_));
  AddToIndexes(added->second);
}

void KeptEntries::Remove(std::size_t begin, std::size_t end) {
  const auto first = entries_.lower_bound(begin);
  auto next = first;
  for (; next != entries_.end() && next->first < end; ++next) RemoveFromIndexes(next->second);
  entries_.erase(first, next);
}

void KeptEntries::AddToIndexes(const KeptEntry& entry) {
  SameKey& same = by_key_.FindOrAdd(entry.key);
  const auto add_complete = [&same](const KeptEntry& added) {
    for (std::size_t i = 0; i < kDoublesRules.size(); ++i) {
      if (added.IsComplete(kDoublesRules[i])) (*same.complete)[i].Add(added);
    }
  };
  if (!same.all.IsEmpty() && !same.complete) {
    same.complete = std::make_unique<std::array<EntryList, kDoublesRules.size()>>();
    add_complete(*same.all.First());
  }
  same.all.Add(entry);
  if (same.complete) add_complete(entry);

  if (!entry.rule.rule || !entry.IsComplete(*entry.rule.rule)) return;
  by_content_.FindOrAdd(entry.content_hash).all.Add(entry);
}

void KeptEntries::RemoveFromIndexes(const KeptEntry& entry) {
  SameKey& same = by_key_.FindOrAdd(entry.key);
  same.all.Remove(entry);
  if (same.all.IsEmpty()) same.complete.reset();
  for (std::size_t i = 0; same.complete && i < kDoublesRules.size(); ++i) {
    if (entry.IsComplete(kDoublesRules[i])) (*same.complete)[i].Remove(entry);
  }
  if (!entry.rule.rule || !entry.IsComplete(*entry.rule.rule)) return;
  by_content_.FindOrAdd(entry.content_hash).all.Remove(entry);
}

const KeptEntry* KeptEntries::FirstComplete(std::string_view key, const DoublesRule& rule) const {
  const SameKey* const same = by_key_.Find(key);
  if (!same || same->all.IsEmpty()) return nullptr;
  if (same->complete) return (*same->complete)[IndexOf(rule)].First();
  const KeptEntry* only = same->all.First();
  return only->IsComplete(rule) ? only : nullptr;
}

const KeptEntry* KeptEntries::FirstEqual(const TypeRule<DoublesRule>& rule,
                                         const ComparedValues& values) const {
  if (!ComparesTags(rule.rule) || !values.Complete()) return nullptr;
  const SameContent* const found = by_content_.Find(ContentHash(rule.type, values));
  if (!found) return nullptr;
  return found->all.First([&](const KeptEntry& entry) {
    return entry.rule.type == rule.type && entry.ComparedValuesOf(rule.rule->group) == values;
  });
}

const EntryList* KeptEntries::WithKey(std::string_view key) const {
  const SameKey* const same = by_key_.Find(key);
  return same && !same->all.IsEmpty() ? &same->all : nullptr;
}

}  // namespace tarvel
