// SPDX-License-Identifier: MIT
#include "tests/support/plain_compare.h"

#include <cstddef>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "app/texts.h"
#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

constexpr std::size_t kLimit = 5000;

bool Holds(const std::string& text, const std::string& pattern) {
  return text.find(pattern) != std::string::npos;
}

bool IsEntry(std::string line) { return PlainIsKnownEntry(line); }

struct PlainEntry {
  std::size_t start = 0;
  std::string key;
  std::string type;
  std::map<std::string, std::string> tags;
};

/// Reads the next entry; false when the file ends before one.
bool ReadEntry(PlainFile& file, PlainEntry& entry) {
  std::string line;
  do {
    entry.start = file.at;
    if (!file.Gets(line, kLimit)) return false;
    line = PlainUpper(line);
  } while (!IsEntry(line) && !Holds(line, "@COMMENT{JABREF"));
  entry.key = PlainCopyUntilChar(line, '{', ',');
  entry.type = PlainCopyUntilChar(line, '@', '{');
  entry.tags.clear();
  while (file.Gets(line, kLimit)) {
    const std::string upper = PlainUpper(line);
    std::string found;
    for (const char* name : {"JOURNAL", "YEAR", "PAGES", "VOLUME", "AUTHOR", "TITLE", "NOTE", "URL",
                             "NUMBER", "NATIONALITY", "COMMENT"}) {
      if (found.empty() && Holds(upper, name)) found = name;
    }
    if (found.empty() && line[0] == '}') break;
    if (found.empty()) continue;
    std::string value;
    PlainReadFieldValue(line, file, value);
    if (found == "PAGES") value = value.substr(0, value.find('-'));
    entry.tags[found] = value;
  }
  return true;
}

/// Copies the entry that starts at `start`; false when the file ends before a "}" line.
bool CopyEntry(PlainFile& file, std::size_t start, std::string& out) {
  file.at = start;
  std::string line;
  while (file.Gets(line, kLimit)) {
    out += line;
    if (line[0] == '}') return true;
  }
  return false;
}

void SkipToFirstEntry(PlainFile& file) {
  std::string line;
  std::size_t start = file.at;
  while (file.Gets(line, kLimit)) {
    if (IsEntry(PlainUpper(line))) {
      file.at = start;
      return;
    }
    start = file.at;
  }
}

bool IsOneOf(const std::string& type, std::initializer_list<const char*> types) {
  for (const char* name : types) {
    if (type == name) return true;
  }
  return false;
}

/// The comparison of one pair of libraries.
class Comparison {
 public:
  Comparison(const std::string& first_path, const std::string& first,
             const std::string& second_path, const std::string& second)
      : first_path_(first_path), second_path_(second_path), first_{first}, second_{second} {
    const std::string base = first_path.substr(0, first_path.rfind('.'));
    missing_path_ = base + "_comp_missing.bib";
    equal_path_ = base + "_comp_equal.bib";
  }

  ComparedFiles Run();

 private:
  bool StopsAt();
  bool SameKey(const std::string& no_tag, const std::string& other_tags);
  bool OtherKey();
  void Details();
  bool Missing() const;
  bool Equal() const;
  std::string Names() const { return one_.key + " and " + two_.key; }

  std::string first_path_, second_path_, missing_path_, equal_path_;
  PlainFile first_, second_;
  ComparedFiles out_;
  PlainEntry one_, two_;
  int exact_ = 0, probable_ = 0, missing_ = 0;

  // The group of the first entry: the tags that count, as the log shows them, and in capitals.
  std::vector<std::string> shown_;
  std::vector<std::string> tags_;
};

bool Comparison::Missing() const {
  for (const std::string& tag : tags_) {
    if (!one_.tags.count(tag) || one_.tags.at(tag).empty()) return true;
    if (!two_.tags.count(tag) || two_.tags.at(tag).empty()) return true;
  }
  return false;
}

bool Comparison::Equal() const {
  for (const std::string& tag : tags_) {
    if (one_.tags.at(tag) != two_.tags.at(tag)) return false;
  }
  return true;
}

void Comparison::Details() {
  if (one_.type == "OTHER") return;
  for (const bool is_first : {true, false}) {
    out_.log += is_first ? "     1.:" : "     2.:";
    for (const std::string& name : shown_) {
      const std::string value = (is_first ? one_ : two_).tags[PlainUpper(name)];
      out_.log += " " + name + ": " + value;
    }
    out_.log += "\n";
  }
}

