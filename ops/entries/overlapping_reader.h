// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "core/line_stream.h"
#include "ops/entries/entry_record.h"

namespace tarvel {

/// Reads entries of which each may begin inside the one read before: an entry's tags can go on
/// after the offset where its copy ends, as in a library whose entries close with "} title". As
/// soon as a reading comes to a line that the one before it also read, it takes over what that one
/// found from there on, so that no line is read many times. Values that go on over the entries
/// after them are looked up, not read again.
class OverlappingReader {
 public:
  explicit OverlappingReader(const TagReader& tags) : tags_(tags) {}

  /// Reads the entry whose first line, `head`, was just taken from `input`, up to what ends it.
  /// Every entry must begin after the beginning of the one before.
  EntryLineEnd Read(LineStream& input, std::string_view head);
  /// The entry that was read last.
  const EntryRecord& Entry() const { return records_[current_]; }
  /// Whether that entry was ended by the line that ends at `offset`, not by the end of the file.
  bool ClosedAt(std::size_t offset) const {
    return end_ == EntryLineEnd::kClosed && end_offset_ == offset;
  }

 private:
  void Remember(std::size_t offset);
  bool Joins(std::size_t offset);
  void TakeRest(std::size_t offset);

  TagReader tags_;
  LongValues long_values_;
  std::array<EntryRecord, 2> records_;  // of the last entry and the one before it
  std::size_t current_ = 0;
  // Where lines of the last reading begin, the last line first: those that were passed are removed
  // from the back.
  std::vector<std::size_t> lines_;
  std::vector<std::size_t> new_lines_;
  EntryLineEnd end_ = EntryLineEnd::kClosed;
  std::size_t end_offset_ = 0;
};

}  // namespace tarvel
