// SPDX-License-Identifier: MIT
#include "warnings/tag_warnings.h"

#include <algorithm>

#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

constexpr std::string_view kStringMarker = "@STRING{";

}  // namespace

void TagWarnings::StartEntry(std::string_view head, std::size_t offset) {
  FollowDropped(offset);
  in_entries_ = true;
  in_text_ = false;
  depth_ = 0;
  dropped_end_ = 0;
  if (!warnings_.Wanted()) return;
  key_ = CopyUntilChar(head, '{', ',');
  written_.clear();
  strings_.clear();
  if (head.ends_with(",\n")) return;
  const std::string_view rest = head.substr(0, head.size() - 2);
  if (rest.ends_with(',') || OpenBraces(rest) != 1) {
    warnings_.Report(
        WarningKind::kBrokenHead, offset, key_,
        "the first line does not end with the comma after the key: without its last two bytes, "
        "which Clean tags cuts, BibTeX cannot read the entry; delete what follows the comma");
    return;
  }
  warnings_.Report(WarningKind::kTextLost, offset, key_,
                   "the first line does not end with a comma and a line break: its last two bytes "
                   "were cut");
}

void TagWarnings::EndEntry(bool at_next_head) {
  if (at_next_head) return;
  for (const auto& [text, offset] : strings_) {
    warnings_.Report(WarningKind::kTextNotCopied, offset, {},
                     "no entry follows the definition, and it was not copied: " + Quoted(text));
  }
}

/// What follows the dropped entry, of whose first line `offset` is the last byte, is text again. An
/// entry that begins within another one's lines ends with it.
void TagWarnings::SkipEntry(std::string_view library, std::size_t offset) {
  key_.clear();
  in_entries_ = false;
  in_text_ = false;
  FollowDropped(offset);
  if (offset < dropped_end_) return;
  library_ = library;
  dropped_head_ = offset;
  dropped_at_ = library.substr(0, offset).rfind('\n') + 1;
  dropped_depth_ = 0;
  dropped_end_ = kOpen;
}

/// Looks for the end of the dropped entry, but not from `to` on.
void TagWarnings::FollowDropped(std::size_t to) {
  to = std::min(to, library_.size());
  for (; dropped_end_ == kOpen && dropped_at_ < to; ++dropped_at_) {
    const char byte = library_[dropped_at_];
    if (byte == '{') ++dropped_depth_;
    if (byte == '}') --dropped_depth_;
    const bool ends_line = dropped_at_ > dropped_head_ && library_.substr(dropped_at_, 2) == "\n@";
    if (!ends_line && byte == '}' && dropped_depth_ <= 0) return EndDropped();
    if (ends_line || (dropped_at_ >= dropped_head_ && dropped_depth_ <= 0)) {
      dropped_end_ = dropped_at_ + 1;
    }
  }
}

/// The dropped entry ends with the brace at `dropped_at_`: what follows it on its line is text.
void TagWarnings::EndDropped() {
  const std::size_t line_end = std::min(library_.find('\n', dropped_at_), library_.size());
  const std::string_view rest = library_.substr(dropped_at_ + 1, line_end - dropped_at_ - 1);
  if (!Trim(rest, ", \t\r").empty()) ReportText(rest, dropped_at_);
  in_text_ = false;
  dropped_end_ = line_end + 1;
}

void TagWarnings::NoteDroppedWithoutKey(std::string_view library, std::size_t offset) {
  if (!warnings_.Wanted()) return;
  warnings_.Report(WarningKind::kEntryDropped, offset, {}, "an entry without a key was dropped");
  SkipEntry(library, offset);
}

void TagWarnings::NoteDroppedAsEmpty(std::string_view key, std::size_t offset,
                                     std::string_view library, std::size_t rest_at) {
  if (!warnings_.Wanted()) return;
  SkipEntry(library, offset);
  const std::size_t end = std::min(library.find('\n', rest_at), library.size());
  for (const LineTag& tag : TagsOf(library.substr(offset + 1, end - offset - 1))) {
    if (EqualNoCase(tag.name, "owner") || EqualNoCase(tag.name, "timestamp")) continue;
    warnings_.Report(WarningKind::kEntryDropped, offset, key,
                     "the entry was dropped as empty, although it has the tag " + Quoted(tag.name));
    return;
  }
}

void TagWarnings::NoteRemovedString(std::string_view line, std::size_t offset) {
  if (!warnings_.Wanted() || OpenBraces(line) <= 0) return;
  warnings_.Report(WarningKind::kTextNotCopied, offset, {},
                   "the definition continues on the next lines, which were not copied, and its log "
                   "names only this line: " +
                       Quoted(Trim(line, kBlanks)));
}

