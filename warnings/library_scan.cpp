// SPDX-License-Identifier: MIT
#include "warnings/library_scan.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "core/byte_marks.h"
#include "core/byte_set.h"
#include "core/entry_types.h"
#include "core/name_matcher.h"
#include "core/text_primitives.h"
#include "core/utf8.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

/// What stands after an "@" and is no entry.
constexpr std::array kNoEntries{"COMMENT"sv, "STRING"sv, "PREAMBLE"sv};

constexpr ByteSet kBareEnds(",}");
constexpr ByteSet kBetweenTags(" \t\r\n,");
constexpr ByteSet kBeforeHead(" \t\r\n}\xEF\xBB\xBF");
constexpr ByteSet kBeforeEntry(" \t\xEF\xBB\xBF");
constexpr ByteSet kKeyEnds(" \t\r\n,{}()");
constexpr ByteSet kTypeEnds(" \t\r\n{(,=\"}@");

bool IsLower(char byte) { return byte >= 'a' && byte <= 'z'; }

bool HoldsOneOf(std::string_view name, std::span<const std::string_view> tags) {
  return std::any_of(tags.begin(), tags.end(),
                     [name](std::string_view tag) { return ContainsNoCase(name, tag); });
}

/// Whether the text is a brace or parenthesis, a key and a comma.
bool HoldsKey(std::string_view text) {
  const std::size_t begin = text.empty() ? 0 : SkipBlanks(text, 1);
  const std::size_t end = kKeyEnds.Find(text, begin);
  return begin < end && end < text.size() && text[end] == ',';
}

/// One pass over a library, or over a range of one, line by line.
class LibraryScan {
 public:
  LibraryScan(std::string_view bytes, const LibraryRange& range, const ScanRules& rules,
              FileWarnings& warnings)
      : bytes_(bytes.substr(0, range.end)),
        begin_(range.begin),
        goes_on_(range.end < bytes.size()),
        marks_(bytes_),
        rules_(rules),
        warnings_(warnings) {}

  void Run();

 private:
  enum class State { kOutside, kInEntry, kBeforeValue, kInValue, kInQuotes };

  void ScanLine(const ByteMarks::Line& marks, std::size_t offset);
  bool TakeHead(std::string_view line, std::size_t offset);
  void TakeKnownHead(std::string_view type, std::string_view key, std::size_t offset);
  bool TakeOtherHead(std::string_view line, std::size_t offset);
  void ReportOtherHead(std::string_view word, std::string_view rest, std::size_t offset);
  void ReportUpperCased(std::string_view line, std::size_t offset);
  void ReadEntryLine(std::string_view line, std::size_t offset);
  std::size_t ReadTag(std::string_view line, std::size_t at, std::size_t offset);
  std::size_t StartValue(std::string_view line, std::size_t at, std::size_t offset);
  std::size_t ContinueValue(std::string_view line, std::size_t at);
  std::size_t SkipPiece(std::string_view line, std::size_t at);
  void CheckOutside(std::string_view line, std::size_t offset);
  void ReportSharedLine(std::size_t offset, std::string_view before);
  void ReportAfterEntry(std::string_view rest, std::size_t offset);
  void ReportUnbraced(std::string_view line, std::size_t offset, std::string_view how);
  void EndEntry(std::size_t next);
  void Report(WarningKind kind, std::size_t offset, TextParts text) {
    warnings_.Report(kind, offset, key_, text);
  }
  void CheckContinuation(std::string_view line, std::size_t offset);
  bool IsReadTag() const;
  /// Where a part of the library begins in it.
  std::size_t OffsetOf(std::string_view part) const {
    return static_cast<std::size_t>(part.data() - bytes_.data());
  }
  std::size_t Depth() const { return static_cast<std::size_t>(depth_); }
  bool IsInside() const { return state_ == State::kInValue || state_ == State::kInQuotes; }
  bool HasBraceFrom(std::string_view line, std::size_t at);
  bool MentionsReadTag(std::string_view line, std::size_t offset);

  std::string_view bytes_;  // up to the end of the range
  std::size_t begin_;
  bool goes_on_;  // the library does, after the range
  ByteMarks marks_;
  const ScanRules& rules_;
  FileWarnings& warnings_;
  ValueCounts counts_;
  std::string upper_;  // the line of a head, its type in capitals

