// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "core/name_matcher.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/growing_library.h"
#include "ops/entries/kept_entries.h"
#include "ops/entries/open_values.h"

namespace tarvel {

/// Offsets in a file: for each block of 128 bytes only the one that was added last.
class LastOffsets {
 public:
  void Add(std::size_t offset);
  bool Has(std::size_t offset) const;
  /// The last of those from `begin` on, but before `end`, as far as they were kept.
  std::optional<std::size_t> LastIn(std::size_t begin, std::size_t end) const;
  /// Removes those from `begin` on, but before `end`.
  void Remove(std::size_t begin, std::size_t end);

 private:
  std::vector<std::uint8_t> blocks_;  // the offset in the block plus 1; 0 for none
};

/// Knows the entries of the new library as reading it from its beginning would find them, after
/// each write, without reading it all again.
///
/// When text is appended, reading continues where it had stopped for want of text, even in the
/// middle of a value. After a write in the middle only the part that the write can have changed is
/// read again: up to an offset after the written bytes where both the old and the new reading
/// search for an entry. The entries that the new reading passes inside another entry are hidden,
/// not forgotten: the next write may end that entry sooner, and lead back to them.
class LibraryFollower {
 public:
  /// Follows `library`, which must outlive it; only its header may have been written.
  explicit LibraryFollower(GrowingLibrary& library);

  /// Writes an entry's text at `position`: the end of the library or of one of its entries. All
  /// texts but the last end with a line feed. References into `Entries` may be invalid afterwards.
  void Write(std::size_t position, std::string_view text);

  /// Appends an entry's text and an empty line, where `record` is what reading the text gives.
  /// Saves reading it again, unless it stands inside another entry.
  void Append(std::string_view text, const EntryRecord& record);

  /// The entries that have ended. The last one of the library is not among them before its end is
  /// written.
  const KeptEntries& Entries() const { return entries_; }

 private:
  enum class Phase { kBetweenEntries, kInEntry, kInValue };

  /// A reading of the library: where it is, and what it knows of the entry that it is in.
  struct Reading {
    std::size_t next = 0;  // where the next line begins
    Phase phase = Phase::kBetweenEntries;
    std::size_t head = 0;
    EntryRecord record;
    // Of a value that goes on with the next line:
    Field field = Field::kJournal;
    int depth = 0;
    bool at_line_break = false;
    std::size_t limit = 0;
    LackingSizes lacking{};  // of the values of which lines were passed without taking their text
    bool reads_all = false;  // no lines may be passed in this entry
  };

  /// What an entry that stays open hides: a reading that knows the entries from `from` on, up to
  /// where the next such reading does.
  struct Hidden {
    std::size_t from;
    Reading reading;
  };

  bool PassLines(Reading& reading);
  static void ReadEntryAgain(Reading& reading, std::size_t head);
  bool ReadLine(Reading& reading) const;
  bool ReadOn(Reading& reading);
  EntryRecord RecordOf(const KeptEntry& entry) const;
  void ReadAppended();
  void ReadOverwritten(std::size_t begin, std::size_t end);
  std::optional<std::size_t> TakeGapFrom(std::size_t offset);
  void HideOld(std::size_t from, std::size_t to, bool joins);
  void HideOldAfter(std::size_t from, std::size_t end);
  void Uncover(std::size_t offset, std::size_t from);
  void CloseHidden(std::size_t end);
  void LeaveGap(std::size_t offset, std::size_t end);
  void Forget(std::size_t begin, std::size_t end);

  GrowingLibrary& library_;
  NameMatcher tags_;
  KeptEntries entries_{[this](const KeptEntry& entry) { return RecordOf(entry); }};
  OpenValues open_values_;
  Reading current_;
  std::vector<Hidden> hidden_;   // the one that begins first is the last
  LastOffsets between_entries_;  // where an entry was searched for, and all after it is known
  std::set<std::size_t> gaps_;   // where hidden readings come to what is not known any more
};

}  // namespace tarvel
