// SPDX-License-Identifier: MIT
#include "ops/entries/library_follower.h"

#include <utility>

#include "core/text_primitives.h"
#include "core/value_reader.h"

namespace tarvel {

LibraryFollower::LibraryFollower(GrowingLibrary& library, unsigned block_bits)
    : library_(library),
      tags_(kDoublesTagNames),
      entries_([this](const KeptEntry& entry) { return RecordOf(entry); }, block_bits) {
  Follow(nullptr, EntryPath::kNowhere);
}

void LibraryFollower::Append(std::string_view text) {
  const std::size_t begin = library_.Size();
  library_.Write(begin, text);
  open_values_.Forget(begin, library_.Size());
  Follow(last_, EntryPath::kNowhere);
}

void LibraryFollower::Append(std::string_view text, const EntryRecord& record) {
  const std::size_t head = library_.Size();
  if (NextOf(last_) != head) {  // it stands inside another entry
    Append(text);
    return Append("\n");
  }
  library_.Write(head, text);
  KeptEntry& added = entries_.Add(record, head, library_.Size());
  entries_.Path().Lead(last_, added, EntryPath::kNowhere);
  last_ = &added;
  open_values_.Forget(head, library_.Size());
  Append("\n");
}

void LibraryFollower::WriteAfter(std::size_t head, std::string_view text) {
  KeptEntry* const entry = entries_.At(head);
  const std::size_t begin = entry->end;
  if (begin == library_.Size()) return Append(text);
  const std::size_t end = begin + text.size();
  Forget(begin, end);
  library_.Write(begin, text);
  open_values_.Forget(begin, end);
  Follow(entry, end);
}

/// Forgets what is known of the bytes from `begin` to `end`, which will be written anew.
void LibraryFollower::Forget(std::size_t begin, std::size_t end) {
  const bool begins_line = library_.Bytes()[begin - 1] == '\n';
  for (KeptEntry* const entry : entries_.Path().TakeReaching(begin)) {
    if (entry->end > begin) {
      entries_.Remove(entry->head, entry->head + 1);
    } else {
      entry->next = begins_line ? begin : entry->end;
    }
  }
  entries_.Remove(begin, end);
  std::erase_if(open_entries_, [begin, end](const auto& open) {
    return open.first < end && open.second.next > begin;
  });
}

/// Follows the path from an entry on it, null for the beginning, and reads what is not known yet.
/// Nothing changed from `settled` on; `kNowhere` where text was appended.
void LibraryFollower::Follow(KeptEntry* entry, std::size_t settled) {
  EntryPath& path = entries_.Path();
  while (KeptEntry* const next = ReadNext(entry)) {
    if (path.Lead(entry, *next, settled)) return;
    entry = &path.GoOnFrom(*next);
  }
  if (settled != EntryPath::kNowhere) path.End(entry);
  last_ = entry;
}

/// Where the entry after this one is searched for; null stands for the beginning.
std::size_t& LibraryFollower::NextOf(KeptEntry* entry) { return entry ? entry->next : first_; }

/// The entry after this one, which is read if it is not known; null if the library ends before its
/// end.
KeptEntry* LibraryFollower::ReadNext(KeptEntry* entry) {
  std::size_t& next = NextOf(entry);
  while (true) {
    KeptEntry* const known = entry ? entries_.Path().Following(*entry) : entries_.At(next);
    if (known) return known;
    const auto text = library_.ReadLine(next, limits::kPairLine);
    if (!text) return nullptr;
    if (Line line(*text); IsKnownEntry(line)) return ReadEntry(next);
    next += text->size();
    if (entry) entries_.Path().NoteReach(*entry);
  }
}

/// Reads the entry that begins at `head`; null if the library ends before its end.
KeptEntry* LibraryFollower::ReadEntry(std::size_t head) {
  Reading reading;
  reading.next = head;
  if (auto open = open_entries_.extract(head)) reading = std::move(open.mapped());
  while (PassLines(reading) || ReadLine(reading)) {
    if (reading.phase == Phase::kAfterEntry) {
      return &entries_.Add(reading.record, head, reading.next, reading.lacking);
    }
  }
  open_entries_.emplace(head, std::move(reading));
  return nullptr;
}

/// Passes lines of an open value; their text is read only if it is needed.
bool LibraryFollower::PassLines(Reading& reading) {
  if (reading.phase != Phase::kInValue) return false;
  const bool ends_at_dash = reading.field == Field::kPages && !reading.page_ended;
  const auto passed =
      open_values_.Pass(library_.Bytes(), reading.next, reading.depth, ends_at_dash);
  if (!passed) return false;
  reading.next = passed->line;
  reading.depth = passed->depth;
  reading.limit = passed->after_blank ? limits::kShortLine : limits::kContinuation;
  if (!reading.page_ended) {
    reading.lacking[static_cast<std::size_t>(reading.field)] += passed->size;
  }
  return true;
}

/// What reading the entry gave when it was added, with the text of all lines: its bytes are still
/// the same.
EntryRecord LibraryFollower::RecordOf(const KeptEntry& entry) const {
  Reading reading;
  reading.next = entry.head;
  while (ReadLine(reading)) {
  }
  return std::move(reading.record);
}

/// Reads one line further; false after the entry, or when the library has no more.
bool LibraryFollower::ReadLine(Reading& reading) const {
  if (reading.phase == Phase::kAfterEntry) return false;
  const bool in_value = reading.phase == Phase::kInValue;
  const auto text = library_.ReadLine(reading.next, in_value ? reading.limit : limits::kPairLine);
  if (!text) return false;
  reading.next += text->size();
  if (in_value) {
    // The blanks that begin the line, and blank lines, are no part of the value.
    const std::size_t first = SkipContinuationBlanks(*text, 0);
    reading.limit = limits::kShortLine;
    if (first == text->size()) return true;
    if (reading.at_line_break) TakePart(reading, " ");
    ContinueValue(reading, text->substr(first));
  } else if (reading.phase == Phase::kBeforeEntry) {
    Line line(*text);
    IsKnownEntry(line);  // writes its type in capitals
    reading.record.Start(line.Text());
    reading.phase = Phase::kInEntry;
  } else if (const int tag = tags_.First(*text); tag >= 0) {
    reading.field = kDoublesTags[static_cast<std::size_t>(tag)].field;
    StartValue(reading, *text);
  } else if (text->front() == '}') {
    reading.phase = Phase::kAfterEntry;
  }
  return true;
}

/// Starts the value of the field that a line names. It begins after the first brace.
void LibraryFollower::StartValue(Reading& reading, std::string_view line) {
  reading.record[reading.field].SetJoined().clear();
  reading.lacking[static_cast<std::size_t>(reading.field)] = 0;
  reading.page_ended = false;
  const std::size_t brace = line.find('{');
  if (brace == std::string_view::npos) return;
  reading.depth = 1;
  reading.phase = Phase::kInValue;
  reading.at_line_break = false;
  reading.limit = limits::kShortLine;
  const std::string_view part = line.substr(brace + 1);
  if (!part.empty()) ContinueValue(reading, part);
}

/// Takes what the rest of a line holds of a value.
void LibraryFollower::ContinueValue(Reading& reading, std::string_view part) {
  const std::size_t end = FindValueStop(part, 0, reading.depth);
  TakePart(reading, part.substr(0, end));
  if (reading.depth > 0 && end < part.size()) {  // a line break: the value goes on
    reading.at_line_break = true;
    reading.limit = limits::kContinuation;
  } else {
    reading.phase = Phase::kInEntry;
  }
}

/// Adds a part to a value; of pages only what belongs to the first.
void LibraryFollower::TakePart(Reading& reading, std::string_view part) {
  if (reading.page_ended) return;
  const std::string_view taken = reading.field == Field::kPages ? FirstPage(part) : part;
  reading.page_ended = taken.size() < part.size();
  reading.record[reading.field].SetJoined().append(taken);
}

}  // namespace tarvel
