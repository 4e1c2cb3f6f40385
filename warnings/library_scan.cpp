// SPDX-License-Identifier: MIT
#include "warnings/library_scan.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "core/entry_types.h"
#include "core/text_primitives.h"
#include "core/utf8.h"
#include "warnings/usual_entry.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

/// What stands behind an "@" and is no entry.
constexpr std::array kNoEntries{"COMMENT"sv, "STRING"sv, "PREAMBLE"sv};

bool IsHigh(char byte) { return static_cast<signed char>(byte) < 0; }

std::string Upper(std::string_view text) {
  std::string upper(text);
  StringToUpper(upper);
  return upper;
}

std::size_t FindFrom(std::string_view text, std::string_view bytes, std::size_t from) {
  return std::min(text.find_first_of(bytes, from), text.size());
}

/// What may end the name of a tag: "=" does, the others show that it is none.
class NameEnds {
 public:
  constexpr NameEnds() {
    for (const char byte : "=,{}\"@"sv) ends_[static_cast<unsigned char>(byte)] = true;
  }
  constexpr bool Holds(char byte) const { return ends_[static_cast<unsigned char>(byte)]; }

 private:
  std::array<bool, 256> ends_{};
};
constexpr NameEnds kNameEnds;

/// One pass over a library, or over a range of one.
class LibraryScan {
 public:
  LibraryScan(std::string_view bytes, const LibraryRange& range, const ScanRules& rules,
              FileWarnings& warnings)
      : bytes_(bytes.substr(0, range.end)),
        begin_(range.begin),
        goes_on_(range.end < bytes.size()),
        rules_(rules),
        warnings_(warnings) {}

  void Run();

 private:
  enum class State { kOutside, kInEntry, kInValue, kInQuotes, kBeforeValue };

  /// A part of the library, up to the next "@" at the start of a line.
  class Part {
   public:
    Part(std::size_t start, bool is_usual) : start_(start << 1U | (is_usual ? 1U : 0U)) {}
    std::size_t Start() const { return start_ >> 1U; }
    bool IsUsual() const { return (start_ & 1U) != 0; }

   private:
    std::size_t start_;  // and whether it is usual in one number, as there are very many parts
  };

  void FindParts();
  std::size_t EndOf(std::size_t part) const {
    return part + 1 < parts_.size() ? parts_[part + 1].Start() : bytes_.size();
  }
  /// Whether there is a byte at `place`, and it is not the first of a line.
  bool IsInLine(std::size_t place) const {
    return place < bytes_.size() && bytes_[place - 1] != '\n';
  }
  void FindLongLines(std::size_t start, std::size_t end);
  bool TakeUsual(std::string_view entry, std::size_t offset);
  void ScanLines(std::size_t offset, std::size_t end);
  void ScanLine(std::string_view line, std::size_t offset);
  bool TakeHead(std::string_view line, std::size_t offset);
  void TakeKnownHead(std::string_view type, std::string_view key, std::size_t offset);
  bool TakeOtherHead(std::string_view line, std::size_t offset);
  void ReadEntryLine(std::string_view line, std::size_t offset);
  std::size_t ReadTag(std::string_view line, std::size_t at, std::size_t offset);
  std::size_t StartValue(std::string_view line, std::size_t at, std::size_t offset);
  std::size_t ContinueValue(std::string_view line, std::size_t at);
  void EndEntry(std::size_t next);
  void Report(WarningKind kind, std::size_t offset, std::string_view text) {
    warnings_.Report(kind, offset, key_, text);
  }
  bool IsRead(std::string_view line) const;

  std::string_view bytes_;  // up to the end of the range
  std::size_t begin_;
  bool goes_on_;  // the library does, behind the range
  const ScanRules& rules_;
  FileWarnings& warnings_;
  std::vector<Part> parts_;

