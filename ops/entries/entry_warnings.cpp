// SPDX-License-Identifier: MIT
#include "ops/entries/entry_warnings.h"

#include <algorithm>
#include <array>

#include "core/name_matcher.h"
#include "core/text_primitives.h"
#include "ops/prepare/bib_reader.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

/// The tags by which people recognise a work, and then those that are compared otherwise.
constexpr std::array kIdentifyingTags{"title"sv,  "author"sv,  "year"sv,   "doi"sv,
                                      "eprint"sv, "journal"sv, "volume"sv, "pages"sv};
constexpr std::size_t kAlwaysIdentifying = 5;

std::string_view NameOf(Field field) {
  return std::find_if(kCompareTags.begin(), kCompareTags.end(),
                      [field](const FieldTag& tag) { return tag.field == field; })
      ->name;
}

bool IsBooktitle(const Misread& value) {
  return value.tag == "title" && EqualNoCase(value.line, "booktitle");
}

std::string Describe(const Misread& value) {
  std::string text("'");
  text.append(value.tag).append("' is read from ");
  if (value.line.empty()) return text.append("a line of text that mentions it");
  return text.append("the line of ").append(Quoted(value.line));
}

/// Letters in capitals, digits and bytes from 128 on.
std::string Essence(std::string_view value) {
  std::string essence;
  for (const char byte : value) {
    const bool counts = IsLetter(byte) || (byte >= '0' && byte <= '9') || byte < 0;
    if (counts) essence += ToUpper(byte);
  }
  return essence;
}

std::string_view AfterKey(std::string_view entry) {
  return entry.substr(std::min(entry.find(','), entry.size()));
}

using IdentifyingValues = std::array<std::vector<std::string>, kIdentifyingTags.size()>;

/// All that the entry has for the identifying tags, in their order.
IdentifyingValues IdentifyingValuesOf(std::string_view entry) {
  IdentifyingValues values;
  for (const LineTag& tag : TagsOf(AfterKey(entry))) {
    for (std::size_t i = 0; i < kIdentifyingTags.size(); ++i) {
      if (!EqualNoCase(tag.name, kIdentifyingTags[i])) continue;
      if (std::string value = Essence(tag.value); !value.empty()) values[i].push_back(value);
    }
  }
  return values;
}

constexpr std::size_t kNone = std::string_view::npos;

/// The offset of the comma after the key, on what operations read of an entry's first line.
std::size_t CommaAfterKey(std::string_view entry) {
  return LineAt(entry.substr(0, limits::kPairLine - 1), 0).find(',');
}

/// Whether operations take the line for the first of an entry.
bool IsHead(std::string_view line) {
  if (line.find('@') == kNone) return false;
  std::string upper(line);
  return IsKnownEntry(upper);
}

/// The offset of the first line that begins with "@" or that operations take for the first of an
/// entry, starting with the line at `from`; `kNone` if there is none.
std::size_t FindHeadLine(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find('@', from); at != kNone; at = text.find('@', from)) {
    const std::size_t begin = LineBegin(text, 0, at);
    const std::string_view line = LineAt(text, begin);
    if (at == begin || IsHead(line)) return begin;
    from = begin + line.size();
  }
  return kNone;
}

/// Reads the entry at the start of the text as BibTeX does, up to the next line that begins with
/// "@"; false when BibTeX finds none.
bool ReadEntry(std::string_view text, BibStrings& strings, BibItem& item) {
  const std::string_view entry = text.substr(0, text.find("\n@"));
  return BibReader(entry, strings).Next(item);
}

}  // namespace

std::vector<Misread> MisreadValues(const TypeGroup& group, const EntryRecord& entry,
                                   std::string_view library) {
  std::vector<Misread> values;
  for (const Field field : group.compared) {
    if (entry[field].Text().empty() || entry[field].Offset() == 0) continue;
    const std::string_view tag = NameOf(field);
    const std::string_view line = TagNameOf(library.substr(entry[field].Offset()));
    if (!EqualNoCase(line, tag)) values.push_back({tag, line, entry[field].Offset()});
  }
  return values;
}

