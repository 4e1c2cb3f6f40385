// SPDX-License-Identifier: MIT
#include "tests/support/prepared_judge.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <vector>

#include "app/texts.h"
#include "core/line_stream.h"
#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "tests/support/plain_bib_reader.h"

namespace tarvel::testing {

namespace {

using Values = std::map<std::string, std::string>;

/// What is reported of an entry, by its key.
using Reported = std::map<std::string, std::set<WarningKind>>;

std::string Replace(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at)) {
    text.replace(at, what.size(), by);
    at += by.size();
  }
  return text;
}

std::string WithoutBraces(std::string_view text) {
  std::string bare;
  for (const char byte : text) {
    if (std::string_view(" \t\r\n{}").find(byte) == std::string_view::npos) bare += byte;
  }
  return bare;
}

/// A text without what guards add and without braces and white space: the same for a value and for
/// what is written of it.
std::string Bare(std::string_view text) {
  const std::string bare = WithoutBraces(text);
  return Replace(Replace(bare, "\\relax", ""), "\\/", "");
}

/// New names of tags, by old ones.
const std::map<std::string, std::vector<std::string>>& Renamed() {
  static const std::map<std::string, std::vector<std::string>> renamed{
      {"authors", {"author"}},
      {"editors", {"editor"}},
      {"notes", {"note"}},
      {"comments", {"comment"}},
      {"subtitle", {"title"}},
      {"booksubtitle", {"booktitle"}},
      {"journaltitle", {"journal"}},
      {"shortjournal", {"journal"}},
      {"journalsubtitle", {"journal"}},
      {"eventtitle", {"booktitle"}},
      {"date", {"year", "month"}},
      {"location", {"address"}},
      {"institution", {"school"}},
      {"annote", {"annotation"}},
      {"urldate", {"lastchecked"}},
      {"eprinttype", {"archiveprefix"}}};
  return renamed;
}

/// An entry with what it has from its parents.
PlainBibEntry WithParents(const PlainBibLibrary& library, PlainBibEntry entry) {
  std::string key = entry.Value("crossref");
  const auto lower = [](std::string text) {
    StringToUpper(text);
    return text;
  };
  for (int parents = 0; !key.empty() && parents < 32; ++parents) {
    const auto parent =
        std::find_if(library.entries.begin(), library.entries.end(),
                     [&](const PlainBibEntry& other) { return lower(other.key) == lower(key); });
    if (parent == library.entries.end()) break;
    const PlainBibEntry own = *parent;
    for (const auto& [name, value] : own.tags) {
      if (!value.empty() && !entry.Holds(name)) entry.tags.emplace_back(name, value);
    }
    // The title of a book is that of the book in its parts.
    if (own.Holds("title")) entry.tags.emplace_back("booktitle", own.Value("title"));
    key = own.Value("crossref");
  }
  return entry;
}

class Judge {
 public:
  Judge(const PlainBibLibrary& before, const PlainBibLibrary& after, const Prepared& prepared)
      : before_(before), after_(after), bare_log_(Bare(prepared.log)) {}

  std::string Run() {
    if (!after_.is_whole) return "the new library is not whole";
    if (!after_.outside.empty()) return "between the new entries stands " + after_.outside;
    std::vector<PlainBibEntry> entries = before_.entries;
    if (!before_.is_whole && !entries.empty()) entries.pop_back();
    // Those that no operation sees come first.
    for (const bool is_seen : {false, true}) {
      const std::string broken =
          CompareEntries(Those(entries, is_seen), Those(after_.entries, is_seen));
      if (!broken.empty()) return broken;
    }
    for (const std::string& text : before_.strings) {
      if (!IsLogged(text)) return "a string is lost: " + text;
    }
    for (const std::string& text : before_.preambles) {
      const bool stands = std::find(after_.preambles.begin(), after_.preambles.end(), text) !=
                          after_.preambles.end();
      if (!stands && !IsLogged(text)) return "a preamble is lost: " + text;
    }
    return {};
  }

 private:
  static std::vector<PlainBibEntry> Those(const std::vector<PlainBibEntry>& entries, bool is_seen) {
    std::vector<PlainBibEntry> those;
    for (const PlainBibEntry& entry : entries) {
      const bool has_at = entry.key.find('@') != std::string::npos;
      const bool has_brace = entry.key.find('}') != std::string::npos;
      if (has_at != is_seen && !has_brace) those.push_back(entry);
    }
    return those;
  }
  std::string CompareEntries(const std::vector<PlainBibEntry>& old,
                             const std::vector<PlainBibEntry>& written) const {
    if (written.size() < old.size()) return "an entry is missing";
    for (std::size_t i = 0; i < old.size(); ++i) {
      const std::string broken = CompareEntry(old[i], written[i]);
      if (!broken.empty()) return "entry '" + old[i].key + "': " + broken;
    }
    return {};
  }
  bool IsLogged(const std::string& text) const {
    return bare_log_.find(Bare(text)) != std::string::npos;
  }

