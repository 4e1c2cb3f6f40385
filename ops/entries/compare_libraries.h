// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/hash_index.h"
#include "core/line_stream.h"
#include "core/output_file.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/group_rules.h"
#include "ops/entries/overlapping_reader.h"
#include "warnings/library_scan.h"

namespace tarvel {

/// An entry of the first library, as far as Compare asks for it.
struct KnownEntry {
  const CompareRule* rule;
  std::string_view type;
  std::string_view key;  // upper-cased
  ComparedValues compared;
  std::size_t start;  // where its first line begins
  std::size_t key_hash;
  std::size_t content_hash;  // of type and compared tags
  KnownEntry* next_same_key = nullptr;
  KnownEntry* next_same_content = nullptr;
};

/// The entries of the first library that can give a verdict about one entry of the second, in the
/// order of the file: those with its key, and those with its type and compared tags.
class Matches {
 public:
  struct Match {
    const KnownEntry* entry;
    bool same_key;
  };

  Matches(const KnownEntry* by_key, const KnownEntry* by_content)
      : by_key_(by_key), by_content_(by_content) {}
  /// The next entry; one that matches in both ways comes once, as one with the same key.
  std::optional<Match> Next();

 private:
  const KnownEntry* by_key_;
  const KnownEntry* by_content_;
};

/// The first library, read once and indexed. Entries whose type is in no group never give a verdict
/// and are left out.
class FirstLibrary {
 public:
  /// Called for each entry that can give a verdict, with the offset of its first line.
  using OnEntry =
      std::function<void(const TypeGroup& group, const EntryRecord& entry, std::size_t start)>;

  /// Reads the library from its first known entry on; `stream` must outlive this.
  explicit FirstLibrary(LineStream& stream, const OnEntry& on_entry = {});
  FirstLibrary(const FirstLibrary&) = delete;
  FirstLibrary& operator=(const FirstLibrary&) = delete;

  /// The first entries with the key of `entry`, and with its content; see `Matches`.
  Matches Find(const EntryRecord& entry) const;
  /// An entry's lines up to the first after its head that begins with "}".
  LibraryRange LinesOf(const KnownEntry& entry);
  /// Copies an entry's lines as they stand in the file, up to the first that begins with "}".
  void Copy(const KnownEntry& entry, OutputFile& out);

 private:
  void BuildIndexes();

  LineStream& stream_;
  TextStore store_;
  std::vector<KnownEntry> entries_;
  // Each leads to the first of a chain in the order of the file.
  HashIndex by_key_;
  HashIndex by_content_;
};

/// The second library, read entry by entry. After an entry that was copied, reading goes on after
/// the copy, and that is often before the end of what was read for the entry.
class SecondLibrary {
 public:
  /// Goes to the first known entry; `stream` must outlive this.
  explicit SecondLibrary(LineStream& stream);

  /// Reads the next entry; false at the end of the library.
  bool Next();
  /// The entry that was read last; key and type are upper-cased.
  const EntryRecord& Entry() const { return reader_.Entry(); }
  /// Where its first line begins.
  std::size_t Start() const { return start_; }
  /// Copies its lines as they stand in the file, up to the first that begins with "}"; false when
  /// the file ends before one. Reading goes on after them.
  bool Copy(OutputFile& out);

 private:
  LineStream& stream_;
  OverlappingReader reader_{TagReader(kCompareTags)};
  std::string head_;
  std::size_t start_ = 0;
};

}  // namespace tarvel
