// SPDX-License-Identifier: MIT
#include "warnings/line_tags.h"

#include <algorithm>

#include "app/texts.h"
#include "core/ascii.h"

namespace tarvel {

namespace {

constexpr std::string_view kBetweenTags = " \t\r\n,}()#";

bool IsNameByte(char byte) {
  return IsLetter(byte) || (byte >= '0' && byte <= '9') ||
         std::string_view("_:.+-").find(byte) != std::string_view::npos;
}

bool IsBlankInLine(char byte) { return IsBlankOrTab(byte) || byte == '\r'; }

/// The size of the value that `text` begins with.
std::size_t ValueSize(std::string_view text) {
  const char opens = text.empty() ? '\0' : text.front();
  if (opens != '{' && opens != '"') return std::min(text.find_first_of(",}\n"), text.size());
  int depth = opens == '{' ? 1 : 0;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '{') ++depth;
    if (text[at] == '}') --depth;
    const bool closes = opens == '{' ? text[at] == '}' : text[at] == '"';
    if (closes && depth <= 0) return at + 1;
  }
  return text.size();
}

}  // namespace

bool IsTagName(std::string_view name) {
  return !name.empty() && IsLetter(name.front()) &&
         std::all_of(name.begin(), name.end(), IsNameByte);
}

std::vector<LineTag> TagsOf(std::string_view text) {
  std::vector<LineTag> tags;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(kBetweenTags), text.size()));
    if (text.empty()) return tags;
    const std::size_t end = std::min(text.find_first_of("=,{}\"\n"), text.size());
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
    const std::size_t size = ValueSize(text);
    tags.push_back({name, text.substr(0, size)});
    text.remove_prefix(size);
  }
}

std::string_view TagNameOf(std::string_view line) {
  std::size_t begin = 0;
  while (begin < line.size() && (IsBlankInLine(line[begin]) || line[begin] == ',')) ++begin;
  line.remove_prefix(begin);
  std::size_t end = 0;
  while (end < line.size() && IsNameByte(line[end])) ++end;
  std::size_t behind = end;
  while (behind < line.size() && IsBlankInLine(line[behind])) ++behind;
  const bool is_tag = behind < line.size() && line[behind] == '=' && IsTagName(line.substr(0, end));
  return is_tag ? line.substr(0, end) : std::string_view();
}

bool IsFileHeader(std::string_view line) {
  if (line.empty() || line.starts_with("% Encoding:")) return true;
  for (std::size_t at = 0; at < BibFileHeader.size();) {
    const std::string_view own = LineAt(BibFileHeader, at);
    if (Trim(own, kBlanks) == line) return true;
    at += own.size() + 1;
  }
  return false;
}

std::string_view LineAt(std::string_view bytes, std::size_t offset) {
  const std::string_view rest = bytes.substr(std::min(offset, bytes.size()));
  return rest.substr(0, rest.find('\n'));
}

}  // namespace tarvel
