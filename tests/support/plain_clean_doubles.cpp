// SPDX-License-Identifier: MIT
#include "tests/support/plain_clean_doubles.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <map>

#include "app/texts.h"
#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

/// A stream of stdio over a string: one position for reading and writing, and the end-of-file
/// indicator.
struct File {
  std::string bytes;
  std::size_t position = 0;
  bool at_end = false;

  bool Gets(std::string& line, std::size_t limit) {
    const std::string got = bytes.substr(position, limit - 1);
    const std::size_t newline = got.find('\n');
    if (newline == std::string::npos && got.size() < limit - 1) at_end = true;
    if (got.empty()) return false;
    line = got.substr(0, newline == std::string::npos ? newline : newline + 1);
    position += line.size();
    return true;
  }
  void Seek(std::size_t to) {
    position = to;
    at_end = false;
  }
  void Put(const std::string& text) {
    for (const char byte : text) {
      if (position == bytes.size()) bytes += byte;
      bytes[position++] = byte;
    }
  }
};

std::size_t PastBlanks(const std::string& line, std::size_t at) {
  while (at < line.size()) {
    const int code = static_cast<unsigned char>(line[at]);
    if (code == 0 || (code > 32 && code < 128)) break;
    ++at;
  }
  return at;
}

/// Reads the next line in the place of the rest of `line`, and again while it is blank.
bool NextInPlace(std::string& line, File& file, std::size_t& at, std::size_t limit) {
  const std::size_t place = at;
  while (true) {
    std::string next;
    if (!file.Gets(next, limit)) return false;
    line = line.substr(0, place) + next;
    at = PastBlanks(line, place);
    if (at < line.size()) return true;
    limit = 1000;
  }
}

void ReadValue(std::string line, File& file, std::string& value) {
  value.clear();
  std::size_t at = line.find('{');
  if (at == std::string::npos) return;
  ++at;
  if (at == line.size() && !NextInPlace(line, file, at, 1000)) return;
  int depth = 1;
  while (at < line.size()) {
    const char byte = line[at];
    if (byte == '\n') {
      if (!NextInPlace(line, file, at, 25000)) return;
      value += ' ';
      continue;
    }
    if (byte == '}' && depth == 1) return;
    if (byte == '{') ++depth;
    if (byte == '}') --depth;
    value += byte;
    ++at;
  }
}

const char* const kTags[] = {"journal", "year", "pages", "volume", "author",
                             "title",   "url",  "note",  "number", "nationality"};

struct Entry {
  std::string key;
  std::string type;
  std::map<std::string, std::string> tags;
};

bool StartsEntry(std::string& line) {
  const bool known = PlainIsKnownEntry(line);
  return known || line.find("@comment{jabref") != std::string::npos;
}

void TakeHead(const std::string& line, Entry& entry) {
  entry.key = PlainCopyUntilChar(line, '{', ',');
  entry.type = PlainCopyUntilChar(line, '@', '{');
  entry.tags.clear();
}

/// Handles a line inside an entry; false when it ends the entry.
bool TakeLine(const std::string& line, File& file, Entry& entry) {
  for (const std::string tag : kTags) {
    if (!PlainContainsNoCase(line, tag)) continue;
    std::string& value = entry.tags[tag];
    ReadValue(line, file, value);
    if (tag == "pages") value = value.substr(0, value.find('-'));
    return true;
  }
  return line[0] != '}';
}

struct Group {
  std::string types;  // each between blanks
  std::vector<std::string> compared;
  std::string detail;  // "$" and the tag's name stand for its value
  int probable;        // 1: key A stays, key B out; 2: key B stays, key A out; 3: one entry stays
};

