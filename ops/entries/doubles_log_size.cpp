// SPDX-License-Identifier: MIT
#include "ops/entries/doubles_log_size.h"

#include <algorithm>

#include "ops/entries/group_rules.h"

namespace tarvel {

void DoublesLogSize::Take(const EntryHead& entry) {
  EndEntry(entry.offset);
  last_ = entry.key.empty() ? nullptr : &keys_.FindOrAdd(entry.key);
  rule_ = DoublesRuleFor(entry.type).rule;
  begin_ = entry.offset;
}

std::uint64_t DoublesLogSize::Bytes(std::size_t size) {
  EndEntry(size);
  last_ = nullptr;
  return bytes_;
}

/// What the tags of the entries with this key can take in the log, without the size of the entries.
std::uint64_t DoublesLogSize::BytesOfTags(const SharedKey& key) {
  return std::max(key.compared * key.longest, key.bytes) - key.bytes;
}

/// Adds the entry that was taken last, which ends where the next begins.
void DoublesLogSize::EndEntry(std::size_t next) {
  if (!last_) return;
  SharedKey& key = *last_;
  const bool is_noted = rule_ && !rule_->same_key_note.empty();
  if (is_noted) bytes_ += key.entries * (rule_->same_key_note.size() + 2 * key.id.size());
  bytes_ -= BytesOfTags(key);
  ++key.entries;
  if (rule_ && !is_noted) ++key.compared;
  key.bytes += next - begin_;
  key.longest = std::max<std::uint64_t>(key.longest, next - begin_);
  bytes_ += BytesOfTags(key);
}

}  // namespace tarvel
