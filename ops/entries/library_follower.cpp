// SPDX-License-Identifier: MIT
#include "ops/entries/library_follower.h"

#include <algorithm>
#include <utility>

#include "core/text_primitives.h"
#include "core/value_reader.h"

namespace tarvel {

namespace {

constexpr std::size_t kBlockSize = 128;

}  // namespace

void LastOffsets::Add(std::size_t offset) {
  const std::size_t number = offset / kBlockSize;
  if (number >= blocks_.size()) blocks_.resize(number + 1);
  blocks_[number] = std::max(blocks_[number], static_cast<std::uint8_t>(offset % kBlockSize + 1));
}

bool LastOffsets::Has(std::size_t offset) const {
  const std::size_t number = offset / kBlockSize;
  return number < blocks_.size() && blocks_[number] == offset % kBlockSize + 1;
}

std::optional<std::size_t> LastOffsets::LastIn(std::size_t begin, std::size_t end) const {
  for (std::size_t number = std::min(end / kBlockSize + 1, blocks_.size()); number-- > 0;) {
    const std::size_t after = number * kBlockSize + blocks_[number];
    if (blocks_[number] != 0 && after > begin && after <= end) return after - 1;
    if (number * kBlockSize <= begin) break;
  }
  return std::nullopt;
}

void LastOffsets::Remove(std::size_t begin, std::size_t end) {
  const std::size_t last = std::min((end + kBlockSize - 1) / kBlockSize, blocks_.size());
  for (std::size_t number = begin / kBlockSize; number < last; ++number) {
    const std::size_t after = number * kBlockSize + blocks_[number];
    if (after > begin && after <= end) blocks_[number] = 0;
  }
}

LibraryFollower::LibraryFollower(GrowingLibrary& library)
    : library_(library), tags_(kDoublesTagNames) {
  ReadAppended();
}

void LibraryFollower::Write(std::size_t position, std::string_view text) {
  const bool appends = position == library_.Size();
  library_.Write(position, text);
  open_values_.Forget(position, position + text.size());
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
    between_entries_.Add(head);
    current_.next = library_.Size();
    entries_.Add(record, head, current_.next);
  }
  library_.Write(library_.Size(), "\n");
  open_values_.Forget(head, library_.Size());
  ReadAppended();
}

void LibraryFollower::ReadAppended() {
  do {
    if (current_.phase == Phase::kBetweenEntries) {
      CloseHidden(current_.next);
      between_entries_.Add(current_.next);
    }
  } while (ReadOn(current_));
}

/// Reads what a write from `begin` to `end` changed. The reading that had stopped at the end of the
/// library stays as it was if the new one comes to an offset that the old one passed.
void LibraryFollower::ReadOverwritten(std::size_t begin, std::size_t end) {
  Uncover(end, end);
  Forget(begin, end);
  Reading anew;
  anew.next = begin;
  std::size_t from = begin + 1;  // before it nothing is left of the old reading
  do {
    if (anew.phase != Phase::kBetweenEntries) continue;
    if (anew.next >= end) {
      const bool joins = between_entries_.Has(anew.next);
      HideOld(from, anew.next, joins);
      if (joins) {
        const std::optional<std::size_t> gap = TakeGapFrom(anew.next);
        if (!gap) return ReadAppended();
        anew.next = *gap;
      }
      Forget(anew.next, anew.next + 1);
    }
    between_entries_.Add(anew.next);
    from = anew.next + 1;
  } while (ReadOn(anew));
  if (anew.phase != Phase::kBetweenEntries) HideOldAfter(from, end);
  current_ = std::move(anew);
}

/// The first offset from `offset` on where the reading that leads there must go on, if any.
std::optional<std::size_t> LibraryFollower::TakeGapFrom(std::size_t offset) {
  auto gap = gaps_.lower_bound(offset);
  while (gap != gaps_.end()) {
    const std::size_t visible = entries_.Hidden().VisibleFrom(*gap);
    if (visible == *gap) return gaps_.extract(gap).value();
    gap = gaps_.lower_bound(visible);
  }
  return std::nullopt;
}

/// Hides what the old reading knows from `from` to `to`, as an entry of the new one ends at `to`.
/// Where the old one does not pass `to`, it keeps a gap at its last entry before.
void LibraryFollower::HideOld(std::size_t from, std::size_t to, bool joins) {
  Uncover(from, from);
  Uncover(to, from);
  std::optional<std::size_t> last = between_entries_.LastIn(from, to);
  if (last && !joins) {
    if (const auto range = entries_.Hidden().RangeAt(*last)) last = *range - 1;
    LeaveGap(*last, to);
    last = between_entries_.LastIn(from, *last);
  }
  if (last) {
    entries_.Hidden().Add(from, to);
  } else {
    Forget(from, to);
  }
}

/// Hides what is known from `from` on, as an entry of the new reading does not end; nothing before
/// `end` is. At the end of the library the old one knows that the next text may begin an entry.
void LibraryFollower::HideOldAfter(std::size_t from, std::size_t end) {
  Uncover(from, from);
  const bool is_between = current_.phase == Phase::kBetweenEntries;
  const std::size_t stop = is_between ? current_.next : current_.head;
  if (stop < std::max(from, end)) return Forget(from, library_.Size());
  entries_.Hidden().Add(from, HiddenRanges::kOpen);
  hidden_.push_back({from, std::move(current_)});
}

/// Makes what was hidden at `offset` the old reading. The entries that hid it, if they begin at
/// `from` or after, become gaps.
void LibraryFollower::Uncover(std::size_t offset, std::size_t from) {
  while (const auto range = entries_.Hidden().RangeAt(offset)) {
    entries_.Hidden().Remove(*range);
    if (!hidden_.empty() && hidden_.back().from == *range) {
      current_ = std::move(hidden_.back().reading);
      hidden_.pop_back();
    }
    if (*range > from) LeaveGap(*range - 1, *range);
  }
}

