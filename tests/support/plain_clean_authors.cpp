// SPDX-License-Identifier: MIT
#include "tests/support/plain_clean_authors.h"

#include "core/text_primitives.h"
#include "ops/authors/author_lists.h"
#include "ops/authors/author_names.h"

namespace tarvel::testing {

namespace {

struct PlainFile {
  const std::string& bytes;
  std::size_t at = 0;

  /// At most `limit - 1` bytes up to and with a line feed; false at the end.
  bool Gets(std::string& line, std::size_t limit) {
    line.clear();
    while (at < bytes.size() && line.size() < limit - 1) {
      line += bytes[at++];
      if (line.back() == '\n') break;
    }
    return !line.empty();
  }
};

/// Reads a line to the place `from` of the buffer and gives the place of its first byte that is not
/// blank; the buffer ends at `from` when there are no more lines.
bool ReadOn(PlainFile& file, std::string& line, std::size_t& from, std::size_t limit) {
  const std::size_t start = from;
  std::string next;
  while (file.Gets(next, limit)) {
    line = line.substr(0, start) + next;
    from = start;
    while (from < line.size()) {
      const int code = static_cast<unsigned char>(line[from]);
      if (code == 0 || (code > 32 && code < 128)) return true;
      ++from;
    }
    limit = 1000;
  }
  return false;
}

std::string ReadValue(PlainFile& file, std::string line) {
  std::string value;
  std::size_t at = line.find('{');
  if (at == std::string::npos) return value;
  ++at;
  if (at == line.size() && !ReadOn(file, line, at, 1000)) return value;
  for (int depth = 1; at < line.size();) {
    const char byte = line[at];
    if (byte == '\n') {
      if (!ReadOn(file, line, at, 25000)) return value;
      value += ' ';
      continue;
    }
    if (byte == '}' && depth == 1) return value;
    if (byte == '}') --depth;
    if (byte == '{') ++depth;
    value += byte;
    ++at;
  }
  return value;
}

bool IsAuthor(const std::string& line) {
  std::string squeezed;
  for (const char byte : line) {
    if (byte != ' ' && byte != '\t') squeezed += byte;
  }
  std::string start = squeezed.substr(0, 7);
  StringToUpper(start);
  return start == "AUTHOR=";
}

std::string WithoutEscapedBlanks(const std::string& value) {
  std::string result;
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (value.compare(at, 2, "\\ ") == 0) {
      result += ' ';
      ++at;
    } else {
      result += value[at];
    }
  }
  return result;
}

/// The new list and which of the seven flags it got, 0 for none.
std::string NewList(const std::string& old_list, int& flag) {
  flag = 0;
  std::string result;
  if (!old_list.empty() && old_list.front() == '{' && old_list.back() == '}') {
    flag = 1;
    result = old_list;
  } else if (old_list.empty() || IsSingleWord(old_list)) {
    flag = 2;
    result = old_list;
  } else {
    std::string shortened = old_list;
    bool others = false;
    if (ReplaceString(shortened, "{\\ldots}", "")) others = true;
    if (ReplaceString(shortened, "\\ldots", "")) others = true;
    if (ReplaceString(shortened, "{\\it et al}", "")) others = true;
    if (ReplaceString(shortened, "and et al.", "")) others = true;
    if (ReplaceString(shortened, "and et al", "")) others = true;
    if (ReplaceString(shortened, "et al.", "")) others = true;
    if (ReplaceString(shortened, "et al", "")) others = true;
    if (ReplaceString(shortened, "and Others", "")) others = true;
    std::string list;
    LowerCaseAnd(shortened, list);
    if (ArrangeInitialsThenSurname(list, result)) {
      flag = 3;
    } else if (ArrangeSurnameThenInitials(list, result)) {
      flag = 4;
    } else if (ArrangeWordPairs(list, result)) {
      flag = 5;
    } else if (ArrangeCommaNames(list, result)) {
      flag = 6;
    } else if (ArrangeFullNames(list, result)) {
      flag = 7;
    } else {
      result = list;
    }
    if (others) result += " {\\ldots}";
  }
  NormaliseParticles(result);
  return result;
}

}  // namespace

PlainAuthorFiles PlainCleanAuthors(const std::string& bytes, const std::string& path,
                                   const std::string& library_path) {
  PlainAuthorFiles out;
  out.log =
      "#\n\nThis log file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n\n";
  out.library =
      "#\n\nThis BibTeX file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n\n";
  PlainFile file{bytes};
  std::string line;
  std::string bibitem;
  int count = 0;
  bool in_header = true;
  while (file.Gets(line, 50000)) {
    if (in_header && line.find('#') != std::string::npos) continue;
    in_header = false;
    if (IsKnownEntry(line)) bibitem = CopyUntilChar(line, '{', ',');
    if (!IsAuthor(line)) {
      out.library += line;
      continue;
    }
    const std::string old_list = WithoutEscapedBlanks(ReadValue(file, line));
    int flag = 0;
    const std::string new_list = NewList(old_list, flag);
    if (new_list != old_list) {
      out.log += "Function flags:";
      for (int i = 1; i <= 7; ++i) out.log += i == flag ? " 1" : " 0";
      out.log += "\nAuthor names arrangened for entry '" + bibitem + "':\n";
      out.log += "    Old author list: " + old_list + "\n";
      out.log += "    New author list: " + new_list + "\n\n";
      ++count;
    }
    out.library += "  author = {" + new_list + "},\n";
  }
  out.log += "\n\n\nThe author list of " + std::to_string(count) +
             " BibTeX entries from the BibTeX file\n    '" + path +
             "'\nwere put into the correct BibTeX structure. The new BibTeX file is stored in\n"
             "    '" +
             library_path + "'.";
  return out;
}

}  // namespace tarvel::testing
