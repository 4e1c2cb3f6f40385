// SPDX-License-Identifier: MIT
#include "warnings/entry_reader.h"

#include <algorithm>

#include "core/byte_set.h"
#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

constexpr ByteSet kBareEnds(",}\n");
constexpr ByteSet kBlanksInLine(" \t\r");
constexpr ByteSet kBetweenTags(" \t\r\n,");

}  // namespace

void EntryReader::Open(std::string_view key, std::size_t offset) {
  key_ = key;
  state_ = State::kInEntry;
  has_entry_ = true;
  closing_line_ = false;
  taken_ = offset;
  head_ = offset;
  tag_ = {};
  tag_is_read_.reset();
}

void EntryReader::BeginLine(std::size_t offset) {
  if (IsInside()) {
    CheckContinuation(offset);
  } else if (bytes_[offset] == '}') {
    closing_line_ = true;
  }
}

void EntryReader::Close(std::size_t next) {
  const bool at_end = next == bytes_.size() && !goes_on_;
  const std::string_view where = at_end ? "the end of the library" : "the next entry";
  if (IsInside()) {
    Report(WarningKind::kOpenValue, tag_offset_,
           {"the value of ", Quoted(tag_), " does not close before ", where});
  } else if (state_ != State::kOutside) {
    Report(WarningKind::kRunsOn, head_, {"the entry has no closing brace before ", where});
  } else if (has_entry_ && rules_.needs_closing_line && !closing_line_) {
    Report(WarningKind::kRunsOn, head_,
           {"no line that begins with \"}\" ends the entry before ", where});
  }
  has_entry_ = false;
  key_ = {};
  state_ = State::kOutside;
}

std::size_t EntryReader::Read(std::size_t begin, std::size_t end) {
  part_ = begin;
  end_ = end;
  if (!IsOpen()) return begin;
  for (std::size_t at = begin;;) {
    if (IsInside()) at = ContinueValue(at);
    while (at < end && kBetweenTags.Holds(bytes_[at])) ++at;
    if (at == end) return end;
    if (bytes_[at] == '}' && at > 0 && bytes_[at - 1] == '\n') closing_line_ = true;
    if (state_ == State::kBeforeValue) {
      at = StartValue(at);
    } else if (bytes_[at] == '}') {
      state_ = State::kOutside;
      if (rules_.takes_all_tags) ReportAfterEntry(at);
      return at;
    } else if (bytes_[at] == '#') {
      ReportJoined(at);
      at = SkipPiece(at + 1);
    } else {
      at = ReadTag(at);
    }
  }
}

/// Reports tags on the line that ends their entry, after the "}" at `at`.
void EntryReader::ReportAfterEntry(std::size_t at) {
  const std::string_view rest = bytes_.substr(at, PartEnd(at) - at);
  if (TagNameOf(Trim(rest, "}, \t\r\n")).empty()) return;
  for (const LineTag& tag : TagsOf(rest)) {
    Report(WarningKind::kSharedLine, at,
           {"the tag ", Quoted(tag.name),
            " stands after the end of its entry, on the same line, and is not read"});
  }
}

/// Reads "tag =" and the value's first byte, or skips what is none; returns where to go on.
inline std::size_t EntryReader::ReadTag(std::size_t at) {
  const std::size_t end = structure_.Find(at, end_);
  if (end == end_ || bytes_[end] != '=') {
    return end == end_ || bytes_[end] == '}' || bytes_[end] == '\n' ? end : end + 1;
  }
  const std::string_view before = tag_;
  tag_ = TrimEnd(bytes_.substr(at, end - at), IsBlank);
  tag_is_read_.reset();
  tag_offset_ = at;
  if (rules_.one_value_a_line &&
      bytes_.substr(taken_, at - taken_).find('\n') == std::string_view::npos) {
    ReportSharedLine(before);
  }
  taken_ = at;
  state_ = State::kBeforeValue;
  ++counts_.values;
  at = kBlanksInLine.FindOther(bytes_.substr(0, end_), end + 1);
  if (EndsLine(at) || bytes_[at] != '{') ReportUnbraced(at);
  return EndsLine(at) ? at : StartValue(at);
}

/// Reads the first byte of a value, or of a piece of one; returns where to go on.
inline std::size_t EntryReader::StartValue(std::size_t at) {
  taken_ = at;
  depth_ = bytes_[at] == '{' ? 1 : 0;
  state_ = bytes_[at] == '{'   ? State::kInValue
           : bytes_[at] == '"' ? State::kInQuotes
                               : State::kInEntry;
  if (state_ != State::kInEntry) return at + 1;
  return kBareEnds.Find(bytes_.substr(0, end_), at);
}

/// Begins the piece of a value that follows a '#'; returns where to go on.
std::size_t EntryReader::SkipPiece(std::size_t at) {
  at = kBlanksInLine.FindOther(bytes_.substr(0, end_), at);
  return EndsLine(at) ? at : StartValue(at);
}