  // The entry that is open, or was the last one.
  State state_ = State::kOutside;
  bool in_unknown_ = false;    // in an entry that is reported as none
  bool has_entry_ = false;     // an entry of a known type came, and is not yet done with
  bool closing_line_ = false;  // a line that begins with "}" came since
  std::string_view key_;
  std::size_t head_ = 0;
  std::string_view tag_;
  std::size_t tag_offset_ = 0;
  int depth_ = 0;
  bool line_is_taken_ = false;  // something of the entry stands on the line already

  // Whether a line mentions a tag that is read: asked for many values, found out once a line.
  std::optional<NameMatcher> read_tags_;
  const char* asked_line_ = nullptr;
  bool asked_answer_ = false;
  const char* brace_line_ = nullptr;  // of which the next "{" is known
  std::size_t next_brace_ = 0;
};

void LibraryScan::Run() {
  for (std::size_t offset = begin_; offset < bytes_.size();) {
    const ByteMarks::Line line = marks_.NextLine(offset);
    ScanLine(line, offset);
    offset = line.end;
  }
  EndEntry(bytes_.size());
  if (!rules_.counts) return;
  rules_.counts->values += counts_.values;
  rules_.counts->unbraced += counts_.unbraced;
}

void LibraryScan::ScanLine(const ByteMarks::Line& marks, std::size_t offset) {
  const std::string_view line = bytes_.substr(offset, marks.end - offset);
  const std::size_t most = rules_.line_limit - 1;
  if (line.size() > most) {
    warnings_.Report(WarningKind::kLongLine, offset, {},
                     "a line of " + std::to_string(line.size()) + " bytes is read in pieces of " +
                         std::to_string(most));
  }
  const bool was_outside = state_ == State::kOutside;
  const bool was_inside = IsInside();
  line_is_taken_ = was_inside;
  if (was_inside && !rules_.read_tags.empty()) CheckContinuation(line, offset);
  const bool head = marks.has_at && TakeHead(line, offset);
  if (marks.has_at && rules_.upper_cases) ReportUpperCased(line, offset);
  if (!marks.is_plain && !IsUtf8(line)) {
    warnings_.Report(WarningKind::kBadBytes, offset,
                     was_outside && !head ? std::string_view() : key_,
                     "the line holds bytes that are neither ASCII nor valid UTF-8");
  }
  if (head) return;
  if (!was_inside && line.starts_with('}')) closing_line_ = true;
  if (state_ != State::kOutside) {
    ReadEntryLine(line, offset);
  } else if (!rules_.stray_tags.empty()) {
    CheckOutside(line, offset);
  }
}

/// Reports a line outside entries that begins with a tag and is taken for one.
void LibraryScan::CheckOutside(std::string_view line, std::size_t offset) {
  if (in_unknown_) {
    // The warning of its type says what becomes of its lines.
    in_unknown_ = !line.starts_with('}') && !line.starts_with(')');
    return;
  }
  const std::string_view tag = TagNameOf(line);
  if (tag.empty() || !HoldsOneOf(tag, rules_.stray_tags)) return;
  warnings_.Report(WarningKind::kStrayTag, offset, {},
                   "the tag " + Quoted(tag) +
                       " stands outside entries and is taken for one of the entry before");
}

/// Reports a value's line that begins with a byte from 128 on: such bytes are taken for blanks
/// there.
void LibraryScan::CheckContinuation(std::string_view line, std::size_t offset) {
  const std::size_t first = SkipBlanks(line, 0);
  if (first == line.size() || static_cast<signed char>(line[first]) >= 0 || !IsReadTag()) return;
  Report(WarningKind::kTextLost, offset,
         {"a line of the value of ", Quoted(tag_),
          " begins with a letter that is not ASCII and is lost where lines are joined"});
}

/// Whether the name of the tag holds that of one that is read.
bool LibraryScan::IsReadTag() const { return HoldsOneOf(tag_, rules_.read_tags); }

