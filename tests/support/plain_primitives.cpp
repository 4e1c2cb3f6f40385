// SPDX-License-Identifier: MIT
#include "tests/support/plain_primitives.h"

#include <cctype>
#include <optional>

namespace tarvel::testing {

namespace {

const char* const kTypes[] = {
    "@ARTICLE",          "@BOOK",       "@PHDTHESIS",  "@INCOLLECTION",
    "@INPROCEEDINGS",    "@MISC",       "@OTHER",      "@PROCEEDINGS",
    "@ELECTRONIC{",      "@BOOKLET",    "@INBOOK",     "@MASTERTHESIS",
    "@CONFERENCE",       "@MANUAL",     "@TECHREPORT", "@UNPUBLISHED",
    "@STANDARD",         "@PERIODICAL", "@PATENT",     "@MEETINGABSTRACT",
    "@PROCEEDINGSPAPER", "@LETTER",     "@REVIEW",     "@EDITORIALMATERIAL"};

/// One read of the stream, a byte at a time.
std::optional<std::string> NextLine(LineStream& stream, std::size_t limit) {
  std::string line;
  while (line.size() < limit - 1) {
    const auto byte = stream.ReadLine(2);
    if (!byte) break;
    line += *byte;
    if (line.back() == '\n') break;
  }
  if (line.empty()) return std::nullopt;
  return line;
}

bool BlankByte(char byte) {
  const int code = static_cast<unsigned char>(byte);
  return (code >= 1 && code <= 32) || code >= 128;
}

/// Reads the next line to position `at` of the line and skips its blanks; -1 at the end.
long Continue(std::string& line, LineStream& stream, std::size_t at, std::size_t limit) {
  auto next = NextLine(stream, limit);
  while (next) {
    line = line.substr(0, at) + *next;
    std::size_t i = at;
    while (i < line.size() && BlankByte(line[i])) ++i;
    if (i < line.size()) return static_cast<long>(i);
    next = NextLine(stream, 1000);
  }
  return -1;
}

}  // namespace

bool PlainIsKnownEntry(std::string& line) {
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != '@') continue;
    if (i + 1 == line.size()) return false;
    if (line[i + 1] == '{') continue;
    std::size_t brace = i + 1;
    while (brace < line.size() && line[brace] != '{') ++brace;
    if (brace == line.size()) return false;
    for (std::size_t k = i + 1; k < brace; ++k) {
      if (line[k] >= 'a' && line[k] <= 'z') line[k] = static_cast<char>(std::toupper(line[k]));
    }
    i = brace - 1;
  }
  for (const char* type : kTypes) {
    if (line.find(type) != std::string::npos) return true;
  }
  return false;
}

bool PlainReplaceString(std::string& line, const std::string& pattern,
                        const std::string& replacement) {
  if (pattern.empty() || line.find(pattern) == std::string::npos) return false;
  std::size_t i = 0;
  while (i < line.size()) {
    std::size_t k = 0;
    while (k < pattern.size() && i + k < line.size() && line[i + k] == pattern[k]) ++k;
    if (k == pattern.size()) {
      line = line.substr(0, i) + replacement + line.substr(i + k);
      i = i + replacement.size() + 1;
    } else if (k > 0) {
      i = i + k + 1;
    } else {
      ++i;
    }
  }
  return true;
}

bool PlainReadFieldValue(std::string& line, LineStream& stream, std::string& value) {
  value.clear();
  std::size_t i = 0;
  while (i < line.size() && line[i] != '{') ++i;
  if (i == line.size()) return false;
  ++i;
  int depth = 1;
  if (i == line.size()) {
    const long next = Continue(line, stream, i, 1000);
    if (next < 0) return false;
    i = static_cast<std::size_t>(next);
  }
  for (; i < line.size(); ++i) {
    if (line[i] == '\n') {
      const long next = Continue(line, stream, i, 25000);
      if (next < 0) return false;
      value += ' ';
      i = static_cast<std::size_t>(next);
      --i;
    } else if (line[i] == '}') {
      if (depth == 1) return true;
      --depth;
      value += '}';
    } else {
      if (line[i] == '{') ++depth;
      value += line[i];
    }
  }
  return true;
}

}  // namespace tarvel::testing
