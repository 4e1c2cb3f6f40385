// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string_view>

#include "core/name_matcher.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/growing_library.h"
#include "ops/entries/kept_entries.h"
#include "ops/entries/open_values.h"

namespace tarvel {

/// Knows the entries of the new library as reading it from its beginning would find them, after
/// each write, without reading it all again.
///
/// When text is appended, reading continues where it had stopped for want of text, even in the
/// middle of a value. After a write in the middle, only what is not known yet is read: entries that
/// stand inside others are not found, but stay known, as a later write may lead back to them.
class LibraryFollower {
 public:
  /// Follows `library`, which must outlive it; only its header may have been written. The path
  /// among its entries has blocks of 2^`block_bits` bytes.
  explicit LibraryFollower(GrowingLibrary& library, unsigned block_bits = EntryPath::kBlockBits);

  /// Appends text. All texts but the last end with a line feed.
  void Append(std::string_view text);
  /// Appends an entry's text and an empty line, where `record` is what reading the text gives.
  /// Saves reading it again, unless it stands inside another entry.
  void Append(std::string_view text, const EntryRecord& record);
  /// Writes text after the entry, one of those that are found, whose first line begins at `head`.
  /// The text ends with a line feed. Entries that it replaces are gone afterwards.
  void WriteAfter(std::size_t head, std::string_view text);

  /// The entries that have ended. The last one of the library is not among them before its end is
  /// written.
  const KeptEntries& Entries() const { return entries_; }

 private:
  enum class Phase { kBeforeEntry, kInEntry, kInValue, kAfterEntry };

  /// The reading of an entry: how far it came, and what it knows.
  struct Reading {
    std::size_t next = 0;  // where the next line begins
    Phase phase = Phase::kBeforeEntry;
    EntryRecord record;
    // Of a value that goes on with the next line:
    Field field = Field::kJournal;
    int depth = 0;
    bool at_line_break = false;
    std::size_t limit = 0;
    LackingSizes lacking{};   // of the values of which lines were passed without taking their text
    bool page_ended = false;  // the rest of the value is no part of the first page
  };

  bool PassLines(Reading& reading);
  bool ReadLine(Reading& reading) const;
  static void StartValue(Reading& reading, std::string_view line);
  static void ContinueValue(Reading& reading, std::string_view part);
  static void TakePart(Reading& reading, std::string_view part);
  EntryRecord RecordOf(const KeptEntry& entry) const;
  KeptEntry* ReadNext(KeptEntry* entry);
  KeptEntry* ReadEntry(std::size_t head);
  std::size_t& NextOf(KeptEntry* entry);
  void Follow(KeptEntry* entry, std::size_t settled);
  void Forget(std::size_t begin, std::size_t end);

  GrowingLibrary& library_;
  NameMatcher tags_;
  KeptEntries entries_;
  OpenValues open_values_;
  std::size_t first_ = 0;      // the first entry's head, or how far the lines before it were read
  KeptEntry* last_ = nullptr;  // of the path
  // Entries that had not ended at the end of the library, by their heads.
  std::map<std::size_t, Reading> open_entries_;
};

}  // namespace tarvel