/// Takes a line that starts something of its own; false when it does not.
bool LibraryScan::TakeHead(std::string_view line, std::size_t offset) {
  upper_ = line;
  if (!IsKnownEntry(upper_)) return TakeOtherHead(line, offset);
  const std::size_t at = line.find('@');
  if (state_ != State::kOutside) ReadEntryLine(line.substr(0, at), offset);
  if (state_ == State::kOutside && line.starts_with('}')) closing_line_ = true;
  const bool begins_line = kBeforeEntry.FindOther(line, 0) == at;
  const bool follows = state_ == State::kOutside && !begins_line;
  const std::string_view rest = line.substr(at);
  TakeKnownHead(CopyUntilChar(std::string_view(upper_).substr(at), '@', '{'),
                CopyUntilChar(rest, '{', ','), offset);
  if (follows) {
    Report(WarningKind::kSharedLine, offset,
           {"the entry does not begin its line: it is not seen, or what stands before it becomes a "
            "part of it"});
  }
  if (SkipBlanks(rest, rest.find('{') + 1) == rest.size()) {
    Report(WarningKind::kBrokenHead, offset,
           {"the key does not stand on the first line of the entry and is not read; put it there, "
            "with a comma after it"});
  } else if (key_.find('}') != std::string::npos) {
    Report(WarningKind::kMisreadKey, offset,
           {"no comma follows the key, which is read as ", Quoted(key_)});
  }
  // What stands after the key on the same line.
  line_is_taken_ = true;
  ReadEntryLine(rest.substr(kBareEnds.Find(rest, 0)), offset);
  return true;
}

void LibraryScan::TakeKnownHead(std::string_view type, std::string_view key, std::size_t offset) {
  EndEntry(offset);
  key_ = key;
  state_ = State::kInEntry;
  has_entry_ = true;
  in_unknown_ = false;
  closing_line_ = false;
  head_ = offset;
  tag_ = {};
  if (rules_.on_entry) rules_.on_entry({type, key, offset});
  if (!FindEntryType(type).empty()) return;
  if (!FindEntryType(TrimEnd(type, IsBlank)).empty()) {
    Report(WarningKind::kBlankInType, offset,
           {"the type is read as '", type, "', with the blank, and is no known one"});
  } else {
    Report(WarningKind::kUnknownType, offset, {"'@", type, "' is no known type"});
  }
}

/// Takes "@word" that is no entry of a known type, at the start of a line, or after a text outside
/// entries.
bool LibraryScan::TakeOtherHead(std::string_view line, std::size_t offset) {
  std::size_t at = kBeforeHead.FindOther(line, 0);
  const bool begins_line = at < line.size() && line[at] == '@';
  if (!begins_line && state_ != State::kOutside) return false;
  if (!begins_line) at = line.find('@');
  // Braces that close the value before it make way for it.
  if (state_ == State::kInValue && CountByte(line.substr(0, at), '}') < Depth()) return false;
  const std::size_t end = kTypeEnds.Find(line, at + 1);
  const std::size_t next = SkipBlanks(line, end);
  const bool opens = next == line.size() || line[next] == '{' || line[next] == '(';
  if (end == at + 1 || !opens) return false;
  if (!begins_line && !HoldsKey(line.substr(next))) return false;  // an address of mail, say
  if (state_ != State::kOutside) ReadEntryLine(line.substr(0, at), offset);
  if (line.starts_with('}')) closing_line_ = true;
  // Its lines are no concern of the entry before, which may still be open.
  EndEntry(offset);
  ReportOtherHead(line.substr(at, end - at), line.substr(next), offset);
  return true;
}

/// Reports "@word" with what follows it, blanks left out, unless it is known to be no entry.
void LibraryScan::ReportOtherHead(std::string_view word, std::string_view rest,
                                  std::size_t offset) {
  in_unknown_ = false;
  const std::string type = InCapitals(word.substr(1));
  if (std::find(kNoEntries.begin(), kNoEntries.end(), type) != kNoEntries.end()) return;
  in_unknown_ = true;
  if (!rest.starts_with('{')) {
    warnings_.Report(WarningKind::kUnknownType, offset, {},
                     {"'", word, "' starts no entry, as no \"{\" follows on the line"});
    return;
  }
  const std::string_view key = CopyUntilChar(rest, '{', ',');
  const bool is_known = !FindEntryType(type).empty();
  if (is_known && key.find('@') != std::string_view::npos) {
    warnings_.Report(
        WarningKind::kAtInKey, offset, key,
        "the key holds an '@', so that no operation sees the entry: its lines belong to "
        "none, or to the entry before; take it out");
    return;
  }
  const bool blank = is_known && word.end() != rest.begin();
  warnings_.Report(
      blank ? WarningKind::kBlankInType : WarningKind::kUnknownType, offset, key,
      {"'", word, "' starts no entry: its lines belong to none, or to the entry before"});
}