  State state_ = State::kOutside;
  bool has_entry_ = false;     // an entry of a known type came, and is not yet done with
  bool closing_line_ = false;  // a line that begins with "}" came since
  std::string key_;
  std::size_t head_ = 0;
  std::string tag_;
  std::size_t tag_place_ = 0;
  int depth_ = 0;
};

void LibraryScan::Run() {
  FindParts();
  const std::size_t most = rules_.line_limit - 1;
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    const std::size_t start = parts_[i].Start();
    if (EndOf(i) - start > most) FindLongLines(start, EndOf(i));
  }
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    const std::size_t start = parts_[i].Start();
    const std::size_t end = EndOf(i);
    const bool is_taken =
        parts_[i].IsUsual() && TakeUsual(bytes_.substr(start, end - start), start);
    if (!is_taken) ScanLines(start, end);
  }
  EndEntry(bytes_.size());
}

void LibraryScan::FindParts() {
  constexpr std::size_t kShortPart = 128;
  // Room that is not used costs nothing.
  parts_.reserve((bytes_.size() - begin_) / kShortPart + 1);
  std::size_t start = begin_;
  while (start < bytes_.size()) {
    const EntryText entry = MeasureEntry(bytes_.substr(start));
    std::size_t end = start + entry.size;
    const bool has_further = IsInLine(end);  // an "@" in the middle, which would hide a head
    while (IsInLine(end)) end = std::min(bytes_.find('@', end + 1), bytes_.size());
    parts_.emplace_back(start, entry.is_usual && !has_further);
    start = end;
  }
}

/// Takes an entry of the usual form; false when the one before is still open.
bool LibraryScan::TakeUsual(std::string_view entry, std::size_t offset) {
  if (state_ != State::kOutside || (has_entry_ && rules_.needs_closing_line && !closing_line_)) {
    return false;
  }
  has_entry_ = false;
  if (!rules_.on_entry) return true;
  const std::string_view type = TypeOf(entry);
  const std::size_t after_brace = type.size() + std::string_view("@{").size();
  rules_.on_entry({type, CopyUntilChar(entry.substr(after_brace), ','), offset});
  return true;
}

/// Looks only where a line break must be if no line is too long: nearly always there is one.
void LibraryScan::FindLongLines(std::size_t start, std::size_t end) {
  const std::size_t most = rules_.line_limit - 1;
  while (end - start > most) {
    const std::size_t last = bytes_.substr(start, most).rfind('\n');
    if (last != std::string_view::npos) {
      start += last + 1;
      continue;
    }
    const std::size_t next = std::min(bytes_.find('\n', start), bytes_.size() - 1) + 1;
    warnings_.Report(WarningKind::kLongLine, start, {},
                     "a line of " + std::to_string(next - start) + " bytes is read in pieces of " +
                         std::to_string(most));
    start = next;
  }
}

void LibraryScan::ScanLines(std::size_t offset, std::size_t end) {
  while (offset < end) {
    const std::size_t newline = bytes_.find('\n', offset);
    const std::size_t next = newline == std::string_view::npos ? bytes_.size() : newline + 1;
    ScanLine(bytes_.substr(offset, next - offset), offset);
    offset = next;
  }
}

void LibraryScan::ScanLine(std::string_view line, std::size_t offset) {
  const bool outside = state_ == State::kOutside;
  const bool in_value = state_ == State::kInValue || state_ == State::kInQuotes;
  const bool head = line.find('@') != std::string_view::npos && TakeHead(line, offset);
  if (std::any_of(line.begin(), line.end(), IsHigh) && !IsUtf8(line)) {
    warnings_.Report(WarningKind::kBadBytes, offset, outside && !head ? std::string_view() : key_,
                     "the line holds bytes that are neither ASCII nor valid UTF-8");
  }
  if (!head && !in_value && line.starts_with('}')) closing_line_ = true;
  if (!head && state_ != State::kOutside) ReadEntryLine(line, offset);
}

