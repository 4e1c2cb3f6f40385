// SPDX-License-Identifier: MIT
#include "tests/support/plain_clean_tags.h"

#include <vector>

#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

const std::vector<std::string> kFilter{
    "author",   "title",       "volume",    "pages",        "year",        "journal", "month",
    "abstract", "note",        "owner",     "timestamp",    "url",         "comment", "number",
    "eid",      "crossref",    "review",    "doi",          "file",        "editor",  "publisher",
    "address",  "edition",     "school",    "series",       "citeseerurl", "type",    "booktitle",
    "chapter",  "nationality", "yearfiled", "organization", "institution"};

const std::vector<std::string> kTable{
    "author", "booktitle", "title",       "volume",    "pages",        "year",       "journal",
    "month",  "abstract",  "note",        "owner",     "timestamp",    "url",        "comment",
    "number", "eid",       "keywords",    "crossref",  "review",       "doi",        "file",
    "editor", "publisher", "address",     "edition",   "school",       "series",     "citeseerurl",
    "type",   "chapter",   "nationality", "yearfiled", "organization", "institution"};

std::string Lower(std::string text) {
  for (char& byte : text) {
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return text;
}

bool Mentions(const std::string& text, const std::string& word) {
  return Lower(text).find(word) != std::string::npos;
}

class Run {
 public:
  Run(const std::string& input, const Settings& settings) : in_{input}, settings_(settings) {}

  PlainCleanTagsResult Walk(const std::string& input_path, const std::string& library_path) {
    out_.library =
        "#\n\nThis BibTeX file has been created by Tarvel v3.81\n\n      Veldo Marsk "
        "2014\n\n#\n\n\n";
    out_.log =
        "#\n\nThis log file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n\n";
    int modified = 0, empty = 0, strings = 0;
    std::string line;
    while (Next(line, 50000)) {
      if (line[0] == '\n') continue;
      const int string = HandleStringLine(line);
      if (string == 0) return out_;
      if (string == 90) ++strings;
      if (CheckEmptyEntry(line) == 0) {
        ++empty;
        continue;
      }
      if (SortTags(line) == 88) ++modified;
    }
    out_.log += "\n\n\nThe tag list of " + std::to_string(modified) +
                " BibTeX entries in the BibTeX file\n    '" + input_path +
                "'\nwas modified. Furthermore " + std::to_string(empty) + " empty entries and " +
                std::to_string(strings) +
                " '@STRING{' were removed. The path of the new BibTeX file is:\n    '" +
                library_path + "'\n\n";
    out_.result = 1;
    return out_;
  }

 private:
  bool Next(std::string& line, std::size_t limit) { return in_.Gets(line, limit); }

  int HandleStringLine(std::string& line) {
    if (line.find("@STRING{") == std::string::npos) return 1;
    if (settings_.RemoveJournalStrings != 0) {
      out_.log += "The following @STRING has been removed:\n    " + line + "\n\n";
      return 90;
    }
    out_.library += "..." + line;
    const std::size_t position = in_.at;
    while (Next(line, 50000)) {
      if (PlainIsKnownEntry(line)) {
        in_.at = position;
        return 1;
      }
      out_.library += "... " + line;
    }
    return 0;
  }

  int CheckEmptyEntry(std::string& line) {
    const std::size_t position = in_.at;
    if (!PlainIsKnownEntry(line) || settings_.RemoveEmptyEntries != 1) return 1;
    if (PlainCopyUntilChar(line, '{', ',').empty()) return 0;
    std::string other;
    if (!Next(other, 50000)) return 0;
    if (!Mentions(other, "owner")) {
      in_.at = position;
      return 1;
    }
    if (!Next(other, 50000)) return 0;
    if (Mentions(other, "timestamp")) return 0;
    in_.at = position;
    return 1;
  }

  int SortTags(std::string& line) {
    std::string removed;
    if (!PlainIsKnownEntry(line)) return 1;
    line.resize(line.size() - 2);
    out_.library += line;
    const std::string key = PlainCopyUntilChar(line, '{', ',');
    const std::size_t position = in_.at;
    int written = 0;
    bool at_end = false;
    for (;;) {
      if (!Next(line, 500000)) {
        at_end = true;
        break;
      }
      if (PlainIsKnownEntry(line) || line.find("@comment{jabref") != std::string::npos) break;
      bool passes = false;
      for (const std::string& word : kFilter) passes = passes || Mentions(line, word);
      if (!passes) continue;
      std::string value;
      PlainReadFieldValue(line, in_, value);
      std::string name;
      for (const char byte : line) {
        if (byte == '=' || byte == '\n') break;
        if (byte != ' ' && byte != '\t' && byte != '.' && byte != ':' && byte != ';') name += byte;
      }
      written += Tag(name, value, removed) ? 1 : 0;
    }
    if (!at_end) {
      out_.library += written > 0 ? "\n" : ",\n";
    } else {
      out_.library += "\n";
    }
    out_.library += "}\n\n";
    if (!removed.empty()) {
      if (removed.size() > 2) removed.resize(removed.size() - 2);
      out_.log +=
          "The following tags have been removed from the entry '" + key + "':\n" + removed + "\n\n";
    }
    if (!at_end) in_.at = position;
    return removed.empty() ? 1 : 88;
  }

  bool Tag(const std::string& name, const std::string& value, std::string& removed) {
    for (const std::string& word : kTable) {
      if (!Mentions(name, word)) continue;
      if (settings_.RemoveTag[TagIndex(word)] != 0) {
        removed += name + ", ";
        return false;
      }
      const bool twice = word == "title" && (value.empty() || value[0] != '{');
      out_.library +=
          ",\n  " + word + " = {" + (twice ? "{" : "") + value + (twice ? "}" : "") + "}";
      return true;
    }
    return false;
  }

  PlainFile in_;
  const Settings& settings_;
  PlainCleanTagsResult out_;
};

}  // namespace

PlainCleanTagsResult PlainCleanTags(const std::string& input, const std::string& input_path,
                                    const std::string& library_path, const Settings& settings) {
  return Run(input, settings).Walk(input_path, library_path);
}

}  // namespace tarvel::testing
