// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "ops/entries/entry_record.h"
#include "ops/entries/group_rules.h"

namespace tarvel {

/// The values of an entry.
class KeptValues {
 public:
  explicit KeptValues(const EntryRecord& record);

  /// The type word as its rule holds it; empty for a type of no rule.
  std::string_view Type() const { return type_; }
  /// The compared values, views into this.
  ComparedValues ComparedValuesOf(const TypeGroup& group) const;

 private:
  std::string_view type_;
  std::string text_;  // all of them
  std::array<std::size_t, kFieldCount + 1> bounds_{};
};

struct SameKey;
struct SameContent;

/// An entry of the new library. There is one for each entry, so it is kept small: its values are
/// read again when another entry is compared with it.
struct KeptEntry {
  std::size_t head = 0;           // the offset of its first line
  std::size_t end = 0;            // the offset of the line after its last
  std::size_t next = 0;           // the next entry's head, or how far the lines before it were read
  std::uint16_t present = 0;      // bit i: the tag of field i is present
  bool on_path = false;           // for `EntryPath`
  std::uint32_t unread_size = 0;  // of the compared values mod 2^32, if their text is not read yet
  KeptEntry* following = nullptr;  // the one at `next`, when it was last looked up
  SameKey* same_key = nullptr;
  SameContent* same_content = nullptr;                    // null if one is missing or not read yet
  mutable std::unique_ptr<const KeptValues> values = {};  // null until they are asked for

  /// The key; lives as long as the `KeptEntries`.
  std::string_view Key() const;
  /// Whether all the compared tags of `rule` are present.
  bool IsComplete(const DoublesRule& rule) const;
};

}  // namespace tarvel
