// SPDX-License-Identifier: MIT
#include "ops/references/reference_walk.h"

#include <algorithm>
#include <cstdint>

#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "ops/references/author_format.h"
#include "ops/references/reference_format.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

constexpr std::string_view kBooktitleTag = "booktitle";

/// Where one of these stands on a head in upper case, its entry is not reported as unsupported. So
/// "@BOOKLET" is not, although no reference is printed for it.
constexpr std::array<std::string_view, 6> kSupportedMarkers{
    "@ARTICLE", "@BOOK", "@PHDTHESIS", "@MASTERTHESIS", "@INCOLLECTION", "@INPROCEEDINGS"};

using enum ReferenceValue;

constexpr std::array kArticleTags{
    TagRead{"author", kAuthor, AfterReading::kFormatNames},
    TagRead{"journal", kJournal},
    TagRead{"year", kYear},
    TagRead{"volume", kVolume},
    TagRead{"title", kTitle, AfterReading::kStripTitle},
    TagRead{"pages", kPages, AfterReading::kCutPages},
};
constexpr std::array kBookTags{
    TagRead{"author", kAuthor, AfterReading::kFormatNames},
    TagRead{"publisher", kPublisher},
    TagRead{"year", kYear},
    TagRead{"address", kAddress},
    TagRead{"title", kTitle, AfterReading::kStripTitle},
};
// After a booktitle it is the title that loses its braces, not the booktitle.
constexpr std::array kIncolTags{
    TagRead{"author", kAuthor, AfterReading::kFormatNames},
    TagRead{"publisher", kPublisher},
    TagRead{"year", kYear},
    TagRead{"address", kAddress},
    TagRead{"title", kTitle, AfterReading::kStripTitle, SkipWhen::kBooktitleAnyCase},
    TagRead{kBooktitleTag, kBooktitle, AfterReading::kStripTitle},
    TagRead{"editor", kEditor, AfterReading::kFormatNames},
    TagRead{"pages", kPages, AfterReading::kCutPages},
};
// No publisher, and the editors stay as they are.
constexpr std::array kInproTags{
    TagRead{"author", kAuthor, AfterReading::kFormatNames},
    TagRead{"title", kTitle, AfterReading::kNothing, SkipWhen::kBooktitleLowerCase},
    TagRead{kBooktitleTag, kBooktitle, AfterReading::kStripTitle},
    TagRead{"year", kYear},
    TagRead{"editor", kEditor},
    TagRead{"address", kAddress},
    TagRead{"pages", kPages, AfterReading::kCutPages},
};
constexpr std::array kThesisTags{
    TagRead{"author", kAuthor, AfterReading::kFormatNames},
    TagRead{"year", kYear},
    TagRead{"school", kSchool},
    TagRead{"title", kTitle, AfterReading::kStripTitle},
};

EntryKind MakeKind(ReferenceKind kind, std::span<const TagRead> tags) {
  std::array<std::string_view, 8> names;
  for (std::size_t i = 0; i < tags.size(); ++i) names[i] = tags[i].name;
  return {kind, tags, NameMatcher(std::span(names).first(tags.size()))};
}

struct TypeRow {
  std::string_view type_word;
  EntryKind kind;
};

const std::array<TypeRow, 6>& Types() {
  static const std::array<TypeRow, 6> types{{
      {"ARTICLE", MakeKind(ReferenceKind::kArticle, kArticleTags)},
      {"BOOK", MakeKind(ReferenceKind::kBook, kBookTags)},
      {"INCOLLECTION", MakeKind(ReferenceKind::kIncol, kIncolTags)},
      {"INPROCEEDINGS", MakeKind(ReferenceKind::kInpro, kInproTags)},
      {"PHDTHESIS", MakeKind(ReferenceKind::kPhd, kThesisTags)},
      {"MASTERTHESIS", MakeKind(ReferenceKind::kPhd, kThesisTags)},
  }};
  return types;
}

bool HoldsSupportedMarker(std::string_view line) {
  return std::any_of(
      kSupportedMarkers.begin(), kSupportedMarkers.end(),
      [line](std::string_view marker) { return line.find(marker) != std::string_view::npos; });
}

}  // namespace

const EntryKind* FindEntryKind(std::string_view type_word) {
  for (const TypeRow& row : Types()) {
    if (row.type_word == type_word) return &row.kind;
  }
  return nullptr;
}

