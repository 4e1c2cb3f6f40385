// SPDX-License-Identifier: MIT
#include "ops/references/reference_warnings.h"

#include <algorithm>
#include <vector>

#include "core/text_primitives.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

// ORDER: ReferenceValue
constexpr std::array<std::string_view, kValueCount> kValueNames{
    "name",  "author",    "title",   "journal", "year",      "volume",
    "pages", "publisher", "address", "editor",  "booktitle", "school"};

std::string_view NameOf(ReferenceValue value) {
  return kValueNames[static_cast<std::size_t>(value)];
}

/// The LaTeX command at the start of `text`: a backslash and letters, or one other byte.
std::string_view CommandAt(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && IsLetter(text[end])) ++end;
  return text.substr(0, std::max<std::size_t>(end, 2));
}

/// The values without which a reference is of no use.
constexpr std::array kMainValues{ReferenceValue::kAuthor, ReferenceValue::kTitle,
                                 ReferenceValue::kJournal, ReferenceValue::kYear};

bool IsMain(ReferenceValue value) {
  return std::find(kMainValues.begin(), kMainValues.end(), value) != kMainValues.end();
}

/// Whether the text, which follows the first line of an entry, holds the brace that ends it.
bool EndsEntry(std::string_view text) {
  int depth = 1;
  for (const char byte : text) {
    if (byte == '{') ++depth;
    if (byte == '}' && --depth == 0) return true;
  }
  return false;
}

/// Whether every brace of the text has its other one.
bool IsBalanced(std::string_view text) {
  int depth = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\\') {
      ++at;  // an escaped brace is none
      continue;
    }
    if (text[at] == '{') ++depth;
    if (text[at] == '}' && --depth < 0) return false;
  }
  return depth == 0;
}

}  // namespace

void ReferenceWarnings::StartEntry(std::string_view key, std::size_t offset) {
  if (!warnings_.Wanted()) return;
  key_ = key;
  offset_ = offset;
  for (Source& source : sources_) {
    source.offset = source.own = source.earlier = 0;
    source.cut.clear();
  }
}

void ReferenceWarnings::NoteRead(ReferenceValue value, std::string_view name, std::string_view line,
                                 std::size_t offset) {
  if (!warnings_.Wanted()) return;
  owner_[static_cast<std::size_t>(value)] = key_;
  Source& source = SourceOf(value);
  source.offset = offset;
  source.tag = name;
  const std::string_view line_tag = TagNameOf(line);
  source.is_own = EqualNoCase(line_tag, name);
  // Read again from the same line, it is the same value.
  source.earlier = source.is_own && source.own != offset ? source.own : 0;
  if (source.is_own) source.own = offset;
  source.is_its_own = false;
  if (source.is_own) return;
  source.line = line_tag;
  for (const LineTag& tag : TagsOf(line)) {
    source.is_its_own = source.is_its_own || EqualNoCase(tag.name, name);
  }
}

void ReferenceWarnings::ReportSwallowed(std::string_view tag, std::size_t offset,
                                        std::string_view key) {
  warnings_.Report(WarningKind::kNothingPrinted, offset, key,
                   "no reference was printed: the entry was taken for a part of the " +
                       Quoted(tag) + " of " + Quoted(key_));
}

void ReferenceWarnings::NoteCut(ReferenceValue value, std::string_view command) {
  SourceOf(value).cut = command;
}

void ReferenceWarnings::ReportNothingPrinted(std::string_view why) {
  if (!warnings_.Wanted()) return;
  warnings_.Report(WarningKind::kNothingPrinted, offset_, key_,
                   std::string("no reference was printed: ").append(why));
}

void ReferenceWarnings::ReportValues(std::span<const ReferenceValue> shown,
                                     const EntryValues& values, std::string_view text) {
  if (!warnings_.Wanted()) return;
  std::vector<ReferenceValue> missing;
  for (const ReferenceValue value : shown) {
    if (value == ReferenceValue::kBibitem) continue;
    const Source& source = SourceOf(value);
    const bool was_read = source.offset != 0;
    if (values[value].empty()) {
      missing.push_back(value);
    } else if (!was_read && !warnings_.ReportNumber(WarningKind::kCarriedOver)) {
      warnings_.Report(WarningKind::kCarriedOver, offset_, key_,
                       std::string("shows the ")
                           .append(NameOf(value))
                           .append(" of the earlier entry ")
                           .append(Quoted(owner_[static_cast<std::size_t>(value)])));
    }
    if (was_read && !source.is_own) ReportOtherTag(source);
    if (source.earlier != 0) ReportTwice(source, text);
  }
  if (!missing.empty()) ReportMissing(missing, text);
}