const std::vector<Group> kGroups = {
    {" BOOK INCOLLECTION INPROCEEDINGS CONFERENCE UNPUBLISHED INBOOK TECHREPORT PHDTHESIS "
     "MASTERTHESIS ",
     {"author", "title", "year"},
     "Author: $author Title: $title Year: $year\n",
     1},
    {" ARTICLE ",
     {"journal", "volume", "year", "pages"},
     "Journal: $journal Volume: $volume Year: $year Pages: $pages\n",
     2},
    {" BOOKLET MANUAL STANDARD ", {"title"}, "Title: $title \n", 1},
    {" ELECTRONIC ", {"url"}, "URL: $url \n", 3},
    {" MISC ", {"note"}, "Note: $note \n", 3},
    {" PERIODICAL PROCEEDINGS ", {"title", "year"}, "Title: $title Year: $year\n", 3},
    {" PATENT ",
     {"nationality", "number", "year"},
     "Nationality: $nationality Number: $number Year: $year\n",
     3},
};

const Group* GroupOf(const std::string& type) {
  if (type.empty() || type.find(' ') != std::string::npos) return nullptr;
  for (const Group& group : kGroups) {
    if (group.types.find(" " + type + " ") != std::string::npos) return &group;
  }
  return nullptr;
}

std::string Detail(const Group& group, Entry& entry, const char* number) {
  std::string text = number;
  for (std::size_t at = 0; at < group.detail.size(); ++at) {
    if (group.detail[at] != '$') {
      text += group.detail[at];
      continue;
    }
    std::string name;
    while (group.detail[at + 1] >= 'a' && group.detail[at + 1] <= 'z') name += group.detail[++at];
    text += entry.tags[name];
  }
  return text;
}

class Run {
 public:
  Run(std::string_view input, std::string input_path, std::string library_path)
      : input_path_(std::move(input_path)), library_path_(std::move(library_path)) {
    input_.bytes = input;
  }

  DoublesOutcome All() {
    out_.log = std::string(LogFileHeader) + "\n";
    library_.Put(std::string(BibFileHeader) + "\n");
    out_.result = Walk() ? 1 : 0;
    out_.library = library_.bytes;
    return out_;
  }

 private:
  struct Extent {
    std::size_t begin;
    std::size_t end;
    std::string key;
    std::size_t line;  // of the head, in the input
  };

  bool Walk() {
    std::string line;
    for (std::size_t start = 0; input_.Gets(line, 5000); start = input_.position) {
      if (!StartsEntry(line)) continue;
      Entry a;
      TakeHead(line, a);
      while (true) {
        if (input_.at_end) break;
        if (!input_.Gets(line, 5000)) return false;
        if (!TakeLine(line, input_, a)) break;
      }
      if (!IsDropped(a)) WriteEntry(a, start);
    }
    out_.log += "\n\n\n" + std::to_string(not_written_) + " BibTeX entries from the BibTeX file\n" +
                "    '" + input_path_ + "'\nwere not written into the new BibTeX file\n    '" +
                library_path_ + "'.";
    return true;
  }

  /// Scans the new library; leaves it where the scan stopped.
  bool IsDropped(Entry& a) {
    library_.Seek(0);
    std::string line;
    while (library_.Gets(line, 5000)) {
      if (!StartsEntry(line)) continue;
      Entry b;
      TakeHead(line, b);
      bool ended = false;
      while (!ended && library_.Gets(line, 5000)) ended = !TakeLine(line, library_, b);
      if (!ended) return false;
      const int verdict = Judge(a, b);
      if (verdict == kDrop) ++not_written_;
      if (verdict == kRename) rename_ = true;
      if (verdict != kNext) return verdict == kDrop;
    }
    return false;
  }

  enum { kNext, kDrop, kRename };

