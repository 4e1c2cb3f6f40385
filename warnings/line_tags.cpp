// SPDX-License-Identifier: MIT
#include "warnings/line_tags.h"

#include <algorithm>
#include <cstring>

#include "app/texts.h"
#include "core/ascii.h"
#include "core/byte_set.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr ByteSet kBetweenTags(" \t\r\n,}()#");
constexpr ByteSet kNameEnds("=,{}\"\n");
constexpr ByteSet kBareEnds(",}\n#");
constexpr ByteSet kStops("{}\"");
constexpr ByteSet kWhite(" \t\r\n");

constexpr ByteSet kNameBytes("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_:.+-");
constexpr ByteSet kBlanksInLine(" \t\r");
constexpr ByteSet kBeforeName(" \t\r,");

/// The size of the value, or piece of one, that `text` begins with.
std::size_t ValueSize(std::string_view text) {
  const char opens = text.empty() ? '\0' : text.front();
  if (opens != '{' && opens != '"') return kBareEnds.Find(text, 0);
  int depth = opens == '{' ? 1 : 0;
  for (std::size_t at = 1; (at = kStops.Find(text, at)) < text.size(); ++at) {
    if (text[at] == '{') ++depth;
    if (text[at] == '}') --depth;
    const bool closes = opens == '{' ? text[at] == '}' : text[at] == '"';
    if (closes && depth <= 0) return at + 1;
  }
  return text.size();
}

/// The same with the pieces that "#" joins to it.
std::size_t JoinedSize(std::string_view text) {
  std::size_t size = ValueSize(text);
  while (true) {
    const std::size_t joint = kWhite.FindOther(text, size);
    if (joint == text.size() || text[joint] != '#') return size;
    const std::size_t piece = kWhite.FindOther(text, joint + 1);
    size = piece + ValueSize(text.substr(piece));
  }
}

std::vector<std::string_view> TrimmedLinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t at = 0; at < text.size(); at = LineEnd(text, at)) {
    lines.push_back(Trim(LineAt(text, at), kBlanks));
  }
  return lines;
}

}  // namespace

bool IsTagName(std::string_view name) {
  return !name.empty() && IsLetter(name.front()) && kNameBytes.FindOther(name, 0) == name.size();
}

std::vector<LineTag> TagsOf(std::string_view text) {
  std::vector<LineTag> tags;
  while (true) {
    text.remove_prefix(kBetweenTags.FindOther(text, 0));
    if (text.empty()) return tags;
    const std::size_t end = kNameEnds.Find(text, 0);
    const std::string_view name = TrimEnd(text.substr(0, end), IsBlank);
    const bool is_tag = end < text.size() && text[end] == '=' && IsTagName(name);
    text.remove_prefix(end);
    if (!is_tag) {
      // What a text between braces holds is of no tag.
      if (text.starts_with('=')) text.remove_prefix(1);
      if (text.starts_with('{') || text.starts_with('"')) text.remove_prefix(ValueSize(text));
      continue;
    }
    text.remove_prefix(SkipBlanks(text, 1));
    const std::size_t size = JoinedSize(text);
    tags.push_back({name, text.substr(0, size)});
    text.remove_prefix(size);
  }
}

std::ptrdiff_t OpenBraces(std::string_view text) {
  return static_cast<std::ptrdiff_t>(CountByte(text, '{') - CountByte(text, '}'));
}

std::string_view TagNameOf(std::string_view line) {
  const std::size_t begin = kBeforeName.FindOther(line, 0);
  const std::size_t end = kNameBytes.FindOther(line, begin);
  const std::size_t next = kBlanksInLine.FindOther(line, end);
  const bool is_tag =
      begin < end && IsLetter(line[begin]) && next < line.size() && line[next] == '=';
  return is_tag ? line.substr(begin, end - begin) : std::string_view();
}

bool IsFileHeader(std::string_view line) {
  static const std::vector<std::string_view> own = TrimmedLinesOf(BibFileHeader);
  return line.empty() || line.starts_with("% Encoding:") ||
         std::find(own.begin(), own.end(), line) != own.end();
}

std::size_t LineBegin(std::string_view bytes, std::size_t from, std::size_t at) {
  const void* const before = memrchr(bytes.data() + from, '\n', at - from);
  if (!before) return from;
  return static_cast<std::size_t>(static_cast<const char*>(before) - bytes.data()) + 1;
}

std::size_t LineEnd(std::string_view bytes, std::size_t at) {
  return std::min(bytes.find('\n', at), bytes.size() - 1) + 1;
}

std::string_view LineAt(std::string_view bytes, std::size_t offset) {
  const std::string_view rest = bytes.substr(std::min(offset, bytes.size()));
  return rest.substr(0, rest.find('\n'));
}

}  // namespace tarvel
