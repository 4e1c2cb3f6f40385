// SPDX-License-Identifier: MIT
#include "warnings/repeated_keys.h"

#include <utility>

#include "core/text_primitives.h"

namespace tarvel {

std::optional<std::size_t> KeyOffsets::FindOrAdd(std::string_view key) {
  upper_ = key;
  StringToUpper(upper_);
  return offsets_.FindOrPut(KeyedHash(upper_), static_cast<std::size_t>(key.data() - text_.data()),
                            [&](std::size_t other) { return IsKeyAt(other, key); });
}

/// Whether the key that begins at `offset` is this one. The rest of its line is not looked at.
bool KeyOffsets::IsKeyAt(std::size_t offset, std::string_view key) const {
  const std::string_view rest = text_.substr(offset);
  return EqualNoCase(rest.substr(0, key.size()), key) &&
         (rest.size() == key.size() || rest[key.size()] == ',' || rest[key.size()] == '\n');
}

void RepeatedKeys::Check(const EntryHead& head) {
  EndEntry(head.offset);
  const auto earlier = keys_.FindOrAdd(head.key);
  if (!earlier) return;
  use_ = &uses_[InCapitals(head.key)];
  use_begin_ = head.offset;
  ++use_->entries;
  if (warnings_.ReportNumber(WarningKind::kKeyTwice)) return;
  const std::string line = std::to_string(warnings_.LineOf(*earlier));
  warnings_.Report(WarningKind::kKeyTwice, head.offset, head.key,
                   head.key.empty() ? "the entry has no key, nor has the one in line " + line
                                    : "the entry in line " + line + " has the same key");
}

KeyUses RepeatedKeys::Uses() {
  EndEntry(library_.size());
  return std::move(uses_);
}

/// Counts the bytes of the last entry, which ends where the next begins.
void RepeatedKeys::EndEntry(std::size_t next) {
  if (use_) use_->bytes += next - use_begin_;
  use_ = nullptr;
}

}  // namespace tarvel
