// SPDX-License-Identifier: MIT
#include "warnings/library_scan.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/byte_set.h"
#include "core/entry_types.h"
#include "core/text_primitives.h"
#include "core/utf8.h"
#include "warnings/entry_reader.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

/// What stands after an "@" and is no entry.
constexpr std::array<std::string_view, 3> kNoEntries{"COMMENT", "STRING", "PREAMBLE"};

constexpr ByteSet kHeadEnds(",}\n");
constexpr ByteSet kKeyStops(",\n");
constexpr ByteSet kBeforeHead(" \t\r\n}\xEF\xBB\xBF");
constexpr ByteSet kBeforeEntry(" \t\xEF\xBB\xBF");
constexpr ByteSet kKeyEnds(" \t\r\n,{}()");
constexpr ByteSet kTypeEnds(" \t\r\n{(,=\"}@");

/// Whether the text is a brace or parenthesis, a key and a comma.
bool HoldsKey(std::string_view text) {
  const std::size_t begin = text.empty() ? 0 : SkipBlanks(text, 1);
  const std::size_t end = kKeyEnds.Find(text, begin);
  return begin < end && end < text.size() && text[end] == ',';
}

/// One pass over a library, or over a range of it. Special lines are looked at one by one: those
/// with an "@", those that are not valid UTF-8, and those that are longer than the limit. All lines
/// between two of them are read at once.
class LibraryScan {
 public:
  LibraryScan(std::string_view bytes, const LibraryRange& range, const ScanRules& rules,
              FileWarnings& warnings)
      : bytes_(bytes.substr(0, range.end)),
        begin_(range.begin),
        rules_(rules),
        warnings_(warnings),
        entry_(bytes_, range.end < bytes.size(), rules, warnings) {}

  /// Reads all lines; returns how many values there are.
  ValueCounts Run();

 private:
  std::size_t NextSpecialLine(std::size_t begin);
  std::size_t NextLongLine(std::size_t begin);
  void ScanSpecialLine(std::string_view line, std::size_t offset);
  bool TakeHead(std::string_view line, std::size_t offset);
  void TakeKnownHead(std::string_view type, std::string_view key, std::size_t offset);
  bool TakeOtherHead(std::string_view line, std::size_t offset);
  void ReportOtherHead(std::string_view word, std::string_view rest, std::size_t offset);
  void ReportUpperCased(std::string_view line, std::size_t offset);
  void ReadOn(std::size_t begin, std::size_t end);
  void ReadOutside(std::size_t begin, std::size_t end);
  void CheckOutside(std::string_view line, std::size_t offset);
  void Report(WarningKind kind, std::size_t offset, TextParts text) {
    warnings_.Report(kind, offset, entry_.Key(), text);
  }

  std::string_view bytes_;  // up to the end of the range
  std::size_t begin_;
  const ScanRules& rules_;
  FileWarnings& warnings_;
  EntryReader entry_;
  std::string upper_;        // the line of a head, its type in capitals
  bool in_unknown_ = false;  // in an entry that is reported as none

  // Offsets, found again once a line begins there or later; the size of the text if there is none.
  std::size_t next_at_ = 0;    // an "@"
  std::size_t next_bad_ = 0;   // a byte that begins no valid UTF-8 character
  std::size_t next_long_ = 0;  // a line longer than the limit
};

ValueCounts LibraryScan::Run() {
  for (std::size_t at = begin_; at < bytes_.size();) {
    const std::size_t special = NextSpecialLine(at);
    if (at < special) {
      entry_.BeginLine(at);
      ReadOn(at, special);
    }
    if (special == bytes_.size()) break;
    at = LineEnd(bytes_, special);
    ScanSpecialLine(bytes_.substr(special, at - special), special);
  }
  entry_.Close(bytes_.size());
  return entry_.Counts();
}

/// The offset of the first line that is longer than the limit, from the line at `begin` on; the
/// size of the text if there is none. Searches backwards for line breaks, so it passes many lines
/// at a time.
std::size_t LibraryScan::NextLongLine(std::size_t begin) {
  const std::size_t most = rules_.line_limit - 1;
  while (bytes_.size() - begin > most) {
    const std::size_t next = LineBegin(bytes_, begin, begin + most);
    if (next == begin) return begin;
    begin = next;
  }
  return bytes_.size();
}