void ReferenceWarnings::ReportOtherTag(const Source& source) {
  if (warnings_.ReportNumber(WarningKind::kOtherTag)) return;
  std::string text = "the value of '" + std::string(source.tag) + "' is read from ";
  if (source.line.empty()) {
    text += "a line of text that mentions it";
  } else {
    text += "the line of " + Quoted(source.line);
  }
  if (source.is_its_own) text += ", which it shares";
  warnings_.Report(WarningKind::kOtherTag, source.offset, key_, text);
}

/// Reports that the entry, whose lines after the first are `text`, has a tag twice. Tags after its
/// end have other warnings.
void ReferenceWarnings::ReportTwice(const Source& source, std::string_view text) {
  const std::string_view before = text.substr(0, source.offset - offset_ - 1);
  if (before.find("\n@") != std::string_view::npos || EndsEntry(before)) return;
  if (warnings_.ReportNumber(WarningKind::kTagTwice)) return;
  warnings_.Report(WarningKind::kTagTwice, source.offset, key_,
                   "the tag " + Quoted(source.tag) +
                       " stands twice in the entry: the reference shows the last one");
}

/// Reports the values that the entry lacks. `text` is what it holds.
void ReferenceWarnings::ReportMissing(std::span<const ReferenceValue> missing,
                                      std::string_view text) {
  const bool loss = std::any_of(missing.begin(), missing.end(), IsMain);
  const WarningKind kind = loss ? WarningKind::kValueMissing : WarningKind::kDetailMissing;
  if (warnings_.ReportNumber(kind)) return;
  std::string names;
  for (const ReferenceValue value : missing) {
    names.append(names.empty() ? "'" : ", '").append(NameOf(value)).append("'");
  }
  std::string what = "the reference shows nothing for " + names;
  for (const LineTag& tag : TagsOf(text)) {
    if (!EqualNoCase(tag.name, "crossref")) continue;
    what += "; 'crossref' is not followed";
    break;
  }
  warnings_.Report(kind, offset_, key_, what);
}

void ReferenceWarnings::ReportCommands(std::span<const ReferenceValue> shown,
                                       const EntryValues& values) {
  if (!warnings_.Wanted()) return;
  for (const ReferenceValue value : shown) {
    if (value == ReferenceValue::kBibitem) continue;
    const std::string& cut = SourceOf(value).cut;
    if (!cut.empty()) {
      warnings_.Report(WarningKind::kCommandCut, offset_, key_,
                       "only the beginning of " + Quoted(cut) + " was replaced in the '" +
                           std::string(NameOf(value)) + "'");
    }
    const std::string_view text = values[value];
    const std::size_t at = text.find('\\');
    if (at == std::string_view::npos) continue;
    warnings_.Report(WarningKind::kCommandLeft, offset_, key_,
                     std::string("'")
                         .append(CommandAt(text.substr(at)))
                         .append("' is left in the ")
                         .append(NameOf(value)));
  }
}

void ReferenceWarnings::ReportUnbalanced(std::span<const ReferenceValue> shown,
                                         const EntryValues& values) {
  if (!warnings_.Wanted()) return;
  for (const ReferenceValue value : shown) {
    if (value == ReferenceValue::kBibitem || IsBalanced(values[value])) continue;
    warnings_.Report(WarningKind::kUnbalanced, offset_, key_,
                     "the braces of the '" + std::string(NameOf(value)) +
                         "' do not match, which stops LaTeX: " + Quoted(values[value]));
  }
}

void ReferenceWarnings::ReportRawEditors(const EntryValues& values) {
  const std::string_view editors = values[ReferenceValue::kEditor];
  const bool is_list = editors.find(" and ") != std::string_view::npos ||
                       editors.find(',') != std::string_view::npos;
  if (!warnings_.Wanted() || !is_list) return;
  warnings_.Report(
      WarningKind::kRawEditors, offset_, key_,
      "the 'editor' is printed as it is, not in the form of the style: " + Quoted(editors));
}

}  // namespace tarvel