  int Judge(Entry& a, Entry& b) {
    if (a.key.empty() && b.key.empty()) out_.log += "There are empty bibitems!\n";
    const bool same_key = !a.key.empty() && a.key == b.key;
    if (!same_key && a.type != b.type) return kNext;
    if (same_key && a.type == "OTHER") {
      out_.log += "............. The item (@OTHER) names are equal (" + a.key + " and " + b.key +
                  "), but not the content.\n";
    }
    const Group* group = GroupOf(a.type);
    if (!group) return kNext;
    bool equal = true;
    for (const std::string& tag : group->compared) {
      if (a.tags[tag].empty() || b.tags[tag].empty()) return kNext;
      equal = equal && a.tags[tag] == b.tags[tag];
    }
    const std::string details = Detail(*group, a, "     1.: ") + Detail(*group, b, "     2.: ");
    if (same_key && equal) {
      out_.log += "Exactly the same : " + a.key + " and " + b.key + "\n" + details +
                  "     One BibTeX entry stays\n\n";
      return kDrop;
    }
    if (same_key) {
      out_.log += "Two identical bibitems (" + a.key + " and " + b.key +
                  ") were found with different content:\n" + details;
      return kRename;
    }
    if (!equal) return kNext;
    if (group->probable == 3) {
      out_.log += "Probably the same : " + a.key + " and " + b.key + "\n" + details +
                  "     One BibTeX entry stays\n\n";
      return kDrop;
    }
    const Entry& stays = group->probable == 1 ? a : b;
    const Entry& leaves = group->probable == 1 ? b : a;
    out_.log += "Probably the same: " + a.key + " " + b.key + "\n" + details + "     Bibitem " +
                stays.key + " stays, item " + leaves.key + " out\n\n";
    return kDrop;
  }

  void WriteEntry(const Entry& a, std::size_t start) {
    const std::size_t from = library_.position;
    std::size_t until = from;
    std::string key;  // as it stands in the new library
    std::string line;
    const std::size_t number = LineAt(start);
    input_.Seek(start);
    while (input_.Gets(line, 5000)) {
      const bool starts = StartsEntry(line);
      if (starts && rename_) {
        const std::string name = a.key + "_" + static_cast<char>(letter_);
        out_.log += "     New name for bibitem No.1: from " + a.key + " to " + name + "\n\n";
        PlainReplaceBetween(line, name, '{', ',');
        ++letter_;
        ++not_written_;
        rename_ = false;
      }
      if (library_.position == from) key = PlainCopyUntilChar(line.substr(0, 4999), '{', ',');
      library_.Put(line);
      until = library_.position;
      if (line[0] != '}') continue;
      library_.Put("\n");
      break;
    }
    TellLost(from, library_.position, key);
    kept_.push_back({from, until, key, number});
  }

  std::size_t LineAt(std::size_t offset) const {
    const auto begin = input_.bytes.begin();
    return 1 + static_cast<std::size_t>(
                   std::count(begin, begin + static_cast<std::ptrdiff_t>(offset), '\n'));
  }

  /// Reports every entry kept so far of which a byte was written over, in file order.
  void TellLost(std::size_t from, std::size_t until, const std::string& key) {
    std::map<std::size_t, Extent> lost;
    std::vector<Extent> left;
    for (const Extent& extent : kept_) {
      if (extent.begin < until && from < extent.end) {
        lost[extent.begin] = extent;
      } else {
        left.push_back(extent);
      }
    }
    for (const auto& [begin, entry] : lost) {
      const std::string place = entry.key.empty() ? " of line " + std::to_string(entry.line) : "";
      out_.warnings.push_back("the new entry '" + key + "' was written over the kept entry '" +
                              entry.key + "'" + place);
    }
    kept_ = left;
  }

  File input_;
  File library_;
  std::string input_path_;
  std::string library_path_;
  bool rename_ = false;
  int letter_ = 97;
  int not_written_ = 0;
  std::vector<Extent> kept_;
  DoublesOutcome out_;
};

}  // namespace

DoublesOutcome PlainCleanDoubles(std::string_view input, const std::string& input_path,
                                 const std::string& library_path) {
  return Run(input, input_path, library_path).All();
}

}  // namespace tarvel::testing
