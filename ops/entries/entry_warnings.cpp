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

/// All that the entry has for the identifying tags, in their order.
std::array<std::vector<std::string>, kIdentifyingTags.size()> IdentifyingValues(
    std::string_view entry) {
  std::array<std::vector<std::string>, kIdentifyingTags.size()> values;
  for (const LineTag& tag : TagsOf(AfterKey(entry))) {
    for (std::size_t i = 0; i < kIdentifyingTags.size(); ++i) {
      if (!EqualNoCase(tag.name, kIdentifyingTags[i])) continue;
      if (std::string value = Essence(tag.value); !value.empty()) values[i].push_back(value);
    }
  }
  return values;
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
    if (IsBooktitle(value)) continue;
    warnings.Report(WarningKind::kOtherTag, value.offset, key, "the value of " + Describe(value));
  }
}

std::string_view EntryTextAt(std::string_view library, std::size_t start) {
  const std::string_view text = library.substr(start);
  std::size_t end = std::min(text.find("\n}"), text.size());
  std::ptrdiff_t depth = OpenBraces(text.substr(0, end));
  if (depth <= 1) return text.substr(0, end);
  // The line is one of a value's: the entry goes on, at most to the next one.
  const std::size_t next = std::min(text.find("\n@"), text.size());
  while (end < next && depth > 1) {
    const std::size_t more = std::min(text.find("\n}", end + 1), next);
    depth += OpenBraces(text.substr(end, more - end));
    end = more;
  }
  return text.substr(0, end);
}

bool AreCopies(std::string_view one, std::string_view two) {
  constexpr std::string_view kEnd = "\n}";
  const std::size_t end = one.find(kEnd);
  if (end == std::string_view::npos) return false;
  return AfterKey(two).starts_with(AfterKey(one.substr(0, end + kEnd.size())));
}

std::vector<std::string_view> DifferingTags(std::string_view one, std::string_view two,
                                            bool compared) {
  const auto first = IdentifyingValues(one);
  const auto second = IdentifyingValues(two);
  std::vector<std::string_view> differing;
  for (std::size_t i = 0; i < (compared ? kAlwaysIdentifying : kIdentifyingTags.size()); ++i) {
    const auto is_kept = [&](const std::string& value) {
      return std::find(second[i].begin(), second[i].end(), value) != second[i].end();
    };
    const bool all = std::all_of(first[i].begin(), first[i].end(), is_kept);
    if (!all) differing.push_back(kIdentifyingTags[i]);
  }
  return differing;
}

UnreadTags UnreadOf(std::string_view kept, std::string_view dropped) {
  const bool have_commas = LineAt(kept, 0).find(',') != std::string_view::npos &&
                           LineAt(dropped, 0).find(',') != std::string_view::npos;
  if (have_commas && AreCopies(dropped, kept)) return {};
  BibStrings strings;
  BibItem read_kept;
  const bool is_seen = ReadEntry(kept, strings, read_kept);
  const std::string_view after = is_seen ? kept.substr(read_kept.end) : kept;
  if (read_kept.fault.empty() && Trim(after, "}, \t\r\n").empty()) return {};
  const auto is_read = [&](std::string_view name) {
    return std::any_of(read_kept.tags.begin(), read_kept.tags.end(),
                       [name](const BibTag& tag) { return EqualNoCase(tag.name, name); });
  };
  UnreadTags unread;
  std::vector<std::string_view> names;  // of tags that stand in the kept entry and are not read
  for (const LineTag& tag : TagsOf(AfterKey(EntryTextAt(kept, 0)))) {
    if (!is_seen || !is_read(tag.name)) names.push_back(tag.name);
  }
  if (names.empty()) return unread;
  unread.why = read_kept.fault.empty() ? "the entry ends before them" : read_kept.fault;
  BibItem read_dropped;
  if (!ReadEntry(dropped, strings, read_dropped)) return unread;
  for (const BibTag& tag : read_dropped.tags) {
    const bool is_lost = std::any_of(names.begin(), names.end(), [&](std::string_view name) {
      return EqualNoCase(name, tag.name);
    });
    if (is_lost) unread.tags.emplace_back(tag.name);
  }
  return unread;
}

void ReportSwallowed(std::string_view library, const LibraryRange& lines, std::string_view key,
                     std::size_t& reported, FileWarnings& warnings) {
  std::size_t at = std::max(lines.begin, reported > 0 ? reported - 1 : 0);
  reported = std::max(reported, lines.end);
  // Where the lines before are reported already, what is open there is not known: something is.
  std::ptrdiff_t depth = at == lines.begin ? OpenBraces(LineAt(library, at)) : 1;
  bool in_text = false;
  while ((at = library.find('\n', at) + 1) != 0 && at < lines.end) {
    const std::string_view line = LineAt(library, at);
    const bool is_text = depth <= 0 && !IsFileHeader(Trim(line, "}) \t\r\n"));
    depth = std::max<std::ptrdiff_t>(depth, 0) + OpenBraces(line);
    std::string upper(line.find('@') == std::string_view::npos ? std::string_view() : line);
    if (!IsKnownEntry(upper)) {
      if (is_text && !in_text) {
        warnings.Report(
            WarningKind::kTextNotCopied, at, {},
            "text after a dropped entry was not copied: " + Quoted(Trim(line, kBlanks)));
      }
      in_text = is_text;
      continue;
    }
    depth = OpenBraces(line);
    in_text = false;
    warnings.Report(WarningKind::kEntryDropped, at, CopyUntilChar(line, '{', ','),
                    "the entry was taken for a part of " + Quoted(key) +
                        ", which does not end before it, and is not in the new library");
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
  for (const LineTag& tag : TagsOf(EntryTextAt(library, copied.end))) {
    tags.append(tags.empty() ? ": " : ", ").append(Quoted(tag.name));
  }
  warnings.Report(WarningKind::kCutEntry, copied.end - 1, CopyUntilChar(copy, '{', ','),
                  "the entry was copied up to a value's line that begins with '}'; the rest is not "
                  "in the new library" +
                      tags);
}

void ReportVerdict(const EqualEntries& entries, const std::vector<Misread>& misread,
                   const std::vector<std::string_view>& differing, FileWarnings& warnings) {
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
                  what + ", but they differ in " + tags + "; look whether it is another work");
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
