// SPDX-License-Identifier: MIT
#include "tests/support/plain_journals.h"

#include "app/texts.h"
#include "tests/support/plain_primitives.h"
#include "tests/support/recording_reporter.h"

namespace tarvel::testing {

namespace {

class Pieces {
 public:
  explicit Pieces(std::string_view file) : file_(file) {}
  bool Next(std::string& line) {
    line.clear();
    while (at_ < file_.size() && line.size() < 4999) {
      line += file_[at_++];
      if (line.back() == '\n') break;
    }
    return !line.empty();
  }
  bool NextWith(const std::string& marker) {
    std::string line;
    while (Next(line)) {
      if (line.find(marker) != std::string::npos) return true;
    }
    return false;
  }

 private:
  std::string_view file_;
  std::size_t at_ = 0;
};

std::string Without(const std::string& text, const std::string& dropped) {
  std::string rest;
  for (const char byte : text) {
    if (dropped.find(byte) == std::string::npos) rest += byte;
  }
  return rest;
}

bool SameJournal(const std::string& one, const std::string& other) {
  std::string first = Without(one, " \t.:;{}\\");
  std::string second = Without(other, " \t.:;{}\\");
  first = PlainUpper(first);
  second = PlainUpper(second);
  return first == second;
}

std::string Braced(const std::string& line) {
  if (line.find('{') != std::string::npos || line.find('}') != std::string::npos) return line;
  std::string changed;
  for (const char byte : line) changed += byte == '=' ? "= {" : std::string(1, byte);
  if (changed.find(',') != std::string::npos) changed.erase(changed.find(','));
  return changed + "},\n";
}

constexpr const char* kFailures[] = {
    "Function JournalStrings()_5: There is no 'START' in the file '.bs' file!",
    "Function JournalStrings()_6: Cannot read journal name in the file 'JournalStrings.bs' file!",
    "Function JournalStrings()_7: Cannot read the abbreviation of the journal name in the file "
    "'JournalStrings.bs' file!",
    "Function JournalStrings()_8: There is no 'variations' string in the file 'JournalStrings.bs' "
    "file!"};

void Rename(const std::string& library, const PlainJournalTable& table, const Settings& settings,
            PlainJournals& result) {
  PlainFile file{library};
  std::string text;
  std::string bibitem;
  int count = 0;
  while (file.Gets(text, 5000)) {
    if (PlainIsKnownEntry(text)) bibitem = PlainCopyUntilChar(text, '{', ',');
    if (!PlainContainsNoCase(Without(text, " \t"), "journal")) {
      result.library += text;
      continue;
    }
    text = Braced(text);
    std::string value;
    std::string written = text;
    PlainReadFieldValue(written, file, value);
    std::string matched;
    std::size_t index = 0;
    if (!table.Find(value, matched, index)) {
      result.library += written;
      continue;
    }
    if (settings.JournalAbbreviated != 1 && settings.JournalFullNames != 1) continue;
    const std::string& full = table.full_names[index];
    const std::string& name = settings.JournalAbbreviated == 1 ? table.abbreviations[index] : full;
    for (char& byte : written) byte = byte == '\t' ? ' ' : byte;
    PlainReplaceString(written, value, name);
    result.library += written;
    if (value == name) continue;
    ++count;
    result.log += "Entry '" + bibitem + "':\nThe name of the Journal '" + full +
                  "', which is named '" + value +
                  "' in the BibTeX library,\nhas been renamed to: '" + name + "'\n\n";
  }
  result.log.append("\n\n").append(std::to_string(count));
  result.log.append(" changes have been made in total. ");
}

}  // namespace

PlainJournalTable::PlainJournalTable(std::size_t most_journals)
    : most(most_journals), full_names(most), abbreviations(most), counts(most) {}

int PlainJournalTable::Read(std::string_view list) {
  Pieces file(list);
  if (!file.NextWith("START")) return 5;
  for (; read < most; ++read) {
    if (!file.NextWith("******* Journal-start *******")) break;
    std::string line;
    if (!file.Next(line)) return 6;
    full_names[read] = line.substr(0, line.size() - 1);
    if (!file.Next(line)) return 7;
    abbreviations[read] = line.substr(0, line.size() - 1);
    if (variations.size() < 20 * read + 20) variations.resize(20 * read + 20);
    for (std::size_t row = 0; row < 20; ++row) variations[20 * read + row].clear();
    if (!file.NextWith("******* Variations    *******")) return 8;
    std::size_t row = 20 * read;
    while (file.Next(line) && line.find("******* Journal-end   *******") == std::string::npos) {
      if (variations.size() <= row) variations.resize(row + 1);
      variations[row++] = line.substr(0, line.size() - 1);
      ++counts[read];
    }
  }
  return 0;
}

bool PlainJournalTable::Find(const std::string& value, std::string& matched,
                             std::size_t& index) const {
  for (const auto* table : {&abbreviations, &full_names}) {
    for (index = 0; index < most && !(*table)[index].empty(); ++index) {
      matched = (*table)[index];
      if (SameJournal(value, matched)) return true;
    }
  }
  for (index = 0; index < read; ++index) {
    for (std::size_t row = 20 * index; row < 20 * index + 20 && !variations[row].empty(); ++row) {
      matched = variations[row];
      if (SameJournal(value, matched)) return true;
    }
  }
  return false;
}

PlainJournals PlainRunJournals(const std::string& library, std::string_view list,
                               const Settings& settings, const std::string& new_path,
                               std::size_t most) {
  PlainJournals result{0, "", std::string(BibFileHeader) + "\n", std::string(LogFileHeader) + "\n"};
  PlainJournalTable table(most);
  const int failure = table.Read(list);
  if (failure != 0) {
    result.printed = Printed(kFailures[failure - 5]);
    return result;
  }
  result.log += "Here are all Journal names which have been renamed:\n\n\n";
  Rename(library, table, settings, result);
  result.log += "The changed journal names are stored in a new BibTeX library:\n" + new_path +
                "\n\n\n\nThere are " + std::to_string(table.read + 1) +
                " journal names listed in the 'JournalStrings.bs' file:\n";
  for (std::size_t i = 0; i < table.read; ++i) {
    const std::string& abbreviation = table.abbreviations[i];
    std::string name;
    while (name.size() + abbreviation.size() < 70) name += ' ';
    name += abbreviation;
    result.log += "Journal name: " + name +
                  ", number of variations: " + std::to_string(table.counts[i]) + "\n";
  }
  result.log += "\n\n";
  result.result = 1;
  return result;
}

}  // namespace tarvel::testing
