// SPDX-License-Identifier: MIT
#include "warnings/repeated_keys.h"

#include <utility>

#include "core/text_primitives.h"

namespace tarvel {

void RepeatedKeys::Check(const EntryHead& head) {
  EndEntry(head.offset);
  upper_ = head.key;
  StringToUpper(upper_);
  const std::size_t hash = KeyedHash(upper_);
  const auto offset = static_cast<std::size_t>(head.key.data() - library_.data());
  const auto earlier = offsets_.FindOrPut(
      hash, offset, [&](std::size_t other) { return EqualNoCase(KeyAt(other), head.key); });
  if (!earlier) return;
  use_ = &uses_[upper_];
  use_begin_ = head.offset;
  ++use_->entries;
  if (warnings_.ReportNumber(WarningKind::kKeyTwice)) return;
  const std::string line = std::to_string(warnings_.LineOf(*earlier));
  warnings_.Report(WarningKind::kKeyTwice, head.offset, head.key,
                   head.key.empty() ? "the entry has no key, and neither has that in line " + line
                                    : "the key stands in line " + line + " already");
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

/// The key at `offset`, where one begins.
std::string_view RepeatedKeys::KeyAt(std::size_t offset) const {
  const std::string_view line = library_.substr(offset, library_.find('\n', offset) - offset);
  return line.substr(0, line.find(','));
}

}  // namespace tarvel