/// Takes a line that starts something of its own; false when it does not.
bool LibraryScan::TakeHead(std::string_view line, std::size_t offset) {
  std::string upper(line);
  if (!IsKnownEntry(upper)) return TakeOtherHead(line, offset);
  const std::size_t at = line.find('@');
  if (state_ != State::kOutside) ReadEntryLine(line.substr(0, at), offset);
  if (state_ == State::kOutside && line.starts_with('}')) closing_line_ = true;
  const std::string_view rest = line.substr(at);
  TakeKnownHead(CopyUntilChar(std::string_view(upper).substr(at), '@', '{'),
                CopyUntilChar(rest, '{', ','), offset);
  // What stands behind the key on the same line.
  const std::size_t behind = rest.find_first_of(",}");
  if (behind != std::string_view::npos) ReadEntryLine(rest.substr(behind), offset);
  return true;
}

void LibraryScan::TakeKnownHead(std::string_view type, std::string_view key, std::size_t offset) {
  EndEntry(offset);
  key_ = key;
  state_ = State::kInEntry;
  has_entry_ = true;
  closing_line_ = false;
  head_ = offset;
  if (rules_.on_entry) rules_.on_entry({type, key, offset});
  if (!FindEntryType(type).empty()) return;
  const std::string word(type);
  const std::string_view trimmed = TrimEnd(type, IsBlank);
  if (!FindEntryType(trimmed).empty()) {
    Report(WarningKind::kBlankInType, offset,
           "the type is read as '" + word + "', with the blank, and is no known one");
  } else {
    Report(WarningKind::kUnknownType, offset, "'@" + word + "' is no known type");
  }
}

/// Takes "@word" at the start of a line that is no entry of a known type.
bool LibraryScan::TakeOtherHead(std::string_view line, std::size_t offset) {
  const std::size_t at = SkipBlanks(line, 0);
  if (at == line.size() || line[at] != '@' || state_ == State::kInValue) return false;
  std::size_t end = at + 1;
  while (end < line.size() && IsLetter(line[end])) ++end;
  const std::size_t behind = SkipBlanks(line, end);
  const bool opens = behind == line.size() || line[behind] == '{' || line[behind] == '(';
  if (end == at + 1 || !opens) return false;
  const std::string type = Upper(line.substr(at + 1, end - at - 1));
  // Its lines are no concern of the entry before, which may still be open.
  EndEntry(offset);
  state_ = State::kOutside;
  if (std::find(kNoEntries.begin(), kNoEntries.end(), type) != kNoEntries.end()) return true;
  const bool braced = behind < line.size() && line[behind] == '{';
  const std::string key(braced ? CopyUntilChar(line.substr(behind), '{', ',') : std::string_view());
  const std::string word(line.substr(at, end - at));
  const bool blank = behind != end && braced && !FindEntryType(type).empty();
  warnings_.Report(blank ? WarningKind::kBlankInType : WarningKind::kUnknownType, offset, key,
                   braced ? "'" + word +
                                "' starts no entry: its lines belong to none, or to the "
                                "entry before"
                          : "'" + word + "' starts no entry, as no \"{\" follows on the line");
  return true;
}

/// The entry before `next` has ended: reports what it lacks.
void LibraryScan::EndEntry(std::size_t next) {
  const bool at_end = next == bytes_.size() && !goes_on_;
  const std::string where = at_end ? "the end of the library" : "the next entry";
  if (state_ == State::kInValue || state_ == State::kInQuotes) {
    Report(WarningKind::kOpenValue, tag_place_,
           "the value of '" + tag_ + "' does not close before " + where);
  } else if (state_ != State::kOutside) {
    Report(WarningKind::kRunsOn, head_, "the entry has no closing brace before " + where);
  } else if (has_entry_ && rules_.needs_closing_line && !closing_line_ && !at_end) {
    Report(WarningKind::kRunsOn, head_,
           "no line that begins with \"}\" ends the entry before " + where);
  }
  has_entry_ = false;
  key_.clear();
  state_ = State::kOutside;
}

