// SPDX-License-Identifier: MIT
#include "ops/prepare/bib_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ops/prepare/letters.h"
#include "warnings/warnings.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

/// Strings of strings may grow without measure: all texts that they put in may together be this
/// many times as long as the library, and this many bytes more.
constexpr std::size_t kMostGrowth = 8;
constexpr std::size_t kLeastRoom = std::size_t{1} << 20;

/// The bytes that names of types, tags and strings are made of.
constexpr auto kNameBytes = [] {
  std::array<bool, 256> bytes{};
  for (std::size_t byte = ' ' + 1; byte < bytes.size(); ++byte) bytes[byte] = true;
  for (const char byte : "\"#%'(),={}"sv) bytes[static_cast<unsigned char>(byte)] = false;
  return bytes;
}();
constexpr bool IsNameByte(char byte) { return kNameBytes[static_cast<unsigned char>(byte)]; }

/// The end of the name at `from`, or `from` where none stands.
std::size_t NameEnd(std::string_view bytes, std::size_t from) {
  if (from < bytes.size() && IsDigit(bytes[from])) return from;
  while (from < bytes.size() && IsNameByte(bytes[from])) ++from;
  return from;
}

/// Appends a piece with each run of white space as one blank, also where it meets the text.
void AppendPiece(std::string& text, std::string_view piece) {
  for (std::size_t at = 0; at < piece.size();) {
    if (IsBlank(piece[at])) {
      if (text.empty() || text.back() != ' ') text += ' ';
      at = SkipBlanks(piece, at);
      continue;
    }
    // Single blanks are copied with the words around them.
    const std::size_t end = FindOddWhite(piece, at);
    text.append(piece.substr(at, end - at));
    at = end;
  }
}

/// The bytes that end a key: in braces, in parentheses, and where a key with an "@" is looked for.
constexpr ByteSet kKeyEnds(" \t\r\n,}");
constexpr ByteSet kParenthesesKeyEnds(" \t\r\n,");
constexpr ByteSet kKeyEndsOrAt(" \t\r\n,@");

}  // namespace

BibReader::BibReader(std::string_view bytes, BibStrings& strings)
    : bytes_(bytes),
      strings_(strings),
      room_(bytes.size() * kMostGrowth + kLeastRoom),
      strict_from_(bytes.size()) {}

void BibReader::GoTo(std::size_t begin, bool is_strict) {
  at_ = begin;
  is_strict_ = is_strict;
}

bool BibReader::Next(BibItem& item) {
  texts_.Clear();
  item.tags.clear();
  item.fault.clear();
  item.undefined.clear();
  item.key = {};
  while (!StartCommand(item)) {
    if (IsAtEnd()) return false;
  }
  if (EqualNoCase(item.type, "string")) {
    ReadString(item);
  } else if (EqualNoCase(item.type, "preamble")) {
    ReadPreamble(item);
  } else {
    ReadEntry(item);
  }
  defining_ = {};
  item.end = at_;
  return true;
}

/// Goes to the next "@" and after the type and the opening brace or parenthesis after it; false
/// when these do not follow.
bool BibReader::StartCommand(BibItem& item) {
  item.begin = bytes_.find('@', at_);
  at_ = std::min(item.begin, bytes_.size() - 1) + 1;
  SkipWhite();
  item.type = TakeName();
  if (EqualNoCase(item.type, "comment")) return false;
  SkipWhite();
  if (item.type.empty() || !(IsAt('{') || IsAt('('))) return false;
  close_ = IsAt('{') ? '}' : ')';
  ++at_;
  return true;
}

void BibReader::ReadString(BibItem& item) {
  item.kind = BibItem::Kind::kString;
  SkipWhite();
  BibTag tag;
  tag.offset = at_;
  tag.name = defining_ = TakeName();
  SkipWhite();
  if (tag.name.empty() || !IsAt('=')) {
    Fail(item, "a string's name and \"=\" were expected");
    return;
  }
  ++at_;
  if (!ReadValue(item, tag)) return;
  item.tags.push_back(tag);
  strings_.Define(tag.name, tag.value, item.begin);
  if (!IsAt(close_)) {
    Fail(item, "the string", tag.name, " is not closed after its text");
    return;
  }
  ++at_;
}

void BibReader::ReadPreamble(BibItem& item) {
  item.kind = BibItem::Kind::kPreamble;
  BibTag tag;
  tag.offset = at_;
  if (!ReadValue(item, tag)) return;
  item.tags.push_back(tag);
  if (!IsAt(close_)) {
    Fail(item, "the preamble is not closed after its text");
    return;
  }
  ++at_;
}

