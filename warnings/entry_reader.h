// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "core/byte_finder.h"
#include "warnings/scan_rules.h"
#include "warnings/warnings.h"

namespace tarvel {

/// Reads the tags and values of the entries of a library, part by part, and reports those that will
/// be read otherwise than their author meant.
class EntryReader {
 public:
  /// `bytes` are those of the library up to the end of the range that is scanned. `goes_on`: the
  /// library continues after them. All must outlive this.
  EntryReader(std::string_view bytes, bool goes_on, const ScanRules& rules, FileWarnings& warnings)
      : bytes_(bytes), goes_on_(goes_on), structure_(bytes), rules_(rules), warnings_(warnings) {}

  /// Opens the entry whose first line begins at `offset`.
  void Open(std::string_view key, std::size_t offset);
  /// Begins the line at `offset`, before anything of it is read.
  void BeginLine(std::size_t offset);
  /// Notes a line outside of values that begins with "}".
  void NoteClosingLine() { closing_line_ = true; }
  /// Reads the part of the entry from `begin` to before `end`: a piece of a line, or several lines.
  /// Returns the offset at which the entry ends, or `end`; `begin` if no entry is open.
  std::size_t Read(std::size_t begin, std::size_t end);
  /// Closes the entry and reports what it lacks. The next one begins at `next`, or the library ends
  /// there.
  void Close(std::size_t next);
  bool IsOpen() const { return state_ != State::kOutside; }
  /// Whether a value in braces or quotes is open.
  bool IsInside() const { return state_ == State::kInValue || state_ == State::kInQuotes; }
  /// How many braces of the open value are not closed.
  std::size_t Depth() const { return state_ == State::kInValue ? depth_ : 0; }
  /// The key of the entry that was opened last; empty after `Close`.
  std::string_view Key() const { return key_; }
  /// The name of the last tag of that entry so far; empty if it has none.
  std::string_view Tag() const { return tag_; }
  const ValueCounts& Counts() const { return counts_; }

 private:
  enum class State { kOutside, kInEntry, kBeforeValue, kInValue, kInQuotes };

  std::size_t ReadTag(std::size_t at);
  std::size_t StartValue(std::size_t at);
  std::size_t ContinueValue(std::size_t at);
  std::size_t SkipPiece(std::size_t at);
  void CheckContinuation(std::size_t offset);
  void ReportSharedLine(std::string_view before);
  void ReportAfterEntry(std::size_t at);
  void ReportUnbraced(std::size_t at);
  void ReportJoined(std::size_t at);
  void Report(WarningKind kind, std::size_t offset, TextParts text) {
    warnings_.Report(kind, offset, key_, text);
  }
  bool IsReadTag();
  bool EndsLine(std::size_t at) const { return at == end_ || bytes_[at] == '\n'; }
  std::size_t PartEnd(std::size_t at);
  bool HasBraceFrom(std::size_t at);
  bool MentionsReadTag(std::size_t at);

  std::string_view bytes_;
  bool goes_on_;
  StructureFinder structure_;
  const ScanRules& rules_;
  FileWarnings& warnings_;
  ValueCounts counts_;

  // The part that is read.
  std::size_t part_ = 0;
  std::size_t end_ = 0;

  // The entry that is open, or was the last one.
  State state_ = State::kOutside;
  bool has_entry_ = false;     // it came, and is not yet done with
  bool closing_line_ = false;  // a line that begins with "}" came since
  std::string_view key_;
  std::size_t head_ = 0;
  std::string_view tag_;
  std::optional<bool> tag_is_read_;
  std::size_t tag_offset_ = 0;
  std::size_t depth_ = 0;
  std::size_t taken_ = 0;  // where the last part of the entry that takes its line stands

  // What each value of a line may ask for. It is looked up once for a line, so that a line of many
  // values takes linear time.
  std::size_t line_end_ = 0;    // the end of the last line that was asked about
  std::size_t next_brace_ = 0;  // the next "{"
  std::size_t asked_end_ = 0;   // up to where `asked_answer_` is known
  bool asked_answer_ = false;   // whether the line mentions a tag that is read
};

}  // namespace tarvel