const std::array<std::string_view, 11> kReferenceTags{
    "author",    "journal", "year",      "volume", "title", "pages",
    "publisher", "address", "booktitle", "editor", "school"};

ReferenceWalk::ReferenceWalk(LineStream& library, OutputFile& output, const Settings& settings,
                             const WalkRules& rules, FileWarnings& warnings)
    : library_(library),
      output_(output),
      settings_(settings),
      rules_(rules),
      style_(SelectedStyle(settings)),
      warnings_(warnings) {}

bool ReferenceWalk::Run(int entries) {
  for (int handled = 0; handled < entries; ++handled) {
    while (!IsKnownEntry(line_)) {
      if (!ReadNext()) return false;
    }
    const std::size_t position = library_.Position();
    if (!HandleEntry()) break;
    if (rules_.size) rules_.size->Look(library_.Position(), library_.Bytes().size());
    if (library_.Position() == position) {
      RepeatLastLine(entries - handled - 1);
      break;
    }
  }
  return true;
}

/// Handles the entry whose head is the current line; false when the library ends with that line.
/// Afterwards the current line is what ended the entry. At the end of the file that is the last
/// line (or, where a value ran into the end, all that was read for it), which may count as a head
/// again.
bool ReferenceWalk::HandleEntry() {
  const std::string type_word(CopyUntilChar(line_.Text(), '@', '{'));
  const std::string key(CopyUntilChar(line_.Text(), '{', ','));
  const std::size_t start = library_.Position();
  warnings_.StartEntry(key, start - 1);
  StringToUpper(line_.Edit());
  if (!HoldsSupportedMarker(line_.Text())) {
    WriteUnsupported(key, type_word);
    while (ReadNext() && !IsKnownEntry(line_)) {
    }
    return true;
  }
  if (!ReadNext()) {
    warnings_.ReportNothingPrinted("the library ends with its first line");
    return false;
  }
  const EntryKind* kind = FindEntryKind(type_word);
  if (!kind) {
    warnings_.ReportNothingPrinted("its type is read as '" + type_word +
                                   "', which has no reference");
    return true;
  }
  values_[kBibitem] = rules_.name_reference(key);
  ReadTags(*kind);
  NoteCutCommands(*kind);
  const std::vector<ReferenceValue> shown = rules_.print(*kind, values_);
  if (shown.empty()) {
    warnings_.ReportNothingPrinted("the style has no format for it that fits its values");
  }
  ReportReference(*kind, shown, start);
  return true;
}

/// Takes note of the commands that the table of the plain text replaces in part.
void ReferenceWalk::NoteCutCommands(const EntryKind& kind) {
  if (!rules_.find_cut || !warnings_.Wanted()) return;
  for (const TagRead& tag : kind.tags) {
    const std::string_view command = rules_.find_cut(values_[tag.value]);
    if (!command.empty()) warnings_.NoteCut(tag.value, command);
  }
}

/// Reports what is odd about the reference of the entry whose lines follow the byte at `start`.
void ReferenceWalk::ReportReference(const EntryKind& kind, std::span<const ReferenceValue> shown,
                                    std::size_t start) {
  const std::size_t end = library_.Position();
  warnings_.ReportValues(shown, values_, library_.Bytes().substr(start, end - start));
  if (rules_.is_plain_text) {
    warnings_.ReportCommands(shown, values_);
  } else {
    warnings_.ReportUnbalanced(shown, values_);
  }
  const bool has_editors = std::find(shown.begin(), shown.end(), kEditor) != shown.end();
  if (has_editors && kind.kind == ReferenceKind::kInpro) warnings_.ReportRawEditors(values_);
}

void ReferenceWalk::WriteUnsupported(std::string_view key, std::string_view type_word) {
  ++unsupported_;
  output_.Write({"\n\nAttention!\n==========\nThe entry type of the bibitem-key '", key, "' is '@",
                 type_word, "', which is not supported, so far.\n", rules_.advice, "\n\n\n\n"});
}

/// Handles the last line of the library, an unsupported head, for each entry that is left. Where a
/// value ran into the end of the file, the line can be as long as that: it is looked at only once.
void ReferenceWalk::RepeatLastLine(int entries) {
  const std::string type_word(CopyUntilChar(line_.Text(), '@', '{'));
  const std::string key(CopyUntilChar(line_.Text(), '{', ','));
  for (; entries > 0; --entries) {
    WriteUnsupported(key, type_word);
    if (rules_.size) rules_.size->Look(library_.Position(), library_.Bytes().size());
  }
}