/// Reports text that is written in capitals for an "@" before it and a "{" after it.
void LibraryScan::ReportUpperCased(std::string_view line, std::size_t offset) {
  std::size_t at = line.find('@');
  if (at == kBeforeHead.FindOther(line, 0) &&
      SkipBlanks(line, kTypeEnds.Find(line, at + 1)) == line.find('{')) {
    at = line.find('@', at + 1);  // the type of an entry
  }
  while (at != std::string_view::npos) {
    const std::size_t brace = line.find('{', at + 1);
    if (brace == std::string_view::npos) return;
    const std::string_view text = line.substr(at, brace - at);
    const std::string_view word = TrimEnd(text.substr(1), IsBlank);
    const bool is_type = !FindEntryType(InCapitals(word)).empty();
    if (!is_type && std::any_of(text.begin(), text.end(), IsLower)) {
      const std::string_view named = TagNameOf(line);
      const std::string_view tag = named.empty() ? tag_ : named;
      Report(WarningKind::kUpperCased, offset,
             {"the text ", Quoted(text), tag.empty() ? "" : " in '", tag, tag.empty() ? "" : "'",
              " becomes capitals, as it stands between an '@' and a brace"});
      return;
    }
    at = line.find('@', brace);
  }
}

/// The entry before `next` has ended: reports what it lacks.
void LibraryScan::EndEntry(std::size_t next) {
  const bool at_end = next == bytes_.size() && !goes_on_;
  const std::string_view where = at_end ? "the end of the library" : "the next entry";
  if (IsInside()) {
    Report(WarningKind::kOpenValue, tag_offset_,
           {"the value of '", tag_, "' does not close before ", where});
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

void LibraryScan::ReadEntryLine(std::string_view line, std::size_t offset) {
  std::size_t at = 0;
  while (at < line.size() && state_ != State::kOutside) {
    if (IsInside()) {
      at = ContinueValue(line, at);
      continue;
    }
    at = kBetweenTags.FindOther(line, at);
    if (at == line.size()) return;
    if (state_ == State::kBeforeValue) {
      at = StartValue(line, at, offset);
    } else if (line[at] == '}') {
      state_ = State::kOutside;
      if (rules_.takes_all_tags) ReportAfterEntry(line.substr(at), offset);
    } else if (line[at] == '#') {
      ReportUnbraced(line, offset, "goes on after a '#': only the part before it is read");
      at = SkipPiece(line, SkipBlanks(line, at + 1));
    } else {
      at = ReadTag(line, at, offset);
    }
  }
}

/// Reports tags on the line that ends their entry, after its end.
void LibraryScan::ReportAfterEntry(std::string_view rest, std::size_t offset) {
  if (TagNameOf(Trim(rest, "}, \t\r\n")).empty()) return;
  for (const LineTag& tag : TagsOf(rest)) {
    Report(WarningKind::kSharedLine, offset,
           {"the tag ", Quoted(tag.name),
            " stands after the end of its entry, on the same line, and is not read"});
  }
}

/// Reads "tag =", or skips what is none; returns where to go on.
std::size_t LibraryScan::ReadTag(std::string_view line, std::size_t at, std::size_t offset) {
  const std::size_t base = OffsetOf(line);
  const std::size_t end = marks_.FindNameEnd(base + at, base + line.size()) - base;
  if (end == line.size() || line[end] != '=') {
    return end < line.size() && line[end] == '}' ? end : end + 1;
  }
  const std::string_view before = tag_;
  tag_ = TrimEnd(line.substr(at, end - at), IsBlank);
  tag_offset_ = offset;
  if (line_is_taken_ && rules_.one_value_a_line) ReportSharedLine(offset, before);
  line_is_taken_ = true;
  const std::size_t value = SkipBlanks(line, end + 1);
  state_ = State::kBeforeValue;
  ++counts_.values;
  if (value < line.size()) return StartValue(line, value, offset);
  ++counts_.unbraced;
  ReportUnbraced(line, offset, "does not begin on the line of its name and is read as empty");
  return line.size();
}

/// Reads the first byte of a value; returns where to go on.
std::size_t LibraryScan::StartValue(std::string_view line, std::size_t at, std::size_t offset) {
  depth_ = 0;
  if (line[at] == '{') {
    state_ = State::kInValue;
    return at;
  }
  if (offset == tag_offset_) {
    ++counts_.unbraced;
    ReportUnbraced(line, offset,
                   HasBraceFrom(line, at)
                       ? "has no braces around it and is read from the first brace on"
                       : "has no braces around it and is read as empty");
  }
  if (line[at] == '"') {
    state_ = State::kInQuotes;
    return at + 1;
  }
  state_ = State::kInEntry;
  return kBareEnds.Find(line, at);
}

/// Whether a "{" stands on the line from `at` on: searched for once, however many values ask.
bool LibraryScan::HasBraceFrom(std::string_view line, std::size_t at) {
  if (brace_line_ != line.data() || next_brace_ < at) {
    brace_line_ = line.data();
    next_brace_ = std::min(line.find('{', at), line.size());
  }
  return next_brace_ < line.size();
}

/// Begins the piece of a value that follows a '#'; returns where to go on.
std::size_t LibraryScan::SkipPiece(std::string_view line, std::size_t at) {
  depth_ = 0;
  if (at == line.size() || (line[at] != '{' && line[at] != '"')) return kBareEnds.Find(line, at);
  state_ = line[at] == '{' ? State::kInValue : State::kInQuotes;
  return line[at] == '{' ? at : at + 1;
}

/// Goes on through a value in braces or quotes; returns where it ends.
std::size_t LibraryScan::ContinueValue(std::string_view line, std::size_t at) {
  const char closing = state_ == State::kInQuotes ? '"' : '}';
  const std::size_t base = OffsetOf(line);
  const std::size_t end = base + line.size();
  for (at = marks_.FindBrace(base + at, end); at < end; at = marks_.FindBrace(at + 1, end)) {
    const char byte = bytes_[at];
    if (byte == '{') ++depth_;
    if (byte == '}' && depth_ > 0) --depth_;
    if (byte != closing || depth_ > 0) continue;
    state_ = State::kInEntry;
    return at + 1 - base;
  }
  return line.size();
}

/// Reports the tag that begins on a line that another tag or an entry's first line has.
void LibraryScan::ReportSharedLine(std::size_t offset, std::string_view before) {
  const bool is_read = rules_.takes_all_tags || IsReadTag();
  if (!is_read || !IsTagName(tag_) || warnings_.ReportNumber(WarningKind::kSharedLine)) return;
  if (before.empty()) {
    Report(WarningKind::kSharedLine, offset,
           {"the tag ", Quoted(tag_), " stands on the first line of its entry and is not read"});
  } else {
    Report(WarningKind::kSharedLine, offset,
           {"the tag ", Quoted(tag_), " shares a line with ", Quoted(before),
            ": only one of them is read, or one in the place of the other"});
  }
}

/// Reports a value that is not read whole, if the line mentions a tag that is read or goes on with
/// one's value.
void LibraryScan::ReportUnbraced(std::string_view line, std::size_t offset, std::string_view how) {
  if (!MentionsReadTag(line, offset) && !IsReadTag()) return;
  Report(WarningKind::kUnbracedValue, offset, {"the value of '", tag_, "' ", how});
}

/// Whether the line mentions a tag that is read. Mostly its own tag is one; the whole line is
/// looked through once, however many values stand on it.
bool LibraryScan::MentionsReadTag(std::string_view line, std::size_t offset) {
  if (rules_.read_tags.empty()) return false;
  if (!read_tags_) read_tags_.emplace(rules_.read_tags);
  if (asked_line_ != line.data()) {
    asked_line_ = line.data();
    asked_answer_ = (offset == tag_offset_ && read_tags_->Any(tag_)) || read_tags_->Any(line);
  }
  return asked_answer_;
}

}  // namespace

void ScanLibrary(std::string_view bytes, const ScanRules& rules, FileWarnings& warnings) {
  if (!warnings.Wanted()) return;
  ValueCounts counts;
  ScanRules counting = rules;
  counting.counts = &counts;
  LibraryScan(bytes, {0, bytes.size()}, counting, warnings).Run();
  if (!rules.read_tags.empty()) warnings.ReportValues(counts.values, counts.unbraced);
}

void ScanRange(std::string_view bytes, const LibraryRange& range, const ScanRules& rules,
               FileWarnings& warnings) {
  if (warnings.Wanted()) LibraryScan(bytes, range, rules, warnings).Run();
}

}  // namespace tarvel
