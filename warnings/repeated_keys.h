// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
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

/// Finds keys by what they are, letter case aside, as BibTeX does.
class KeyOffsets {
 public:
  /// All keys are parts of `text`, which must outlive this, and end before a "," or a line break.
  explicit KeyOffsets(std::string_view text) : text_(text) {}
  /// The offset of the equal key that was added before. If there is none, adds the key and returns
  /// nothing.
  std::optional<std::size_t> FindOrAdd(std::string_view key);

 private:
  bool IsKeyAt(std::size_t offset, std::string_view key) const;

  std::string_view text_;
  HashIndex offsets_;
  std::string upper_;
};

/// Reports keys that occur again in one library, letter case aside.
class RepeatedKeys {
 public:
  /// `library`, its bytes, and `warnings` must outlive this.
  RepeatedKeys(std::string_view library, FileWarnings& warnings)
      : library_(library), keys_(library), warnings_(warnings) {}

  /// Reports the entry if an earlier one has its key. Takes the entries of `library` in their
  /// order.
  void Check(const EntryHead& head);
  /// The keys that occur more than once. Call it once, after the last entry.
  KeyUses Uses();

 private:
  void EndEntry(std::size_t next);

  std::string_view library_;
  KeyOffsets keys_;
  FileWarnings& warnings_;
  KeyUses uses_;
  KeyUse* use_ = nullptr;      // of the last entry's key, if an earlier entry has it
  std::size_t use_begin_ = 0;  // the last entry's offset
};

}  // namespace tarvel
