// SPDX-License-Identifier: MIT
#include "ops/entries/overlapping_reader.h"

#include <algorithm>
#include <utility>

namespace tarvel {

namespace {

/// Of the offsets where lines begin only those this far apart are remembered, so that a library of
/// short lines does not take more memory for its offsets than for its bytes.
constexpr std::size_t kOffsetDistance = 16;

}  // namespace

EntryLineEnd OverlappingReader::Read(LineStream& input, std::string_view head) {
  KeepLines(input.Position());
  current_ = 1 - current_;
  EntryRecord& entry = records_[current_];
  entry.Start(head);
  lines_.clear();
  EntryLineEnd end = EntryLineEnd::kInside;
  while (end == EntryLineEnd::kInside) {
    const std::size_t offset = input.Position();
    const auto known = known_.empty() ? known_.end() : known_.find(offset);
    if (known != known_.end()) {
      rest_ = rests_[known->second];
      TakeRest(input);
      return rest_.end;
    }
    end = tags_.ReadLine(input, entry, &long_values_);
    if (input.Position() != offset) lines_.push_back(offset);
  }
  rest_ = {.end = end, .end_offset = input.Position()};
  return end;
}

/// Remembers the lines of the last reading if the next entry, whose lines begin at `from`, stands
/// among them; forgets all lines that no entry can come to any more.
void OverlappingReader::KeepLines(std::size_t from) {
  farthest_ = std::max(farthest_, rest_.end_offset);
  if (from >= farthest_ && !known_.empty()) {
    known_.clear();
    rests_.clear();
  }
  Rest rest{.end = rest_.end, .end_offset = rest_.end_offset};
  bool is_new = true;
  std::size_t last = static_cast<std::size_t>(-1);
  for (auto line = lines_.rbegin(); line != lines_.rend() && *line >= from; ++line) {
    for (std::size_t i = 0; i < kFieldCount; ++i) {
      const std::size_t offset = records_[current_].fields[i].Offset();
      if (offset < *line || rest.fields[i] == offset) continue;
      rest.fields[i] = offset;
      is_new = true;
    }
    if (last - *line < kOffsetDistance) continue;
    if (std::exchange(is_new, false)) rests_.push_back(rest);
    last = *line;
    known_.emplace(last, rests_.size() - 1);
  }
}

/// Takes over the values that the lines of the rest give.
void OverlappingReader::TakeRest(LineStream& input) {
  EntryRecord& entry = records_[current_];
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    FieldValue& earlier = records_[1 - current_].fields[i];
    if (rest_.fields[i] == 0) continue;
    if (earlier.Offset() == rest_.fields[i]) {
      std::swap(entry.fields[i], earlier);
    } else {
      input.SetPosition(rest_.fields[i]);
      tags_.ReadLine(input, entry, &long_values_);
    }
  }
  input.SetPosition(rest_.end_offset);
}

}  // namespace tarvel