/// Goes on through a value in braces or quotes; returns where it ends.
inline std::size_t EntryReader::ContinueValue(std::size_t at) {
  const char closing = state_ == State::kInQuotes ? '"' : '}';
  std::size_t depth = depth_;
  for (at = structure_.Find(at, end_); at < end_; at = structure_.Find(at + 1, end_)) {
    const char byte = bytes_[at];
    if (byte == '\n' && at + 1 < end_) CheckContinuation(at + 1);
    if (byte == '{') ++depth;
    if (byte == '}' && depth > 0) --depth;
    if (byte != closing || depth > 0) continue;
    state_ = State::kInEntry;
    taken_ = at++;
    break;
  }
  depth_ = depth;
  return at;
}

/// Where the line, or the part of it that is read, ends that holds the byte at `at`. Asking in the
/// order of the offsets is linear, however many values stand on a line.
std::size_t EntryReader::PartEnd(std::size_t at) {
  if (line_end_ <= at) line_end_ = LineEnd(bytes_, at);
  return std::min(line_end_, end_);
}

/// Whether a "{" stands on the line from `at` on. Linear like `PartEnd`.
bool EntryReader::HasBraceFrom(std::size_t at) {
  if (next_brace_ < at) next_brace_ = std::min(bytes_.find('{', at), bytes_.size());
  return next_brace_ < PartEnd(at);
}

/// Reports the tag that begins on a line that another tag or an entry's first line has.
void EntryReader::ReportSharedLine(std::string_view before) {
  const bool is_read = rules_.takes_all_tags || IsReadTag();
  if (!is_read || !IsTagName(tag_) || warnings_.ReportNumber(WarningKind::kSharedLine)) return;
  if (before.empty()) {
    Report(WarningKind::kSharedLine, tag_offset_,
           {"the tag ", Quoted(tag_), " stands on the first line of its entry and is not read"});
  } else {
    Report(WarningKind::kSharedLine, tag_offset_,
           {"the tag ", Quoted(tag_), " shares a line with ", Quoted(before),
            ": one of them is not read, or takes the value of the other"});
  }
}

/// Counts the value at `at`, which has no braces around it, and reports it if its line mentions a
/// tag that is read.
void EntryReader::ReportUnbraced(std::size_t at) {
  ++counts_.unbraced;
  if (!MentionsReadTag(tag_offset_)) return;
  ++counts_.lost;
  if (warnings_.ReportNumber(WarningKind::kUnbracedValue)) return;
  const std::string_view how =
      EndsLine(at)       ? "does not begin on the line of its name and is read as empty"
      : HasBraceFrom(at) ? "has no braces around it and is read from the first brace on"
                         : "has no braces around it and is read as empty";
  Report(WarningKind::kUnbracedValue, tag_offset_, {"the value of ", Quoted(tag_), " ", how});
}

/// Reports the value that goes on after the "#" at `at`, if it is that of a tag that is read, or
/// the line mentions one.
void EntryReader::ReportJoined(std::size_t at) {
  if (!MentionsReadTag(at) && !IsReadTag()) return;
  Report(
      WarningKind::kUnbracedValue, at,
      {"the value of ", Quoted(tag_), " continues after a '#': only the part before it is read"});
}

/// Whether the line mentions a tag that is read. Mostly its own tag is one; the whole line is
/// looked through once, however many values stand on it.
bool EntryReader::MentionsReadTag(std::size_t at) {
  if (!rules_.read_tags) return false;
  if (at == tag_offset_ && IsReadTag()) return true;
  if (asked_end_ <= at) {
    asked_end_ = PartEnd(at);
    const std::size_t begin = LineBegin(bytes_, part_, at);
    asked_answer_ = rules_.read_tags->Any(bytes_.substr(begin, asked_end_ - begin));
  }
  return asked_answer_;
}

/// Reports the line at `offset`, on which a value goes on, if it begins with a control character or
/// a byte from 128 on: such bytes are taken for blanks there.
void EntryReader::CheckContinuation(std::size_t offset) {
  const std::size_t first = kBlanksInLine.FindOther(bytes_, offset);
  if (SkipContinuationBlanks(bytes_.substr(0, first + 1), first) == first) return;
  if (bytes_[first] == '\n' || !IsReadTag()) return;
  const bool is_control = static_cast<signed char>(bytes_[first]) >= 0;
  Report(WarningKind::kTextLost, offset,
         {"a line of the value of ", Quoted(tag_), " begins with a ",
          is_control ? "control character" : "letter that is not ASCII",
          " and is lost where lines are joined"});
}

/// Whether the name of the tag holds that of one that is read. Looked up once, as all the lines of
/// a value may ask.
bool EntryReader::IsReadTag() {
  if (!tag_is_read_) tag_is_read_ = rules_.read_tags && rules_.read_tags->Any(tag_);
  return *tag_is_read_;
}

}  // namespace tarvel
