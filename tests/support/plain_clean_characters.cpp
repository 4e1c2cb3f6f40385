// SPDX-License-Identifier: MIT
#include "tests/support/plain_clean_characters.h"

#include "app/texts.h"
#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

bool ReadPiece(const std::string& file, std::size_t& at, std::string& line) {
  line.clear();
  while (at < file.size() && line.size() < 49999) {
    line += file[at++];
    if (line.back() == '\n') break;
  }
  return !line.empty();
}

std::string WithoutBlanks(const std::string& line) {
  std::string squeezed;
  for (const char byte : line) {
    if (byte != ' ' && byte != '\t') squeezed += byte;
  }
  return squeezed;
}

bool IsExempt(const std::string& line) {
  const std::string squeezed = WithoutBlanks(line);
  for (const char* tag : {"file={", "owner={", "timestamp={", "doi={", "url={"}) {
    if (PlainContainsNoCase(squeezed, tag)) return true;
  }
  return false;
}

}  // namespace

PlainCharacters PlainCleanCharacters(const std::string& library, const std::string& path,
                                     const std::string& new_path) {
  PlainCharacters result{std::string(BibFileHeader) + "\n", std::string(LogFileHeader) + "\n"};
  std::string line;
  std::string bibitem;
  int number = 1;
  int count = 0;
  for (std::size_t at = 0; ReadPiece(library, at, line); ++number) {
    if (IsExempt(line)) continue;
    const bool entry = PlainIsKnownEntry(line);
    if (entry || PlainContainsNoCase(line, "@comment{jabref")) {
      bibitem = PlainCopyUntilChar(line, '{', ',');
    }
    int column = 0;
    for (const char byte : line) {
      ++column;
      const int value = static_cast<unsigned char>(byte);
      if ((value >= 32 && value <= 126) || value == 9 || value == 10 || value == 13) {
        result.library += byte;
        continue;
      }
      ++count;
      result.library += '?';
      result.log += "In entry '" + bibitem + "', in line " + std::to_string(number) + " and row " +
                    std::to_string(column) + "\n   character " +
                    std::to_string(value < 128 ? value : value - 256) + " (--";
      result.log += byte;
      result.log += "--) could be found.";
      if (value > 127) result.log += " <- negative value (!)";
      if (value < 32) result.log += " <- command (!)";
      result.log += "\n\n";
    }
  }
  result.log += "\n\n\nAbout " + std::to_string(count) +
                " bad characters in the BibTeX file\n    '" + path +
                "'\ncould be found. The new BibTeX file is stored in\n    '" + new_path +
                "'.\nThe bad characters were replaced by a '?'";
  return result;
}

}  // namespace tarvel::testing
