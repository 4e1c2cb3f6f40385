// SPDX-License-Identifier: MIT
#include "tests/support/plain_clean_authors.h"

#include "tests/support/plain_author_lists.h"
#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

bool IsAuthor(const std::string& line) {
  std::string squeezed;
  for (const char byte : line) {
    if (byte != ' ' && byte != '\t') squeezed += byte;
  }
  std::string start = squeezed.substr(0, 7);
  start = PlainUpper(start);
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
    if (PlainIsKnownEntry(line)) bibitem = PlainCopyUntilChar(line, '{', ',');
    if (!IsAuthor(line)) {
      out.library += line;
      continue;
    }
    std::string value;
    PlainReadFieldValue(line, file, value);
    const std::string old_list = WithoutEscapedBlanks(value);
    int flag = 0;
    const std::string new_list = PlainNewAuthorList(old_list, flag);
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
