// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/hash_index.h"
#include "core/keyed_hash.h"
#include "warnings/library_scan.h"
#include "warnings/warnings.h"

namespace tarvel {

/// The entries of one key.
struct KeyUse {
  std::uint64_t entries = 1;
  std::uint64_t bytes = 0;  // without those of the first
};

/// The keys that more than one entry has, in capitals.
using KeyUses = std::unordered_map<std::string, KeyUse, KeyedStringHash>;

/// Reports keys that occur again in one library, letter case aside.
class RepeatedKeys {
 public:
  /// `library`, its bytes, and `warnings` must outlive this.
  RepeatedKeys(std::string_view library, FileWarnings& warnings)
      : library_(library), warnings_(warnings) {}

  /// Reports the entry if an earlier one has its key. Takes the entries of `library` in their
  /// order.
  void Check(const EntryHead& head);
  /// The keys that occur more than once. Call it once, after the last entry.
  KeyUses Uses();

 private:
  void EndEntry(std::size_t next);
  std::string_view KeyAt(std::size_t offset) const;

  std::string_view library_;
  FileWarnings& warnings_;
  HashIndex offsets_;  // of the keys
  std::string upper_;
  KeyUses uses_;
  KeyUse* use_ = nullptr;      // of the last entry's key, if an earlier entry has it
  std::size_t use_begin_ = 0;  // the last entry's offset
};

}  // namespace tarvel
