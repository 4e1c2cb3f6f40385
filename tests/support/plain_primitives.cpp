// SPDX-License-Identifier: MIT
#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

const char* const kTypes[] = {
    "@ARTICLE",          "@BOOK",       "@PHDTHESIS",  "@INCOLLECTION",
    "@INPROCEEDINGS",    "@MISC",       "@OTHER",      "@PROCEEDINGS",
    "@ELECTRONIC{",      "@BOOKLET",    "@INBOOK",     "@MASTERTHESIS",
    "@CONFERENCE",       "@MANUAL",     "@TECHREPORT", "@UNPUBLISHED",
    "@STANDARD",         "@PERIODICAL", "@PATENT",     "@MEETINGABSTRACT",
    "@PROCEEDINGSPAPER", "@LETTER",     "@REVIEW",     "@EDITORIALMATERIAL"};

bool BlankByte(char byte) {
  const int code = static_cast<unsigned char>(byte);
  return (code >= 1 && code <= 32) || code >= 128;
}

/// Reads the next line to offset `at` of the line and skips its blanks; -1 at the end.
long Continue(std::string& line, PlainFile& file, std::size_t at, std::size_t limit) {
  std::string next;
  while (file.Gets(next, limit)) {
    line = line.substr(0, at) + next;
    std::size_t i = at;
    while (i < line.size() && BlankByte(line[i])) ++i;
    if (i < line.size()) return static_cast<long>(i);
    limit = 1000;
  }
  return -1;
}

char Upper(char byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

}  // namespace

bool PlainFile::Gets(std::string& line, std::size_t limit) {
  if (at == bytes.size()) return false;
  line.clear();
  while (at < bytes.size() && line.size() < limit - 1) {
    line += bytes[at++];
    if (line.back() == '\n') break;
  }
  return true;
}

bool PlainIsKnownEntry(std::string& line) {
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != '@') continue;
    if (i + 1 == line.size()) return false;
    if (line[i + 1] == '{') continue;
    std::size_t brace = i + 1;
    while (brace < line.size() && line[brace] != '{') ++brace;
    if (brace == line.size()) return false;
    for (std::size_t k = i + 1; k < brace; ++k) line[k] = Upper(line[k]);
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

bool PlainReadFieldValue(std::string& line, PlainFile& file, std::string& value) {
  value.clear();
  std::size_t i = 0;
  while (i < line.size() && line[i] != '{') ++i;
  if (i == line.size()) return false;
  ++i;
  int depth = 1;
  if (i == line.size()) {
    const long next = Continue(line, file, i, 1000);
    if (next < 0) return false;
    i = static_cast<std::size_t>(next);
  }
  for (; i < line.size(); ++i) {
    if (line[i] == '\n') {
      const long next = Continue(line, file, i, 25000);
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

std::string PlainUpper(const std::string& text) {
  std::string upper;
  for (const char byte : text) upper += Upper(byte);
  return upper;
}

bool PlainContainsNoCase(const std::string& text, const std::string& pattern) {
  for (std::size_t i = 0; i + pattern.size() <= text.size(); ++i) {
    std::size_t k = 0;
    while (k < pattern.size() && Upper(text[i + k]) == Upper(pattern[k])) ++k;
    if (k == pattern.size()) return true;
  }
  return false;
}

void PlainStripBraces(std::string& value) {
  while (!value.empty() && value.front() == '{') value = value.substr(1);
  while (value.size() > 1 && value.back() == '}') value = value.substr(0, value.size() - 1);
}

bool PlainCollapseDoubledChar(std::string& text, char byte) {
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != byte) continue;
    if (text[i + 1] != byte) return false;
    text = text.substr(0, i) + text.substr(i + 1);
    return true;
  }
  return false;
}

std::string PlainCopyUntilChar(const std::string& line, char stop) {
  std::string copy;
  for (const char byte : line) {
    if (byte == stop || byte == '\n') break;
    copy += byte;
  }
  return copy;
}

std::string PlainCopyUntilChar(const std::string& line, char start, char stop) {
  std::size_t i = 0;
  while (i < line.size() && line[i] != start && line[i] != '\n') ++i;
  if (i == line.size() || line[i] != start) return "";
  return PlainCopyUntilChar(line.substr(i + 1), stop);
}

void PlainReplaceBetween(std::string& line, const std::string& insertion, char start, char stop) {
  std::string result;
  std::size_t i = 0;
  while (i < line.size() && line[i] != start && line[i] != '\n') result += line[i++];
  if (i == line.size() || line[i] != start) return;
  result += line[i++];
  result += insertion;
  while (i < line.size() && line[i] != stop && line[i] != '\n') ++i;
  while (i < line.size()) result += line[i++];
  line = result;
}

}  // namespace tarvel::testing