/// The offset of the first special line from the line at `begin` on; the size of the text if there
/// is none.
std::size_t LibraryScan::NextSpecialLine(std::size_t begin) {
  if (next_at_ <= begin) next_at_ = std::min(bytes_.find('@', begin), bytes_.size());
  if (next_bad_ <= begin) next_bad_ = FindBadUtf8(bytes_, begin);
  if (next_long_ <= begin) next_long_ = NextLongLine(begin);
  const std::size_t next = std::min(next_at_, next_bad_);
  if (next == bytes_.size()) return next_long_;
  return std::min(LineBegin(bytes_, begin, next), next_long_);
}

void LibraryScan::ScanSpecialLine(std::string_view line, std::size_t offset) {
  const std::size_t end = offset + line.size();
  const bool has_at = next_at_ < end;
  if (offset == next_long_) {
    warnings_.Report(WarningKind::kLongLine, offset, {},
                     "a line of " + std::to_string(line.size()) + " bytes is read in pieces of " +
                         std::to_string(rules_.line_limit - 1));
  }
  const bool was_open = entry_.IsOpen();
  entry_.BeginLine(offset);
  const bool head = has_at && TakeHead(line, offset);
  if (has_at && rules_.upper_cases) ReportUpperCased(line, offset);
  if (next_bad_ < end) {
    warnings_.Report(WarningKind::kBadBytes, offset,
                     was_open || head ? entry_.Key() : std::string_view(),
                     "the line contains bytes that are neither ASCII nor valid UTF-8");
  }
  if (!head) ReadOn(offset, end);
}

/// Reads lines that begin no entry, after the first of them was begun.
void LibraryScan::ReadOn(std::size_t begin, std::size_t end) {
  if (!entry_.IsOpen()) return ReadOutside(begin, end);
  const std::size_t at = entry_.Read(begin, end);
  if (at < end) ReadOutside(LineEnd(bytes_, at), end);
}