void ReportMisread(const std::vector<Misread>& values, std::string_view key,
                   FileWarnings& warnings) {
  for (const Misread& value : values) {
    if (IsBooktitle(value) || warnings.ReportNumber(WarningKind::kOtherTag)) continue;
    warnings.Report(WarningKind::kOtherTag, value.offset, key, "the value of " + Describe(value));
  }
}

std::string_view EntryTextAt(std::string_view library, const LibraryRange& lines) {
  const std::string_view text = library.substr(lines.begin);
  const std::string_view read = library.substr(0, lines.end).substr(lines.begin);
  std::size_t end = read.find("\n}");
  if (end == kNone) return read;
  std::ptrdiff_t depth = OpenBraces(text.substr(0, end));
  if (depth <= 1 || text.substr(0, end).find("\n@") < end) return text.substr(0, end);
  // The line is one of a value's: the entry goes on, at most to the next one.
  const std::size_t next = std::min(FindHeadLine(text, end + 1), text.size());
  while (end < next && depth > 1) {
    const std::size_t more = std::min(text.find("\n}", end + 1), next);
    depth += OpenBraces(text.substr(end, more - end));
    end = more;
  }
  return text.substr(0, end);
}

bool AreCopies(std::string_view one, std::string_view two) {
  constexpr std::string_view kEnd = "\n}";
  const std::size_t comma = CommaAfterKey(one);
  const std::size_t other_comma = CommaAfterKey(two);
  const std::size_t end = one.find(kEnd);
  if (comma == kNone || other_comma == kNone || end == kNone) return false;
  return two.substr(other_comma).starts_with(one.substr(comma, end + kEnd.size() - comma));
}

KeptEntryFacts::KeptEntryFacts(std::string_view text) : values_(IdentifyingValuesOf(text)) {
  for (std::vector<std::string>& values : values_) std::sort(values.begin(), values.end());
  FindUnread(text);
}

/// Finds the tags that BibTeX does not read as the entry breaks its grammar or ends before them.
void KeptEntryFacts::FindUnread(std::string_view text) {
  BibStrings strings;
  BibItem read;
  const bool is_seen = ReadEntry(text, strings, read);
  const std::string_view after = is_seen ? text.substr(read.end) : text;
  if (read.fault.empty() && Trim(after, "}, \t\r\n").empty()) return;
  KeysAnyCase names;
  for (const BibTag& tag : read.tags) names.Add(tag.name);
  for (const LineTag& tag : TagsOf(AfterKey(EntryTextAt(text, {0, text.size()})))) {
    if (!is_seen || !names.Has(tag.name)) unread_.Add(tag.name);
  }
  why_ = read.fault.empty() ? "the entry ends before them" : read.fault;
}

std::vector<std::string_view> KeptEntryFacts::DifferingTags(std::string_view dropped,
                                                            bool compared) const {
  const IdentifyingValues values = IdentifyingValuesOf(dropped);
  std::vector<std::string_view> differing;
  for (std::size_t i = 0; i < (compared ? kAlwaysIdentifying : kIdentifyingTags.size()); ++i) {
    const auto is_kept = [&kept = values_[i]](const std::string& value) {
      return std::binary_search(kept.begin(), kept.end(), value);
    };
    const bool all = std::all_of(values[i].begin(), values[i].end(), is_kept);
    if (!all) differing.push_back(kIdentifyingTags[i]);
  }
  return differing;
}

UnreadTags KeptEntryFacts::UnreadOf(std::string_view dropped) const {
  UnreadTags unread;
  if (unread_.IsEmpty()) return unread;
  unread.why = why_;
  BibStrings strings;
  BibItem read;
  if (!ReadEntry(dropped, strings, read)) return unread;
  for (const BibTag& tag : read.tags) {
    if (unread_.Has(tag.name)) unread.tags.emplace_back(tag.name);
  }
  return unread;
}