  std::string CompareEntry(const PlainBibEntry& old, const PlainBibEntry& written) const {
    if (old.key != written.key) return "is written as '" + written.key + "'";
    std::set<std::string> names;
    for (const auto& [name, value] : old.tags) {
      if (!names.insert(name).second) {
        if (!IsLogged(value)) return "a further '" + name + "' is lost";
      } else if (const std::string broken = CompareTag(name, value, written); !broken.empty()) {
        return "'" + name + "' " + broken;
      }
    }
    if (!before_.is_whole && old.Holds("crossref")) return {};  // its parent may come later
    return FindAdded(WithParents(before_, old), written);
  }

  std::string CompareTag(const std::string& name, const std::string& value,
                         const PlainBibEntry& written) const {
    const std::string bare = Bare(value);
    if (written.Holds(name)) {
      const std::string now = Bare(written.Value(name));
      const bool may_grow = name == "title" || name == "booktitle" || name == "journal";
      const bool is_same = now == bare || (may_grow && now.starts_with(bare));
      if (is_same || (now.empty() && IsLogged(value))) return {};
      return "has another value: " + written.Value(name);
    }
    if (const auto renamed = Renamed().find(name); renamed != Renamed().end()) {
      for (const std::string& other : renamed->second) {
        if (Bare(written.Value(other)).ends_with(bare)) return {};
      }
    }
    return IsLogged(value) ? "" : "is lost";
  }

  /// A tag that stands neither in the old entry nor in one of its parents, and has a value.
  static std::string FindAdded(const PlainBibEntry& old, const PlainBibEntry& written) {
    std::set<std::string> names;
    for (const auto& [name, value] : old.tags) {
      names.insert(name);
      if (const auto renamed = Renamed().find(name); renamed != Renamed().end()) {
        names.insert(renamed->second.begin(), renamed->second.end());
      }
    }
    for (const auto& [name, value] : written.tags) {
      if (!value.empty() && !names.contains(name)) return "'" + name + "' was added";
    }
    return {};
  }

  const PlainBibLibrary& before_;
  const PlainBibLibrary& after_;
  std::string bare_log_;
};

constexpr std::size_t kLongKey = 900;

constexpr std::array kCompared{"journal", "year", "pages",  "volume",      "author", "title",
                               "note",    "url",  "number", "nationality", "comment"};

/// What Extract and Text look for, by type.
const std::map<std::string, std::vector<std::string>>& Printed() {
  static const std::map<std::string, std::vector<std::string>> printed{
      {"ARTICLE", {"author", "journal", "year", "volume", "title", "pages"}},
      {"BOOK", {"author", "publisher", "year", "address", "title"}},
      {"INCOLLECTION",
       {"author", "publisher", "year", "address", "title", "booktitle", "editor", "pages"}},
      {"INPROCEEDINGS", {"author", "title", "booktitle", "year", "editor", "address", "pages"}},
      {"PHDTHESIS", {"author", "year", "school", "title"}},
      {"MASTERTHESIS", {"author", "year", "school", "title"}}};
  return printed;
}

/// Whether Compare or Clean doubles compare this tag of entries of this type.
bool IsCompared(const std::string& type, std::string_view name) {
  static const std::map<std::string, std::set<std::string_view>> compared{
      {"article", {"volume", "pages", "journal", "year"}},
      {"meetingabstract", {"volume", "pages", "journal", "year"}},
      {"editorialmaterial", {"volume", "pages", "journal", "year"}},
      {"review", {"volume", "pages", "journal", "year"}},
      {"letter", {"volume", "pages", "journal", "year"}},
      {"booklet", {"title"}},
      {"manual", {"title"}},
      {"standard", {"title"}},
      {"electronic", {"url"}},
      {"periodical", {"title", "year"}},
      {"proceedings", {"title", "year"}},
      {"patent", {"nationality", "number", "year"}},
      {"misc", {"note"}},
      {"other", {"comment"}}};
  const auto found = compared.find(type);
  if (found != compared.end()) return found->second.contains(name);
  return name == "author" || name == "title" || name == "year";
}

