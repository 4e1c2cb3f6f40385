// SPDX-License-Identifier: MIT
#include "ops/entries/library_follower.h"

#include <algorithm>
#include <utility>

#include "core/text_primitives.h"
#include "core/value_reader.h"

namespace tarvel {

namespace {

std::vector<std::string_view> TagNames() {
  std::vector<std::string_view> names;
  names.reserve(kDoublesTags.size());
  for (const TagName& tag : kDoublesTags) names.push_back(tag.name);
  return names;
}

}  // namespace

LibraryFollower::LibraryFollower(GrowingLibrary& library, std::size_t expected)
    : library_(library), tags_(TagNames()), entries_(expected) {
  ReadAppended();
}

void LibraryFollower::Write(std::size_t position, std::string_view text) {
  const bool appends = position == library_.Size();
  library_.Write(position, text);
  if (appends) {
    ReadAppended();
  } else {
    ReadOverwritten(position, position + text.size());
  }
}

void LibraryFollower::Append(std::string_view text, const EntryRecord& record) {
  const std::size_t head = library_.Size();
  library_.Write(head, text);
  if (current_.phase == Phase::kBetweenEntries && current_.next == head) {
    MarkPlace(head);
    current_.next = library_.Size();
    entries_.Add(record, head, current_.next);
  }
  library_.Write(library_.Size(), "\n");
  ReadAppended();
}

void LibraryFollower::ReadAppended() {
  do {
    if (current_.phase == Phase::kBetweenEntries) MarkPlace(current_.next);
  } while (ReadOn(current_) == Step::kDone);
}

/// Reads what a write from `begin` to `end` changed. The reading that had stopped at the end of the
/// library stays as it was if the new one comes to a place that the old one passed.
void LibraryFollower::ReadOverwritten(std::size_t begin, std::size_t end) {
  Reading anew;
  anew.next = begin;
  for (Step step = Step::kDone; step == Step::kDone;) {
    const std::size_t place = anew.next;
    const bool between = anew.phase == Phase::kBetweenEntries;
    if (between && place >= end && place < between_entries_.size() && between_entries_[place]) {
      return;
    }
    ForgetOld(place, place + 1);
    if (between) MarkPlace(place);
    step = ReadOn(anew);
    ForgetOld(place + 1, anew.next);
  }
  current_ = std::move(anew);
}

void LibraryFollower::ForgetOld(std::size_t begin, std::size_t end) {
  entries_.Remove(begin, end);
  const std::size_t last = std::min(end, between_entries_.size());
  for (std::size_t place = begin; place < last; ++place) between_entries_[place] = false;
}

void LibraryFollower::MarkPlace(std::size_t place) {
  if (place >= between_entries_.size()) between_entries_.resize(place + 1);
  between_entries_[place] = true;
}

/// One line further, or as far as the text goes.
LibraryFollower::Step LibraryFollower::ReadOn(Reading& reading) {
  switch (reading.phase) {
    case Phase::kBetweenEntries:
      return LookForHead(reading);
    case Phase::kInEntry:
      return ReadEntryLine(reading);
    case Phase::kInValue:
      return ContinueValue(reading);
  }
  return Step::kNeedsText;
}

LibraryFollower::Step LibraryFollower::LookForHead(Reading& reading) {
  const auto text = library_.ReadLine(reading.next, limits::kPairLine);
  if (!text) return Step::kNeedsText;
  Line line(*text);
  if (IsKnownEntry(line)) {
    reading.record.Start(line.Text());
    reading.head = reading.next;
    reading.phase = Phase::kInEntry;
  }
  reading.next += text->size();
  return Step::kDone;
}

LibraryFollower::Step LibraryFollower::ReadEntryLine(Reading& reading) {
  const auto text = library_.ReadLine(reading.next, limits::kPairLine);
  if (!text) return Step::kNeedsText;
  reading.next += text->size();
  const int tag = tags_.First(*text);
  if (tag < 0) {
    if (text->front() != '}') return Step::kDone;
    reading.phase = Phase::kBetweenEntries;
    entries_.Add(reading.record, reading.head, reading.next);
    return Step::kDone;
  }
  reading.field = kDoublesTags[static_cast<std::size_t>(tag)].field;
  reading.record[reading.field].SetJoined().clear();
  const std::size_t brace = text->find('{');
  if (brace == std::string_view::npos) return Step::kDone;
  reading.depth = 1;
  reading.phase = Phase::kInValue;
  if (brace + 1 < text->size()) {
    ReadValue(reading, text->substr(brace + 1));
  } else {
    reading.at_line_break = false;
    reading.limit = limits::kShortLine;
  }
  return Step::kDone;
}

LibraryFollower::Step LibraryFollower::ContinueValue(Reading& reading) {
  const auto text = library_.ReadLine(reading.next, reading.limit);
  if (!text) return Step::kNeedsText;
  reading.next += text->size();
  const std::size_t start = SkipBlanks(*text, 0);
  if (start == text->size()) {
    reading.limit = limits::kShortLine;
    return Step::kDone;
  }
  if (reading.at_line_break) reading.record[reading.field].SetJoined().push_back(' ');
  ReadValue(reading, text->substr(start));
  return Step::kDone;
}

/// Takes what `text` holds of the value: up to the brace that ends it, to a line break behind which
/// it goes on, or to the end of a line that has none, which ends the value too.
void LibraryFollower::ReadValue(Reading& reading, std::string_view text) {
  std::size_t size = 0;
  for (; size < text.size() && text[size] != '\n'; ++size) {
    if (text[size] == '{') ++reading.depth;
    if (text[size] == '}' && --reading.depth == 0) break;
  }
  reading.record[reading.field].SetJoined().append(text.substr(0, size));
  if (size == text.size() || text[size] != '\n') {
    EndValue(reading);
    return;
  }
  reading.at_line_break = true;
  reading.limit = limits::kContinuation;
}

void LibraryFollower::EndValue(Reading& reading) {
  FieldValue& value = reading.record[reading.field];
  if (reading.field == Field::kPages)
    value.Cut(std::min(value.Text().find('-'), value.Text().size()));
  reading.phase = Phase::kInEntry;
}

}  // namespace tarvel