void ReportSwallowed(std::string_view library, const LibraryRange& lines, std::string_view key,
                     std::size_t& reported, FileWarnings& warnings) {
  const std::size_t from = std::max(lines.begin, reported > 0 ? reported - 1 : 0);
  reported = std::max(reported, lines.end);
  library = library.substr(0, lines.end);
  std::string_view line = LineAt(library, from);
  // Where the lines before are reported already, what is open there is not known: something is.
  std::ptrdiff_t depth = from == lines.begin ? OpenBraces(line) : 1;
  bool in_text = false;
  for (std::size_t at = from + line.size() + 1; at < lines.end; at += line.size() + 1) {
    line = LineAt(library, at);
    const bool is_text = depth <= 0 && !IsFileHeader(Trim(line, "}) \t\r\n"));
    const std::ptrdiff_t open = OpenBraces(line);
    if (IsHead(line)) {
      depth = open;
      in_text = false;
      warnings.Report(WarningKind::kEntryDropped, at, CopyUntilChar(line, '{', ','),
                      "the entry was taken for a part of " + Quoted(key) +
                          ", which does not end before it, and is not in the new library");
      continue;
    }
    if (is_text && !in_text) {
      warnings.Report(WarningKind::kTextNotCopied, at, {},
                      "text after a dropped entry was not copied: " + Quoted(Trim(line, kBlanks)));
    }
    depth = std::max<std::ptrdiff_t>(depth, 0) + open;
    in_text = is_text;
  }
}

std::optional<std::string_view> ParentOf(std::string_view entry) {
  // Few entries have the tag, so most need not be taken apart.
  static constexpr std::array kParentTag{"crossref"sv};
  static const NameMatcher names_parent(kParentTag);
  if (!names_parent.Any(entry)) return std::nullopt;
  for (const LineTag& tag : TagsOf(AfterKey(entry))) {
    if (EqualNoCase(tag.name, kParentTag[0])) return Trim(tag.value, "{}\" \t\r\n");
  }
  return std::nullopt;
}

void ReportMissingParent(std::string_view entry, std::size_t offset, std::string_view parent,
                         FileWarnings& warnings) {
  warnings.Report(
      WarningKind::kMissingParent, offset, CopyUntilChar(LineAt(entry, 0), '{', ','),
      "the 'crossref' of the entry names " + Quoted(parent) + ", which is not in the new library");
}

void ReportCutEntry(std::string_view library, const CopiedEntry& copied, FileWarnings& warnings) {
  // Before its last line only the entry's own brace is open.
  const std::string_view copy = copied.text.substr(0, copied.text.rfind("\n}") + 1);
  if (OpenBraces(copy) <= 1) return;
  std::string tags;
  std::string_view rest = library.substr(copied.end);
  rest = rest.substr(0, FindHeadLine(rest, 0));
  for (const LineTag& tag : TagsOf(EntryTextAt(rest, {0, rest.size()}))) {
    tags.append(tags.empty() ? ": " : ", ").append(Quoted(tag.name));
  }
  warnings.Report(
      WarningKind::kCutEntry, copied.end - 1, CopyUntilChar(copy, '{', ','),
      "the entry was copied only up to a '}' that begins a line inside a value; the rest is not "
      "in the new library" +
          tags);
}

void ReportVerdict(const EqualEntries& entries, const std::vector<Misread>& misread,
                   const std::vector<std::string_view>& differing, FileWarnings& warnings) {
  if (misread.empty() && differing.empty()) return;
  const std::string what =
      "the entry " + std::string(entries.verdict) + " " + Quoted(entries.other);
  if (!misread.empty()) {
    std::string values;
    for (const Misread& value : misread) {
      values.append(values.empty() ? "" : ", ").append(Describe(value));
    }
    warnings.Report(WarningKind::kWeakVerdict, entries.offset, entries.key,
                    what + ", but " + values);
  }
  if (differing.empty()) return;
  std::string tags;
  for (const std::string_view tag : differing) {
    tags.append(tags.empty() ? "'" : ", '").append(tag).append("'");
  }
  warnings.Report(WarningKind::kDroppedDiffers, entries.offset, entries.key,
                  what + ", but they differ in " + tags + "; check whether it is another work");
}

void ReportUnread(const EqualEntries& entries, const UnreadTags& unread, FileWarnings& warnings) {
  if (unread.tags.empty()) return;
  std::string tags;
  for (const std::string& tag : unread.tags) {
    tags.append(tags.empty() ? "" : ", ").append(Quoted(tag));
  }
  warnings.Report(WarningKind::kDroppedDiffers, entries.offset, entries.key,
                  "the entry " + std::string(entries.verdict) + " " + Quoted(entries.other) +
                      ", of which BibTeX reads no " + tags + ": " + unread.why);
}

}  // namespace tarvel