/// Reads the entries as Compare does: of each line the first name counts.
std::vector<std::pair<std::string, Values>> ReadAsCompare(std::string_view library) {
  LineStream lines(library);
  std::vector<std::pair<std::string, Values>> entries;
  for (Line line; ReadLine(lines, limits::kPairLine, line);) {
    if (!IsKnownEntry(line)) continue;
    Values values;
    const std::string key(CopyUntilChar(line.Text(), '{', ','));
    while (ReadLine(lines, limits::kPairLine, line)) {
      const auto name = std::find_if(kCompared.begin(), kCompared.end(), [&](const char* tag) {
        return ContainsNoCase(line.Text(), tag);
      });
      if (name != kCompared.end()) ReadFieldValue(line, lines, values[*name]);
      if (name == kCompared.end() && line.Text().starts_with('}')) break;
    }
    entries.emplace_back(key, values);
  }
  return entries;
}

/// Reads the entries as Extract and Text do: all names of a line count, and a head ends an entry.
std::vector<std::pair<std::string, Values>> ReadAsText(std::string_view library) {
  LineStream lines(library);
  std::vector<std::pair<std::string, Values>> entries;
  Line line;
  for (bool more = ReadLine(lines, limits::kShortLine, line); more;) {
    if (!IsKnownEntry(line)) {
      more = ReadLine(lines, limits::kShortLine, line);
      continue;
    }
    const std::string type(CopyUntilChar(line.Text(), '@', '{'));
    entries.emplace_back(CopyUntilChar(line.Text(), '{', ','), Values());
    const auto tags = Printed().find(type);
    while ((more = ReadLine(lines, limits::kShortLine, line)) && !IsKnownEntry(line)) {
      if (tags == Printed().end()) continue;
      for (const std::string& tag : tags->second) {
        const bool passes =
            tag == "title" && type.starts_with("IN") && ContainsNoCase(line.Text(), "booktitle");
        if (passes || !ContainsNoCase(line.Text(), tag)) continue;
        ReadFieldValue(line, lines, entries.back().second[tag]);
      }
    }
  }
  return entries;
}

bool HoldsTwice(const PlainBibEntry& entry, const std::string& name) {
  return std::count_if(entry.tags.begin(), entry.tags.end(),
                       [&](const auto& tag) { return tag.first == name; }) > 1;
}

/// Whether the values that an operation read are those of the tags; white space and braces aside
/// where the library is as its author wrote it.
std::string CompareRead(const PlainBibLibrary& library,
                        const std::vector<std::pair<std::string, Values>>& read,
                        const Reported& reported, const std::string& reader, bool is_raw = false) {
  // Of a long key each piece of its line may look like the first line of an entry.
  const bool tears_key =
      std::any_of(library.entries.begin(), library.entries.end(), [](const PlainBibEntry& entry) {
        return entry.key.size() > kLongKey && entry.key.find('@') != std::string::npos;
      });
  if (tears_key) return {};
  std::size_t next = 0;
  for (const PlainBibEntry& entry : library.entries) {
    const auto warned = reported.find(entry.key);
    const auto is_told = [&](WarningKind kind) {
      return warned != reported.end() && warned->second.contains(kind);
    };
    // Such are seen or not, whole or in part: that is reported.
    const auto is_odd = [](const std::string& key) {
      return key.find('@') != std::string::npos || key.size() > kLongKey;
    };
    if (is_odd(entry.key)) continue;
    while (next < read.size() && is_odd(read[next].first)) ++next;
    if (next == read.size()) return reader + " does not see the entry '" + entry.key + "'";
    const auto& [key, values] = read[next++];
    if (key != entry.key) return reader + " sees '" + key + "' in the place of '" + entry.key + "'";
    if (is_told(WarningKind::kMisreadTag)) continue;
    for (const auto& [name, value] : values) {
      if (reader == "Compare" && !IsCompared(entry.type, name)) continue;
      // A verdict that rests on the wrong title is warned of where it is given.
      if (is_raw && name == "title" && entry.Holds("booktitle")) continue;
      if (is_raw && HoldsTwice(entry, name)) continue;  // BibTeX takes the first, and warns
      std::string wanted = entry.Value(name);
      if (name == "title" && !entry.Holds(name)) wanted = entry.Value("booktitle");
      // Where a brace too many ends the entry for BibTeX, operations may read on.
      if (is_raw && (wanted.empty() || Bare(value) == Bare(wanted))) continue;
      if (value == wanted) continue;
      return reader + " reads '" + value + "' as the " + name + " of '" + key + "'";
    }
  }
  return {};
}

