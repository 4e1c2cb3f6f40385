// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "core/line_stream.h"
#include "ops/entries/entry_record.h"

namespace tarvel {

/// Reads entries of which each may begin inside the one read before: an entry's tags can go on
/// after the offset where its copy ends, as in a library whose entries close with "} title". As
/// soon as such a reading comes to a line at which the one before it was, it takes what that one
/// found from there on, so that no line is read again and again. Values that go on over the entries
/// after them are looked up, not read again.
class OverlappingReader {
 public:
  explicit OverlappingReader(const TagReader& tags) : tags_(tags) {}

  /// Reads the entry whose first line, `head`, was just taken from `input`, up to what ends it.
  /// Every entry of an input must be further on than the one before.
  EntryLineEnd Read(LineStream& input, std::string_view head);
  /// The entry that was read last.
  const EntryRecord& Entry() const { return *entry_; }
  /// Whether a line ended that entry, and not the end of the file, and it was the line that ends
  /// at `offset`.
  bool ClosedAt(std::size_t offset) const {
    return end_ == EntryLineEnd::kClosed && end_offset_ == offset;
  }

 private:
  void Remember(std::size_t offset);
  bool Joins(std::size_t offset);
  void TakeRest(std::size_t offset);

  TagReader tags_;
  LongValues long_values_;
  std::unique_ptr<EntryRecord> entry_ = std::make_unique<EntryRecord>();
  std::unique_ptr<EntryRecord> before_ = std::make_unique<EntryRecord>();
  // Where lines of the last reading begin, last line first: those passed are removed from the
  // back.
  std::vector<std::size_t> lines_;
  std::vector<std::size_t> new_lines_;
  EntryLineEnd end_ = EntryLineEnd::kClosed;
  std::size_t end_offset_ = 0;
};

}  // namespace tarvel