void BibReader::ReadEntry(BibItem& item) {
  item.kind = BibItem::Kind::kEntry;
  if (!ReadKey(item)) return;
  bool is_passed = false;
  while (!IsAt(close_)) {
    if (!IsAt(',')) {
      const std::string_view tag = item.tags.empty() ? std::string_view() : item.tags.back().name;
      Fail(item,
           tag.empty() ? "a comma, or the end of the entry, is missing after the key"
                       : "a comma, or the end of the entry, is missing after the value of",
           tag);
      return;
    }
    ++at_;
    SkipWhite();
    if (IsAt(close_)) break;
    if (!ReadTag(item)) return;
    if (Keeps(item) || std::exchange(is_passed, true)) continue;
    PassTags();
  }
  ++at_;
}

/// Goes to the "}" that ends the entry, if it stands before the next "@". No value extends beyond
/// it. If a fault would end the entry before it, the next command is still the same. It is looked
/// for once an entry, so that the time stays linear where it is missing.
void BibReader::PassTags() {
  const std::size_t next = std::min(bytes_.find('@', at_), bytes_.size());
  const std::size_t end = FindDelimiter(bytes_, at_, next, '}');
  if (end < next) at_ = end;
}

/// In parentheses a key may hold a "}".
bool BibReader::ReadKey(BibItem& item) {
  SkipWhite();
  const std::size_t end = (close_ == '}' ? kKeyEnds : kParenthesesKeyEnds).Find(bytes_, at_);
  item.key = bytes_.substr(at_, end - at_);
  at_ = end;
  SkipWhite();
  return !IsAtEnd() || Fail(item, "the library ends within the entry");
}

bool BibReader::ReadTag(BibItem& item) {
  BibTag& tag = item.tags.emplace_back();
  if (!ReadNameAndValue(item, tag)) {
    item.tags.pop_back();
    return false;
  }
  while (!tag.value.empty() && tag.value.front() == ' ') tag.value.remove_prefix(1);
  while (!tag.value.empty() && tag.value.back() == ' ') tag.value.remove_suffix(1);
  return !IsAtEnd() || Fail(item, "the library ends within the entry");
}

bool BibReader::ReadNameAndValue(BibItem& item, BibTag& tag) {
  tag.offset = at_;
  tag.name = TakeName();
  if (tag.name.empty()) return Fail(item, "the name of a tag was expected");
  SkipWhite();
  if (!IsAt('=')) return Fail(item, "there is no \"=\" after", tag.name);
  ++at_;
  return ReadValue(item, tag);
}

/// Reads pieces joined by "#" and the white space after them.
bool BibReader::ReadValue(BibItem& item, BibTag& tag) {
  SkipWhite();
  if (!ReadPiece(item, tag)) return false;
  SkipWhite();
  return (tag.facts.is_plain && !IsAt('#')) || PutTogether(item, tag);
}

/// Puts the text of a value together whose first piece was read, and reads the others.
bool BibReader::PutTogether(BibItem& item, BibTag& tag) {
  const bool is_joined = IsAt('#');
  std::string& text = texts_.Next();
  if (Keeps(item)) AppendPiece(text, tag.value);
  while (IsAt('#')) {
    ++at_;
    SkipWhite();
    if (!ReadPiece(item, tag)) return false;
    if (Keeps(item)) AppendPiece(text, tag.value);
    SkipWhite();
  }
  tag.value = text;
  if (is_joined) tag.facts = FactsOf(text);  // other white space makes no other facts
  return true;
}

/// Reads a piece of a value as if it were all of it.
bool BibReader::ReadPiece(BibItem& item, BibTag& tag) {
  if (IsAt('{') || IsAt('"')) return ReadDelimited(item, tag);
  if (IsAtEnd() || !IsDigit(bytes_[at_])) return ReadStringName(item, tag);
  const std::size_t from = at_;
  while (!IsAtEnd() && IsDigit(bytes_[at_])) ++at_;
  tag.value = bytes_.substr(from, at_ - from);
  tag.facts = {};
  return true;
}

bool BibReader::ReadDelimited(BibItem& item, BibTag& tag) {
  const std::size_t from = at_ + 1;
  const std::size_t limit = is_strict_ ? NextHeadLine(from) : bytes_.size();
  const char delimiter = bytes_[at_] == '{' ? '}' : '"';
  const std::size_t end = Keeps(item) ? FindDelimiter(bytes_, from, limit, delimiter, tag.facts)
                                      : FindDelimiter(bytes_, from, limit, delimiter);
  if (end == limit) return FailValue(item, tag.name, from - 1, "nothing closes");
  if (bytes_[end] != delimiter)
    return FailValue(item, tag.name, end, "there is a \"}\" too many in");
  at_ = end + 1;
  tag.value = bytes_.substr(from, end - from);
  return true;
}

