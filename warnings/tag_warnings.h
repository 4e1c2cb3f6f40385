// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "warnings/tally.h"
#include "warnings/warnings.h"

namespace tarvel {

/// Tells what Clean tags leaves out without a line in its log. Places are offsets into the library.
class TagWarnings {
 public:
  /// `header_size`: that many bytes at the start of the library are this program's own header,
  /// which nobody misses.
  TagWarnings(FileWarnings& warnings, std::size_t header_size)
      : warnings_(warnings), header_size_(header_size) {}

  /// An entry begins, with this head line.
  void StartEntry(std::string_view head, std::size_t place);
  /// An entry without a key is dropped.
  void NoteDroppedWithoutKey(std::size_t place);
  /// An entry is dropped for its first two tags; `rest` is what stands behind them.
  void NoteDroppedAsEmpty(std::string_view key, std::size_t place, std::string_view rest);
  /// These lines, which begin at `place`, are passed over; told of in front of the first entry.
  void NotePassedOutside(std::string_view text, std::size_t place);
  /// A line is passed over behind an entry's head.
  void NotePassed(std::string_view line, std::size_t place);
  /// A value was read, and its tag is none that is known.
  void NotePassedTag(std::string_view line, std::size_t place);
  /// A tag was taken: text behind it is another one.
  void NoteTag() { in_text_ = false; }
  /// Tells of each unknown tag how often it was dropped.
  void ReportTags();

 private:
  bool CountTag(std::string_view line, std::size_t place);
  void ReportText(std::string_view line, std::size_t place);

  FileWarnings& warnings_;
  std::size_t header_size_;
  std::string key_;
  bool in_entries_ = false;
  bool in_text_ = false;
  int depth_ = 0;  // of the braces of a dropped value that goes on
  Tally unknown_tags_;
};

}  // namespace tarvel