void LibraryScan::ReadEntryLine(std::string_view line, std::size_t offset) {
  std::size_t at = 0;
  while (at < line.size() && state_ != State::kOutside) {
    if (state_ == State::kInValue || state_ == State::kInQuotes) {
      at = ContinueValue(line, at);
      continue;
    }
    at = std::min(line.find_first_not_of(" \t\r\n,", at), line.size());
    if (at == line.size()) return;
    if (state_ == State::kBeforeValue) {
      at = StartValue(line, at, offset);
    } else if (line[at] == '}') {
      state_ = State::kOutside;
    } else {
      at = ReadTag(line, at, offset);
    }
  }
}

/// Reads "tag =", or passes over what is none; gives where to go on.
std::size_t LibraryScan::ReadTag(std::string_view line, std::size_t at, std::size_t offset) {
  const std::size_t end = FindFrom(line, "=,{}\"", at);
  if (end == line.size() || line[end] != '=') {
    return end < line.size() && line[end] == '}' ? end : end + 1;
  }
  tag_ = TrimEnd(line.substr(at, end - at), IsBlank);
  tag_place_ = offset;
  const std::size_t value = SkipBlanks(line, end + 1);
  state_ = State::kBeforeValue;
  if (value < line.size()) return StartValue(line, value, offset);
  if (IsRead(line)) {
    Report(
        WarningKind::kUnbracedValue, offset,
        "the value of '" + tag_ + "' does not begin on the line of its name and is read as empty");
  }
  return line.size();
}

/// Reads the first byte of a value; gives where to go on.
std::size_t LibraryScan::StartValue(std::string_view line, std::size_t at, std::size_t offset) {
  depth_ = 0;
  if (line[at] == '{') {
    state_ = State::kInValue;
    return at;
  }
  if (offset == tag_place_ && IsRead(line)) {
    const bool brace = line.find('{', at) != std::string_view::npos;
    Report(WarningKind::kUnbracedValue, offset,
           "the value of '" + tag_ + "' has no braces around it and is read " +
               (brace ? "from the first brace on" : "as empty"));
  }
  if (line[at] == '"') {
    state_ = State::kInQuotes;
    return at + 1;
  }
  state_ = State::kInEntry;
  return FindFrom(line, ",}", at);
}

/// Goes on through a value in braces or quotes; gives where it ends.
std::size_t LibraryScan::ContinueValue(std::string_view line, std::size_t at) {
  const bool quotes = state_ == State::kInQuotes;
  for (; at < line.size(); ++at) {
    const char byte = line[at];
    if (byte == '{') ++depth_;
    if (byte == '}' && depth_ > 0) --depth_;
    const bool ends = quotes ? byte == '"' : byte == '}';
    if (!ends || depth_ > 0) continue;
    state_ = State::kInEntry;
    return at + 1;
  }
  return at;
}

bool LibraryScan::IsRead(std::string_view line) const {
  return std::any_of(rules_.read_tags.begin(), rules_.read_tags.end(),
                     [line](std::string_view tag) { return ContainsNoCase(line, tag); });
}

}  // namespace

void ScanLibrary(std::string_view bytes, const ScanRules& rules, FileWarnings& warnings) {
  ScanRange(bytes, {0, bytes.size()}, rules, warnings);
}

void ScanRange(std::string_view bytes, const LibraryRange& range, const ScanRules& rules,
               FileWarnings& warnings) {
  if (warnings.Wanted()) LibraryScan(bytes, range, rules, warnings).Run();
}

std::string_view TagNameOf(std::string_view line) {
  const std::size_t begin = SkipBlanks(line, 0);
  std::size_t end = begin;
  while (end < line.size() && !kNameEnds.Holds(line[end])) ++end;
  if (end == line.size() || line[end] != '=') return {};
  return TrimEnd(line.substr(begin, end - begin), IsBlank);
}

}  // namespace tarvel