/// The entry that hid all to the end of the library has ended after it, at `end`.
void LibraryFollower::CloseHidden(std::size_t end) {
  for (const Hidden& hidden : hidden_) {
    const Reading& reading = hidden.reading;
    const bool is_between = reading.phase == Phase::kBetweenEntries;
    const std::size_t gap = is_between ? reading.next : reading.head;
    LeaveGap(gap, gap + 1);
    entries_.Hidden().Close(hidden.from, end);
  }
  hidden_.clear();
}

/// Forgets what is known from `offset` to `end`, and that what was known before leads there.
void LibraryFollower::LeaveGap(std::size_t offset, std::size_t end) {
  Forget(offset, end);
  gaps_.insert(offset);
}

void LibraryFollower::Forget(std::size_t begin, std::size_t end) {
  if (begin == end) return;
  entries_.Remove(begin, end);
  entries_.Hidden().RemoveAll(begin + 1, end);
  between_entries_.Remove(begin, end);
  gaps_.erase(gaps_.lower_bound(begin), gaps_.lower_bound(end));
}

/// Passes lines of an open value; their text is read only if it is needed.
bool LibraryFollower::PassLines(Reading& reading) {
  if (reading.phase != Phase::kInValue || reading.reads_all) return false;
  const auto passed = open_values_.Pass(library_.Bytes(), reading.next, reading.depth);
  if (!passed) return false;
  reading.next = passed->line;
  reading.depth = passed->depth;
  reading.limit = passed->after_blank ? limits::kShortLine : limits::kContinuation;
  reading.lacking[static_cast<std::size_t>(reading.field)] += passed->size;
  return true;
}

/// Goes back to an entry's first line, to take the text of all lines.
void LibraryFollower::ReadEntryAgain(Reading& reading, std::size_t head) {
  reading = Reading();
  reading.next = head;
  reading.reads_all = true;
}

/// What reading the entry gave when it was added: its bytes are still the same.
EntryRecord LibraryFollower::RecordOf(const KeptEntry& entry) const {
  Reading reading;
  ReadEntryAgain(reading, entry.head);
  while (reading.next < entry.end && ReadLine(reading)) {
  }
  return std::move(reading.record);
}

/// Reads further, one line or several; false when the library has no more.
bool LibraryFollower::ReadOn(Reading& reading) {
  if (PassLines(reading)) return true;
  const bool was_inside = reading.phase != Phase::kBetweenEntries;
  if (!ReadLine(reading)) return false;
  const bool ends = was_inside && reading.phase == Phase::kBetweenEntries;
  if (ends) entries_.Add(reading.record, reading.head, reading.next, reading.lacking);
  return true;
}

/// Reads one line further; false when the library has no more.
bool LibraryFollower::ReadLine(Reading& reading) const {
  const bool in_value = reading.phase == Phase::kInValue;
  const auto text = library_.ReadLine(reading.next, in_value ? reading.limit : limits::kPairLine);
  if (!text) return false;
  const std::size_t start = reading.next;
  reading.next += text->size();
  std::string_view part;  // what the line holds of a value
  switch (reading.phase) {
    case Phase::kBetweenEntries: {
      // A head begins an entry; other lines belong to none.
      Line line(*text);
      if (!IsKnownEntry(line)) return true;
      reading.record.Start(line.Text());
      reading.lacking = {};
      reading.head = start;
      reading.phase = Phase::kInEntry;
      return true;
    }
    case Phase::kInEntry: {
      // A line that names a tag begins its value. Of the others a "}" ends the entry.
      const int tag = tags_.First(*text);
      if (tag < 0) {
        if (text->front() != '}') return true;
        reading.phase = Phase::kBetweenEntries;
        reading.reads_all = false;
        return true;
      }
      reading.field = kDoublesTags[static_cast<std::size_t>(tag)].field;
      reading.record[reading.field].SetJoined().clear();
      reading.lacking[static_cast<std::size_t>(reading.field)] = 0;
      const std::size_t brace = text->find('{');
      if (brace == std::string_view::npos) return true;
      reading.depth = 1;
      reading.phase = Phase::kInValue;
      reading.at_line_break = false;
      reading.limit = limits::kShortLine;
      part = text->substr(brace + 1);
      if (part.empty()) return true;  // the value begins on the next line
      break;
    }
    case Phase::kInValue: {
      // The blanks that begin the line, and blank lines, are no part of the value.
      const std::size_t first = SkipContinuationBlanks(*text, 0);
      reading.limit = limits::kShortLine;
      if (first == text->size()) return true;
      if (reading.at_line_break) reading.record[reading.field].SetJoined().push_back(' ');
      part = text->substr(first);
      break;
    }
  }
  FieldValue& value = reading.record[reading.field];
  const std::size_t end = FindValueStop(part, 0, reading.depth);
  value.SetJoined().append(part.substr(0, end));
  if (reading.depth > 0 && end < part.size()) {  // a line break: the value goes on
    reading.at_line_break = true;
    reading.limit = limits::kContinuation;
    return true;
  }
  if (reading.field == Field::kPages && reading.lacking[static_cast<std::size_t>(reading.field)]) {
    ReadEntryAgain(reading, reading.head);
    return ReadLine(reading);  // its first line
  }
  if (reading.field == Field::kPages) value.Truncate(FirstPage(value.Text()).size());
  reading.phase = Phase::kInEntry;
  return true;
}

}  // namespace tarvel