void TagWarnings::NoteSkippedOutside(std::string_view text, std::size_t offset) {
  if (in_entries_ || !warnings_.Wanted()) return;
  FollowDropped(offset + text.size());
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    const bool is_string = line.find(kStringMarker) != std::string_view::npos;
    if (!is_string && offset >= dropped_end_) ReportText(line, offset);
    const std::size_t size = std::min(line.size() + 1, text.size());
    text.remove_prefix(size);
    offset += size;
  }
}

void TagWarnings::NoteSkipped(std::string_view line, std::size_t offset) {
  if (!warnings_.Wanted()) return;
  if (depth_ > 0) {
    depth_ += OpenBraces(line);
  } else if (line.find(kStringMarker) != std::string_view::npos) {
    strings_.emplace_back(Trim(line, kBlanks), offset);  // is handled when it is read again
  } else if (CountTag(line, offset)) {
    depth_ = OpenBraces(line);
  } else {
    ReportText(line, offset);
  }
}

void TagWarnings::NoteSkippedTag(std::string_view line, std::size_t offset) {
  if (!warnings_.Wanted() || depth_ > 0) return;
  if (!CountTag(line, offset)) ReportText(line, offset);
}

void TagWarnings::NoteTag(std::string_view line, std::string_view known, bool was_written,
                          std::size_t offset) {
  in_text_ = false;
  if (!was_written || !warnings_.Wanted()) return;
  const std::string_view name = TagNameOf(line);
  if (!EqualNoCase(name, known)) ReportRenamed(name, known, offset);
  const std::string shown(name.empty() ? "text" : name);
  const auto [earlier, is_first] = written_.try_emplace(known, shown);
  if (is_first) return;
  warnings_.Report(WarningKind::kTagTwice, offset, key_,
                   "the entry has the tag " + Quoted(known) + " twice now, from " +
                       Quoted(earlier->second) + " and from " + Quoted(shown));
}

void TagWarnings::NoteAfterValue(std::string_view line, std::string_view value,
                                 std::size_t offset) {
  if (!warnings_.Wanted()) return;
  const std::size_t end = line.find('{') + 1 + value.size();
  const bool ends_so = end < line.size() && line[end] == '}';
  const std::string_view plain = ends_so ? Trim(line.substr(end + 1), ", \t\r\n}") : line;
  if (plain.empty()) return;
  const std::string_view rest = Trim(TextAfterValue(line), ", \t\r\n}");
  // A further tag has a warning of its own, and so has a value in quotes or of several pieces.
  if (line.substr(0, line.find('{')).find('"') != std::string_view::npos) return;
  if (rest.empty() || rest.starts_with('#') || rest.find('=') != std::string_view::npos) return;
  warnings_.Report(WarningKind::kTextNotCopied, offset, key_,
                   "text after a value was not copied: " + Quoted(rest));
}

void TagWarnings::ReportRenamed(std::string_view name, std::string_view known, std::size_t offset) {
  if (warnings_.ReportNumber(WarningKind::kRenamedTag)) return;
  const std::string what = name.empty() ? "a line of text" : "the tag " + Quoted(name);
  warnings_.Report(WarningKind::kRenamedTag, offset, key_,
                   what + " was written as the tag " + Quoted(known));
}

bool TagWarnings::CountTag(std::string_view line, std::size_t offset) {
  const std::string_view name = TagNameOf(line);
  if (name.empty()) return false;
  in_text_ = false;
  unknown_tags_.Add(name, offset);
  return true;
}

/// Reports the first line of a text. After the brace or parenthesis that ends an entry another text
/// begins.
void TagWarnings::ReportText(std::string_view line, std::size_t offset) {
  const std::string_view text = Trim(line, kBlanks);
  const bool says_nothing = IsFileHeader(Trim(text, "}),"));
  const bool begins = !says_nothing && (!in_text_ || text.starts_with('@') ||
                                        text.starts_with('}') || text.starts_with(')'));
  if (begins && !warnings_.ReportNumber(WarningKind::kTextNotCopied)) {
    warnings_.Report(WarningKind::kTextNotCopied, offset, key_,
                     "text outside tags was not copied: " + Quoted(text));
  }
  in_text_ = !says_nothing && OpenBraces(text) >= 0;
}

void TagWarnings::ReportTags() {
  for (const auto& [name, dropped] : unknown_tags_.ByCount()) {
    const bool is_known = EqualNoCase(name, "keywords");  // the preferences have it all the same
    warnings_.Report(WarningKind::kUnknownTag, dropped.first, {},
                     "the tag " + Quoted(name) + (is_known ? " is never kept" : " is unknown") +
                         " and was dropped, times: " + std::to_string(dropped.count));
  }
}

}  // namespace tarvel