/// Reads lines after an entry.
void LibraryScan::ReadOutside(std::size_t begin, std::size_t end) {
  while (begin < end) {
    const std::size_t next = LineEnd(bytes_, begin);
    if (bytes_[begin] == '}') entry_.NoteClosingLine();
    if (rules_.stray_tags) CheckOutside(bytes_.substr(begin, next - begin), begin);
    begin = next;
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
  if (tag.empty() || !rules_.stray_tags->Any(tag)) return;
  warnings_.Report(WarningKind::kStrayTag, offset, {},
                   "the tag " + Quoted(tag) +
                       " stands outside entries and is taken for one of the entry before");
}

/// Takes a line that starts something of its own; false when it does not.
bool LibraryScan::TakeHead(std::string_view line, std::size_t offset) {
  upper_ = line;
  if (!IsKnownEntry(upper_)) return TakeOtherHead(line, offset);
  const std::size_t at = line.find('@');
  const std::size_t brace = line.find('{', at);
  entry_.Read(offset, offset + at);
  if (!entry_.IsOpen() && line.starts_with('}')) entry_.NoteClosingLine();
  const bool follows = !entry_.IsOpen() && kBeforeEntry.FindOther(line, 0) != at;
  const std::size_t end = kHeadEnds.Find(line, at);
  const std::size_t key_end = kKeyStops.Find(line, std::max(end, brace + 1));
  TakeKnownHead(std::string_view(upper_).substr(at + 1, brace - at - 1),
                line.substr(brace + 1, key_end - brace - 1), offset);
  if (follows) {
    Report(WarningKind::kSharedLine, offset,
           {"the entry does not begin its line: it is not seen, or what stands before it becomes a "
            "part of it"});
  }
  if (SkipBlanks(line, brace + 1) == line.size()) {
    Report(WarningKind::kBrokenHead, offset,
           {"the key does not stand on the first line of the entry and is not read; put it there, "
            "with a comma after it"});
  } else if (entry_.Key().find('}') != std::string_view::npos) {
    Report(WarningKind::kMisreadKey, offset,
           {"no comma follows the key, which is read as ", Quoted(entry_.Key())});
  }
  // What stands after the key on the same line.
  entry_.Read(offset + end, offset + line.size());
  return true;
}

void LibraryScan::TakeKnownHead(std::string_view type, std::string_view key, std::size_t offset) {
  entry_.Close(offset);
  entry_.Open(key, offset);
  in_unknown_ = false;
  if (rules_.on_entry) rules_.on_entry({type, key, offset});
  if (!FindEntryType(type).empty()) return;
  if (!FindEntryType(TrimEnd(type, IsBlank)).empty()) {
    Report(WarningKind::kBlankInType, offset,
           {"the type is read as ", Quoted(type), ", with the blank, and is not a known one"});
  } else {
    Report(WarningKind::kUnknownType, offset,
           {Quoted("@" + std::string(type)), " is not a known type"});
  }
}

/// Takes "@word" that is no entry of a known type, at the start of a line, or after a text outside
/// entries.
bool LibraryScan::TakeOtherHead(std::string_view line, std::size_t offset) {
  std::size_t at = kBeforeHead.FindOther(line, 0);
  const bool begins_line = at < line.size() && line[at] == '@';
  if (!begins_line && entry_.IsOpen()) return false;
  if (!begins_line) at = line.find('@');
  // Braces that close the value before it make way for it.
  if (CountByte(line.substr(0, at), '}') < entry_.Depth()) return false;
  const std::size_t end = kTypeEnds.Find(line, at + 1);
  const std::size_t next = SkipBlanks(line, end);
  const bool opens = next == line.size() || line[next] == '{' || line[next] == '(';
  if (end == at + 1 || !opens) return false;
  if (!begins_line && !HoldsKey(line.substr(next))) return false;  // an address of mail, say
  entry_.Read(offset, offset + at);
  if (line.starts_with('}')) entry_.NoteClosingLine();
  // Its lines are no concern of the entry before, which may still be open.
  entry_.Close(offset);
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
                     {Quoted(word), " starts no entry: no \"{\" follows on the line"});
    return;
  }
  const std::string_view key = CopyUntilChar(rest, '{', ',');
  const bool is_known = !FindEntryType(type).empty();
  if (is_known && key.find('@') != std::string_view::npos) {
    warnings_.Report(WarningKind::kAtInKey, offset, key,
                     "the key contains an '@', so that no operation sees the entry: its lines are "
                     "skipped, or read as a part of the entry before it; remove the '@'");
    return;
  }
  const bool blank = is_known && word.end() != rest.begin();
  warnings_.Report(blank ? WarningKind::kBlankInType : WarningKind::kUnknownType, offset, key,
                   {Quoted(word), blank ? " is followed by a blank" : " is not a known type",
                    ": the entry is skipped, or read as a part of the entry before it"});
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
    const bool is_type = !FindEntryType(word).empty();
    if (!is_type && InCapitals(text) != text) {
      const std::string_view named = TagNameOf(line);
      const std::string_view tag = named.empty() ? entry_.Tag() : named;
      Report(WarningKind::kUpperCased, offset,
             {"the text ", Quoted(text), tag.empty() ? "" : " in " + Quoted(tag),
              " becomes capitals, as it stands between an '@' and a brace"});
      return;
    }
    at = line.find('@', brace);
  }
}

}  // namespace

void ScanLibrary(std::string_view bytes, const ScanRules& rules, FileWarnings& warnings) {
  ReportValues(ScanRange(bytes, {0, bytes.size()}, rules, warnings), warnings);
}

void ReportValues(const ValueCounts& counts, FileWarnings& warnings) {
  if (counts.lost != 0) warnings.ReportValues(counts.values, counts.unbraced);
}

ValueCounts ScanRange(std::string_view bytes, const LibraryRange& range, const ScanRules& rules,
                      FileWarnings& warnings) {
  return warnings.Wanted() ? LibraryScan(bytes, range, rules, warnings).Run() : ValueCounts();
}

}  // namespace tarvel
