// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ops/entries/kept_entries.h"
#include "warnings/library_scan.h"

namespace tarvel {

/// Adds up, before Clean doubles writes its log, what entries that share a key can make of it
/// beyond the size of the library:
/// - The notes on entries of a type that is not compared: each names all earlier ones with its key.
/// - The tags of an entry: they are shown again for each later one with its key and other tags.
class DoublesLogSize {
 public:
  /// Takes the entries in their order.
  void Take(const EntryHead& entry);
  /// The sum in bytes, an upper limit, when all entries of a library of `size` bytes are taken.
  std::uint64_t Bytes(std::size_t size);

 private:
  struct SharedKey {
    std::string_view id;
    std::uint64_t entries = 0;
    std::uint64_t compared = 0;  // entries of a type that is compared
    std::uint64_t bytes = 0;     // of all the entries
    std::uint64_t longest = 0;   // bytes of one
  };

  static std::uint64_t BytesOfTags(const SharedKey& key);
  void EndEntry(std::size_t next);

  GroupTable<SharedKey> keys_;
  // Of the entry that was taken last:
  SharedKey* last_ = nullptr;  // null if it has no key
  const DoublesRule* rule_ = nullptr;
  std::size_t begin_ = 0;
  std::uint64_t bytes_ = 0;
};

}  // namespace tarvel
