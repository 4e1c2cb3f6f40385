// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "core/name_matcher.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/growing_library.h"
#include "ops/entries/kept_entries.h"

namespace tarvel {

/// Knows the entries of the new library as reading it from its beginning would find them, after
/// each write, without reading it from its beginning.
///
/// Text that is appended is read where reading had stopped for want of text, be it in the middle of
/// a value. After a write in the middle only that part is read anew which the write can have
/// changed: up to an offset after the written bytes where the old reading searched for an entry
/// too.
class LibraryFollower {
 public:
  /// Follows `library`, which must outlive it; only its header may have been written.
  explicit LibraryFollower(GrowingLibrary& library);

  /// Writes an entry's text at `position`: the end of the library or of one of its entries.
  /// References into `Entries` may be gone afterwards.
  void Write(std::size_t position, std::string_view text);

  /// Appends an entry's text and an empty line, where `record` is what reading the text gives.
  /// Saves reading it again, unless it stands inside another entry.
  void Append(std::string_view text, const EntryRecord& record);

  /// The entries that have ended. The last one of the library is missing here while its end is.
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
  };

  bool ReadOn(Reading& reading);
  void ReadAppended();
  void ReadOverwritten(std::size_t begin, std::size_t end);
  void ForgetOld(std::size_t begin, std::size_t end);
  void MarkOffset(std::size_t offset);

  GrowingLibrary& library_;
  NameMatcher tags_;
  KeptEntries entries_;
  Reading current_;
  // One bit a byte: whether an entry was searched for from there. A bit costs less than a list.
  std::vector<bool> between_entries_;
};

}  // namespace tarvel