/// Both keys are the same.
bool Comparison::SameKey(const std::string& no_tag, const std::string& other_tags) {
  const bool is_article = no_tag.find("volume") != std::string::npos;
  const std::string shown_type = is_article ? "ARTICLE" : one_.type;
  if (Missing()) {
    out_.log += shown_type + " - One of the two entries (" + Names() + ")\ndoes not have " +
                no_tag + "\n\n";
    Details();
    out_.log += "     For security, the BibTeX entry is stored in " + equal_path_ + ".\n\n";
    ++exact_;
    return true;
  }
  if (Equal()) {
    out_.log += shown_type + " - Exactly the same : " + Names() + "\n";
    ++exact_;
    if (one_.type == "OTHER") return false;
    Details();
    out_.log += "     The BibTeX entry is stored in " + equal_path_ + ".\n\n";
    return true;
  }
  out_.log += one_.type + " - Same item (" + one_.key + ") but not the same " + other_tags + "\n";
  Details();
  out_.log += "     The BibTeX entry is marked as missing.\n";
  return false;
}

/// The keys are different.
bool Comparison::OtherKey() {
  if (one_.type != two_.type || Missing() || !Equal()) return false;
  const bool is_article = tags_.size() == 4;
  out_.log += (is_article ? "ARTICLE" : one_.type) + " - Probably the same : " + Names() + "\n";
  Details();
  out_.log += "     The BibTeX entry is stored in " + equal_path_ + ".\n\n";
  if (one_.type != "ELECTRONIC") ++probable_;
  return one_.type != "OTHER";
}

/// Holds one entry of each library against the other.
bool Comparison::StopsAt() {
  const std::string& type = one_.type;
  std::string no_tag;
  std::string other_tags;
  if (IsOneOf(type, {"BOOK", "INCOLLECTION", "INPROCEEDINGS", "CONFERENCE", "UNPUBLISHED", "INBOOK",
                     "TECHREPORT", "PHDTHESIS", "MASTERTHESIS", "PROCEEDINGSPAPER"})) {
    shown_ = {"Author", "Title"};
    no_tag = "one of the following tags: author or title";
    other_tags = "tags (author and title)";
  } else if (IsOneOf(type,
                     {"ARTICLE", "MEETINGABSTRACT", "EDITORIALMATERIAL", "REVIEW", "LETTER"})) {
    shown_ = {"Volume", "Pages", "Journal", "Year"};
    no_tag = "one of the following tags: volume, pages, journal or year";
    other_tags = "tags (volume, pages, journal and year)";
  } else if (IsOneOf(type, {"BOOKLET", "MANUAL", "STANDARD"})) {
    shown_ = {"Title"};
    no_tag = "the following tag: title";
    other_tags = "tag (title)";
  } else if (type == "ELECTRONIC") {
    shown_ = {"URL"};
    no_tag = "the following tag: url";
    other_tags = "tag (url)";
  } else if (IsOneOf(type, {"PERIODICAL", "PROCEEDINGS"})) {
    shown_ = {"Title", "Year"};
    no_tag = "the following tags: title or year";
    other_tags = "tags (title and year)";
  } else if (type == "PATENT") {
    shown_ = {"Nationality", "Number", "Year"};
    no_tag = "the following tags: nationality, number, year";
    other_tags = "tags (nationality, number and year)";
  } else if (type == "MISC") {
    shown_ = {"Note"};
    no_tag = "the following tag: note";
    other_tags = "tag (note)";
  } else if (type == "OTHER") {
    shown_ = {"Comment"};
    no_tag = "the tag comment";
    other_tags = "tag (comment)";
  } else {
    return false;
  }
  tags_.clear();
  for (const std::string& name : shown_) tags_.push_back(PlainUpper(name));
  return one_.key == two_.key ? SameKey(no_tag, other_tags) : OtherKey();
}

ComparedFiles Comparison::Run() {
  out_.log = std::string(LogFileHeader) + "\n";
  out_.missing = std::string(BibFileHeader) + "\n";
  out_.equal = std::string(BibFileHeader) + "\n";
  SkipToFirstEntry(second_);
  SkipToFirstEntry(first_);
  const std::size_t scan_start = first_.at;
  while (ReadEntry(second_, two_)) {
    bool stopped = false;
    first_.at = scan_start;
    while (!stopped && ReadEntry(first_, one_)) stopped = StopsAt();
    if (stopped) {
      CopyEntry(first_, one_.start, out_.equal);
    } else if (CopyEntry(second_, two_.start, out_.missing)) {
      out_.log += "----    - Missing entry: " + two_.key + "\n\n";
      ++missing_;
    }
  }
  out_.log += "\n\n\n" + std::to_string(missing_) + " BibTeX entries from the BibTeX file\n    '" +
              second_path_ + "'\ndo not appear in the BibTeX file\n    '" + first_path_ +
              "'.\nThey are stored in the new BibTeX file\n    '" + missing_path_ +
              "'.\nFurthemore, " + std::to_string(exact_) + " and " + std::to_string(probable_) +
              " entries of both BibTeX libraries were exactly or probably the same, "
              "respectively. They are all stored in the new BibTeX file\n    '" +
              equal_path_ + "'.";
  return out_;
}

}  // namespace

ComparedFiles PlainCompare(const std::string& first_path, const std::string& first,
                           const std::string& second_path, const std::string& second) {
  return Comparison(first_path, first, second_path, second).Run();
}

}  // namespace tarvel::testing
