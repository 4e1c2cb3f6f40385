// SPDX-License-Identifier: MIT
#include "ops/entries/overlapping_reader.h"

#include <utility>

namespace tarvel {

namespace {

/// Of the offsets where lines begin only those this far apart are remembered, so that a library of
/// short lines does not take more memory for its offsets than for its bytes.
constexpr std::size_t kOffsetDistance = 16;

}  // namespace

EntryLineEnd OverlappingReader::Read(LineStream& input, std::string_view head) {
  current_ = 1 - current_;
  EntryRecord& entry = records_[current_];
  entry.Start(head);
  new_lines_.clear();
  EntryLineEnd end = EntryLineEnd::kInside;
  while (end == EntryLineEnd::kInside) {
    const std::size_t offset = input.Position();
    if (Joins(offset)) {
      TakeRest(offset);
      input.SetPosition(end_offset_);
      break;
    }
    end = tags_.ReadLine(input, entry, &long_values_);
    if (input.Position() != offset) Remember(offset);
  }
  if (end != EntryLineEnd::kInside) {
    end_ = end;
    end_offset_ = input.Position();
    lines_.clear();
  }
  lines_.insert(lines_.end(), new_lines_.rbegin(), new_lines_.rend());
  return end_;
}

void OverlappingReader::Remember(std::size_t offset) {
  if (!new_lines_.empty() && offset - new_lines_.back() < kOffsetDistance) return;
  new_lines_.push_back(offset);
}

/// Whether the reading before this one took a line from `offset` too.
bool OverlappingReader::Joins(std::size_t offset) {
  while (!lines_.empty() && lines_.back() < offset) lines_.pop_back();
  return !lines_.empty() && lines_.back() == offset;
}

/// Takes over the values that the lines from `offset` on gave.
void OverlappingReader::TakeRest(std::size_t offset) {
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    FieldValue& earlier = records_[1 - current_].fields[i];
    if (earlier.Offset() >= offset) std::swap(records_[current_].fields[i], earlier);
  }
}

}  // namespace tarvel
