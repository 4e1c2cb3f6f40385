// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "warnings/tally.h"
#include "warnings/warnings.h"

namespace tarvel {

/// Reports what Clean tags leaves out without a line in its log. Offsets are into the library.
class TagWarnings {
 public:
  explicit TagWarnings(FileWarnings& warnings) : warnings_(warnings) {}

  /// An entry begins, with this head line.
  void StartEntry(std::string_view head, std::size_t offset);
  /// The entry has ended; `at_next_head`: with the head of the next one, to which the lines after
  /// this entry's head will be read again.
  void EndEntry(bool at_next_head);
  /// An entry without a key is dropped. `offset` is that of the last byte of its first line.
  /// `library` must outlive this.
  void NoteDroppedWithoutKey(std::string_view library, std::size_t offset);
  /// An entry is dropped for the two lines after its first, which mention an owner and a timestamp.
  /// `offset` is that of the last byte of the first line, and `rest_at` where the rest of it
  /// begins. `library` must outlive this.
  void NoteDroppedAsEmpty(std::string_view key, std::size_t offset, std::string_view library,
                          std::size_t rest_at);
  /// A line that defines a string is removed and logged.
  void NoteRemovedString(std::string_view line, std::size_t offset);
  /// These lines, which begin at `offset`, are skipped; reported in front of the first entry.
  void NoteSkippedOutside(std::string_view text, std::size_t offset);
  /// A line is skipped after an entry's head.
  void NoteSkipped(std::string_view line, std::size_t offset);
  /// A value was read, and its tag is none that is known.
  void NoteSkippedTag(std::string_view line, std::size_t offset);
  /// The tag of a line was taken for the tag `known`, which was written or not.
  void NoteTag(std::string_view line, std::string_view known, bool was_written, std::size_t offset);
  /// The value was read from this line, to which those that it goes on in are joined; its last line
  /// in the library ends at `offset`.
  void NoteAfterValue(std::string_view line, std::string_view value, std::size_t offset);
  /// Reports for each unknown tag how often it was dropped.
  void ReportTags();

 private:
  void SkipEntry(std::string_view library, std::size_t offset);
  void FollowDropped(std::size_t to);
  void EndDropped();
  void ReportRenamed(std::string_view name, std::string_view known, std::size_t offset);
  bool CountTag(std::string_view line, std::size_t offset);
  void ReportText(std::string_view line, std::size_t offset);

  FileWarnings& warnings_;
  std::string key_;
  bool in_entries_ = false;
  // A dropped entry, whose lines are no text: the last byte of its first line, how far its end was
  // looked for, the depth of the braces there, and the end.
  static constexpr std::size_t kOpen = static_cast<std::size_t>(-1);  // not found yet
  std::string_view library_;
  std::size_t dropped_head_ = 0;
  std::size_t dropped_at_ = 0;
  std::ptrdiff_t dropped_depth_ = 0;
  std::size_t dropped_end_ = 0;
  bool in_text_ = false;
  std::ptrdiff_t depth_ = 0;  // of the braces of a dropped value that goes on
  Tally unknown_tags_;
  // Of the entry: the tags that were written, and under which name each stood first.
  std::map<std::string_view, std::string> written_;
  std::vector<std::pair<std::string, std::size_t>> strings_;  // skipped, with their offsets
};

}  // namespace tarvel