std::string FindLongLine(std::string_view library, const Reported& reported) {
  if (!reported.empty()) return {};
  std::size_t from = 0;
  for (std::size_t end = library.find('\n'); end != std::string_view::npos;
       from = end + 1, end = library.find('\n', from)) {
    const std::string_view line = library.substr(from, end - from);
    const bool is_exempt =
        line.find("url = {") == 2 || line.find("doi = {") == 2 || line.find("file = {") == 2;
    if (line.size() + 1 >= limits::kShortLine && !is_exempt) {
      return "a long line: " + std::string(line.substr(0, 80));
    }
  }
  return {};
}

/// Empty when the texts are the same.
std::string FindChange(const std::string& first, const std::string& second) {
  if (first == second) return {};
  const auto [one, other] = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
  constexpr std::ptrdiff_t kAround = 80;
  const auto near = [](const std::string& text, std::string::const_iterator offset) {
    const auto from = std::max<std::ptrdiff_t>(offset - text.begin() - kAround, 0);
    return text.substr(static_cast<std::size_t>(from), 2 * kAround);
  };
  return "preparing twice changes '" + near(first, one) + "' to '" + near(second, other) + "'";
}

constexpr bool IsWordByte(char byte) {
  return static_cast<signed char>(byte) < 0 || (byte >= '0' && byte <= '9') ||
         (ToUpper(byte) >= 'A' && ToUpper(byte) <= 'Z');
}

std::set<std::string> WordsOf(const std::string& text) {
  std::set<std::string> words;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t from = at;
    while (at < text.size() && IsWordByte(text[at])) ++at;
    if (at > from) words.insert(text.substr(from, at - from));
    if (at == from) ++at;
  }
  return words;
}

constexpr std::string_view kMark = "\xef\xbb\xbf";

std::string Upper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), ToUpper);
  return upper;
}

/// A word of the library that stands neither in the new one nor in the log, whatever can be read of
/// the library; letter case aside, as types become capitals and names small letters.
std::string FindLostWord(std::string_view library, const Prepared& prepared) {
  const std::string found = Upper(WithoutBraces(prepared.library)) + "\n" +
                            Upper(WithoutBraces(prepared.log)) + "\n" +
                            Upper(WithoutBraces(BibFileHeader));
  const std::set<std::string> there = WordsOf(found);
  // Byte order marks are no text; where files were put together they stand in the middle, too.
  for (const std::string& word : WordsOf(Upper(Replace(std::string(library), kMark, " ")))) {
    if (there.contains(word) || found.find(word) != std::string::npos) continue;
    return "the word '" + word + "' is lost";
  }
  return {};
}

}  // namespace

std::string JudgePrepared(std::string_view library, const PrepareOptions& options) {
  Reported reported;
  const Prepared prepared = PrepareLibrary(library, options, [&](const PrepareWarning& warning) {
    // What is left out by design excuses nothing of the rest.
    using enum WarningKind;
    if (warning.kind == kLeftOut || warning.kind == kTextNotCopied) return;
    reported[std::string(warning.key)].insert(warning.kind);
  });
  const PlainBibLibrary before = ReadPlainBib(library);
  const PlainBibLibrary after = ReadPlainBib(prepared.library);
  if (before.is_whole && prepared.unread != 0) {
    const bool braces = std::any_of(
        before.entries.begin(), before.entries.end(),
        [](const PlainBibEntry& entry) { return entry.key.find('}') != std::string::npos; });
    if (!braces) return "something is reported to be unread";
  }
  std::string broken = Judge(before, after, prepared).Run();
  if (broken.empty())
    broken = CompareRead(after, ReadAsCompare(prepared.library), reported, "Compare");
  if (broken.empty()) broken = CompareRead(after, ReadAsText(prepared.library), reported, "Text");
  if (broken.empty()) broken = FindLongLine(prepared.library, reported);
  if (broken.empty()) broken = FindLostWord(library, prepared);
  if (!broken.empty()) return broken;
  const Prepared again = PrepareLibrary(prepared.library, options, [](const PrepareWarning&) {});
  return FindChange(prepared.library, again.library);
}

std::string JudgeReading(std::string_view bytes) {
  const PlainBibLibrary library = ReadPlainBib(bytes);
  if (!library.is_whole) return {};
  std::string broken = CompareRead(library, ReadAsCompare(bytes), {}, "Compare", true);
  if (broken.empty()) broken = CompareRead(library, ReadAsText(bytes), {}, "Text", true);
  return broken;
}

}  // namespace tarvel::testing
