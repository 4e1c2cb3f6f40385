// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/line_stream.h"
#include "ops/entries/entry_record.h"

namespace tarvel {

/// Reads entries of which each may begin inside the one read before: an entry's tags can go on
/// after the offset where its copy ends, as in a library whose entries close with "} title". As
/// soon as a reading comes to a line that an earlier one also read, it takes over what that one
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
    return rest_.end == EntryLineEnd::kClosed && rest_.end_offset == offset;
  }

 private:
  /// What reading on from a line gives: where the last line of each field begins, 0 for a field
  /// that no line fills, and what ends the entry.
  struct Rest {
    std::array<std::size_t, kFieldCount> fields{};
    EntryLineEnd end = EntryLineEnd::kClosed;
    std::size_t end_offset = 0;
  };

  void KeepLines(std::size_t from);
  void TakeRest(LineStream& input);

  TagReader tags_;
  LongValues long_values_;
  std::array<EntryRecord, 2> records_;  // of the last entry and the one before it
  std::size_t current_ = 0;
  // Of the last reading: where its lines begin, up to one that was known, and the rest from there.
  std::vector<std::size_t> lines_;
  Rest rest_;
  // Of the earlier ones, by the offsets of lines: numbers of `rests_`.
  std::unordered_map<std::size_t, std::uint32_t> known_;
  std::vector<Rest> rests_;
  std::size_t farthest_ = 0;  // of their ends
};

}  // namespace tarvel
