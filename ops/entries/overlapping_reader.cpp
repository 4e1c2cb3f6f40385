// SPDX-License-Identifier: MIT
#include "ops/entries/overlapping_reader.h"

#include <utility>

namespace tarvel {

namespace {

/// Of the places where lines begin only those this far apart are remembered, so that a library of
/// short lines does not take more memory for its places than for its bytes.
constexpr std::size_t kPlaceDistance = 16;

}  // namespace

EntryLineEnd OverlappingReader::Read(LineStream& input, std::string_view head) {
  std::swap(entry_, before_);
  entry_.Start(head);
  new_lines_.clear();
  EntryLineEnd end = EntryLineEnd::kInside;
  while (end == EntryLineEnd::kInside) {
    const std::size_t place = input.Position();
    if (Joins(place)) {
      TakeRest(place);
      input.SetPosition(end_place_);
      break;
    }
    end = tags_.ReadLine(input, entry_, &long_values_);
    if (input.Position() != place) Remember(place);
  }
  if (end != EntryLineEnd::kInside) {
    end_ = end;
    end_place_ = input.Position();
    lines_.clear();
  }
  lines_.insert(lines_.end(), new_lines_.rbegin(), new_lines_.rend());
  return end_;
}

void OverlappingReader::Remember(std::size_t place) {
  if (!new_lines_.empty() && place - new_lines_.back() < kPlaceDistance) return;
  new_lines_.push_back(place);
}

/// Whether the reading before this one took a line from `place` too.
bool OverlappingReader::Joins(std::size_t place) {
  while (!lines_.empty() && lines_.back() < place) lines_.pop_back();
  return !lines_.empty() && lines_.back() == place;
}

/// Takes over the values that the lines from `place` on gave.
void OverlappingReader::TakeRest(std::size_t place) {
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    if (before_.fields[i].Place() >= place) std::swap(entry_.fields[i], before_.fields[i]);
  }
}

}  // namespace tarvel