bool BibReader::ReadStringName(BibItem& item, BibTag& tag) {
  const std::string_view name = TakeName();
  const bool ends = IsAtEnd() || IsBlank(bytes_[at_]) || IsAt(',') || IsAt('#') || IsAt(close_);
  if (name.empty() || !ends) {
    if (tag.name.empty()) return Fail(item, "there is no text");
    return Fail(item, "there is no value after", tag.name);
  }
  tag.value = Keeps(item) ? TakeString(item, name) : std::string_view();
  tag.facts = FactsOf(tag.value);
  return true;
}

/// The text of a string; its name where it is not defined, or where its text would be too much.
std::string_view BibReader::TakeString(BibItem& item, std::string_view name) {
  const bool is_own = EqualNoCase(name, defining_);
  const std::string* text = is_own ? nullptr : strings_.Find(name, item.begin);
  if (!text || text->size() > room_) {
    item.undefined.push_back(name);
    return is_own ? std::string_view() : name;
  }
  room_ -= text->size();
  return *text;
}

/// Ends the item at the byte that was read last, for the reason with a name in it or without;
/// always false.
bool BibReader::Fail(BibItem& item, std::string_view reason, std::string_view name,
                     std::string_view rest) {
  item.fault = reason;
  if (!name.empty()) item.fault.append(" ").append(Quoted(name));
  item.fault.append(rest);
  item.fault_offset = at_;
  return false;
}

/// Ends the item because a value does not end well, and goes on where the next command may begin;
/// always false.
bool BibReader::FailValue(BibItem& item, std::string_view name, std::size_t offset,
                          std::string_view reason) {
  const std::size_t head = NextHeadLine(at_);
  at_ = offset;
  Fail(item, std::string(reason).append(name.empty() ? " the text" : " the value of"), name);
  if (bytes_[offset] != '}' || head < offset) {
    at_ = head;
    if (!is_strict_) strict_from_ = item.begin;
    is_strict_ = true;
  }
  return false;
}

std::string_view BibReader::TakeName() {
  const std::size_t from = at_;
  at_ = NameEnd(bytes_, at_);
  return bytes_.substr(from, at_ - from);
}

/// The first "@" from `from` on that begins a line like a command, or the end.
std::size_t BibReader::NextHeadLine(std::size_t from) {
  if (!std::exchange(has_heads_, true)) FindHeadLines();
  const auto head = std::lower_bound(heads_.begin(), heads_.end(), from);
  return head == heads_.end() ? bytes_.size() : *head;
}

/// Few libraries need them. They are found at once, as parents are read in any order.
void BibReader::FindHeadLines() {
  for (std::size_t at = bytes_.find('@', 1); at < bytes_.size(); at = bytes_.find('@', at + 1)) {
    if (IsHeadLine(at)) heads_.push_back(at);
  }
}

bool BibReader::IsHeadLine(std::size_t at) const {
  const std::size_t before = bytes_.find_last_not_of(" \t", at - 1);
  if (before == std::string_view::npos || (bytes_[before] != '\n' && bytes_[before] != '\r')) {
    return false;
  }
  const std::size_t name = SkipBlanks(bytes_, at + 1);
  const std::size_t end = NameEnd(bytes_, name);
  const std::size_t open = SkipBlanks(bytes_, end);
  return end > name && open < bytes_.size() && (bytes_[open] == '{' || bytes_[open] == '(');
}

std::size_t EndOfFrontTexts(std::string_view bytes) {
  std::size_t last = 0;
  for (std::size_t at = bytes.find('@'); at < bytes.size(); at = bytes.find('@', at + 1)) {
    const std::size_t type = SkipBlanks(bytes, at + 1);
    std::size_t end = type;
    // Not past the next "@", which is looked at itself, so that the time stays linear.
    while (end < bytes.size() && IsNameByte(bytes[end]) && bytes[end] != '@') ++end;
    const std::size_t key = SkipBlanks(bytes, std::min(SkipBlanks(bytes, end) + 1, bytes.size()));
    const std::size_t key_end = kKeyEndsOrAt.Find(bytes, key);
    const bool has_at = key_end < bytes.size() && bytes[key_end] == '@';
    if (has_at || EqualNoCase(bytes.substr(type, end - type), "preamble")) last = at;
  }
  return last;
}

}  // namespace tarvel