void ReferenceWalk::ReadTags(const EntryKind& kind) {
  while (!IsKnownEntry(line_)) {
    ReadTagsOfLine(kind);
    if (!ReadNext()) return;
  }
}

void ReferenceWalk::ReadTagsOfLine(const EntryKind& kind) {
  std::uint64_t found = kind.names.Find(line_.Text());
  if (found == 0) return;
  for (std::size_t i = 0; i < kind.tags.size(); ++i) {
    const TagRead& tag = kind.tags[i];
    if ((found >> i & 1) == 0 || Skips(tag)) continue;
    const std::size_t after_line = library_.Position();
    ReadFieldValue(line_, library_, values_[tag.value]);
    warnings_.NoteRead(tag.value, tag.name, line_.Text(), after_line - 1);
    if (library_.Position() != after_line) ReportSwallowed(tag, after_line);
    Treat(tag);
    // A value over several lines has made the current line longer: more tags may stand on it.
    if (library_.Position() != after_line) found = kind.names.Find(line_.Text());
  }
}

/// Reports the entries that begin in the lines of a value, which goes on from the byte at `start`.
void ReferenceWalk::ReportSwallowed(const TagRead& tag, std::size_t start) {
  if (!warnings_.Wanted()) return;
  const std::string_view text = library_.Bytes().substr(0, library_.Position());
  for (std::size_t at = text.find('@', start); at < text.size(); at = text.find('@', at)) {
    const std::size_t begin = text.rfind('\n', at) + 1;
    const std::string_view line = LineAt(text, begin);
    std::string upper(line);
    if (IsKnownEntry(upper)) {
      warnings_.ReportSwallowed(tag.name, begin, CopyUntilChar(line, '{', ','));
    }
    at = begin + line.size();
  }
}

bool ReferenceWalk::Skips(const TagRead& tag) const {
  if (tag.skip_when == SkipWhen::kNothing) return false;
  if (tag.skip_when == SkipWhen::kBooktitleAnyCase) {
    return ContainsNoCase(line_.Text(), kBooktitleTag);
  }
  return line_.Text().find(kBooktitleTag) != std::string_view::npos;
}

void ReferenceWalk::Treat(const TagRead& tag) {
  std::string& value = values_[tag.value];
  switch (tag.after) {
    case AfterReading::kNothing:
      return;
    case AfterReading::kFormatNames:
      FormatAuthorList(value, style_);
      return;
    case AfterReading::kStripTitle:
      if (rules_.strips_titles) StripBraces(values_[kTitle]);
      return;
    case AfterReading::kCutPages:
      if (settings_.PagesRange == 0) {
        value.resize(FirstPage(value).size());
      } else if (rules_.collapses_dashes) {
        CollapseDoubledChar(value, '-');
      }
      return;
  }
}

std::vector<ReferenceValue> PrintReference(OutputFile& output, const std::string& format,
                                           std::span<const ReferenceValue> order,
                                           const EntryValues& values) {
  std::array<std::string_view, kValueCount> arguments;
  for (std::size_t i = 0; i < order.size(); ++i) {
    arguments[i] = values[order[i]];
  }
  std::uint64_t used = 0;
  output.Write(FormatReference(format, std::span(arguments).first(order.size()), &used));
  std::vector<ReferenceValue> shown;
  shown.reserve(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    if ((used >> i & 1) != 0) shown.push_back(order[i]);
  }
  return shown;
}

void ReportUnsupported(Reporter& reporter, int unsupported, std::string_view file_name) {
  if (unsupported == 0) return;
  const bool one = unsupported == 1;
  std::string text = one ? "One entry is" : std::to_string(unsupported) + " entries are";
  text.append(" not saved in the '").append(file_name).append("' file, because ");
  text.append(one ? "it is" : "they are");
  text.append(
      " not an ARTICLE, BOOK, INCOLLECTION, PHDTHESIS, MASTERTHESIS, INPROCEEDINGS. Only the "
      "latter entry types are supported.\n\nFor more details see the '");
  text.append(file_name).append("' file.");
  ReportError(reporter, text, "No support !", kReportInBox);
}

}  // namespace tarvel
