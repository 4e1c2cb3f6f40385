// SPDX-License-Identifier: MIT
#include "ops/references/reference_walk.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "ops/references/author_format.h"
#include "ops/references/reference_format.h"

namespace tarvel {

namespace {

constexpr std::string_view kBooktitle = "booktitle";

// ORDER: Value
constexpr std::array<std::string_view, kValueCount> kValueNames{
    "name",  "author",    "title",   "journal", "year",      "volume",
    "pages", "publisher", "address", "editor",  "booktitle", "school"};

std::string_view NameOf(Value value) { return kValueNames[static_cast<std::size_t>(value)]; }

/// Where one of these stands on a head in upper case, its entry is not reported as unsupported. So
/// "@BOOKLET" is not, although no reference is printed for it.
constexpr std::array<std::string_view, 6> kSupportedMarkers{
    "@ARTICLE", "@BOOK", "@PHDTHESIS", "@MASTERTHESIS", "@INCOLLECTION", "@INPROCEEDINGS"};

constexpr std::array kArticleTags{
    TagRead{"author", Value::kAuthor, AfterReading::kFormatNames},
    TagRead{"journal", Value::kJournal},
    TagRead{"year", Value::kYear},
    TagRead{"volume", Value::kVolume},
    TagRead{"title", Value::kTitle, AfterReading::kStripTitle},
    TagRead{"pages", Value::kPages, AfterReading::kCutPages},
};
constexpr std::array kBookTags{
    TagRead{"author", Value::kAuthor, AfterReading::kFormatNames},
    TagRead{"publisher", Value::kPublisher},
    TagRead{"year", Value::kYear},
    TagRead{"address", Value::kAddress},
    TagRead{"title", Value::kTitle, AfterReading::kStripTitle},
};
// After a booktitle it is the title that loses its braces, not the booktitle.
constexpr std::array kIncolTags{
    TagRead{"author", Value::kAuthor, AfterReading::kFormatNames},
    TagRead{"publisher", Value::kPublisher},
    TagRead{"year", Value::kYear},
    TagRead{"address", Value::kAddress},
    TagRead{"title", Value::kTitle, AfterReading::kStripTitle, PassOver::kBooktitleAnyCase},
    TagRead{kBooktitle, Value::kBooktitle, AfterReading::kStripTitle},
    TagRead{"editor", Value::kEditor, AfterReading::kFormatNames},
    TagRead{"pages", Value::kPages, AfterReading::kCutPages},
};
// No publisher, and the editors stay as they are.
constexpr std::array kInproTags{
    TagRead{"author", Value::kAuthor, AfterReading::kFormatNames},
    TagRead{"title", Value::kTitle, AfterReading::kNothing, PassOver::kBooktitleLowerCase},
    TagRead{kBooktitle, Value::kBooktitle, AfterReading::kStripTitle},
    TagRead{"year", Value::kYear},
    TagRead{"editor", Value::kEditor},
    TagRead{"address", Value::kAddress},
    TagRead{"pages", Value::kPages, AfterReading::kCutPages},
};
constexpr std::array kThesisTags{
    TagRead{"author", Value::kAuthor, AfterReading::kFormatNames},
    TagRead{"year", Value::kYear},
    TagRead{"school", Value::kSchool},
    TagRead{"title", Value::kTitle, AfterReading::kStripTitle},
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
                             WalkRules rules, FileWarnings* warnings)
    : library_(library),
      output_(output),
      settings_(settings),
      rules_(std::move(rules)),
      style_(SelectedStyle(settings)),
      warnings_(warnings && warnings->Wanted() ? warnings : nullptr) {}

bool ReferenceWalk::Run(int entries) {
  for (int handled = 0; handled < entries; ++handled) {
    while (!IsKnownEntry(line_)) {
      if (!ReadNext()) return false;
    }
    if (!HandleEntry()) break;
  }
  return true;
}

/// Handles the entry whose head is the current line; false when the library ends with that line.
/// Behind it the current line is what ended the entry. At the end of the file that is the last line
/// (or, where a value ran into the end, all that was read for it), which may count as a head again.
bool ReferenceWalk::HandleEntry() {
  const std::string type_word(CopyUntilChar(line_.Text(), '@', '{'));
  const std::string key(CopyUntilChar(line_.Text(), '{', ','));
  head_ = library_.Position() - 1;
  StringToUpper(line_.Edit());
  if (!HoldsSupportedMarker(line_.Text())) {
    PassUnsupported(key, type_word);
    return true;
  }
  if (!ReadNext()) {
    ReportNothingPrinted(key, "the library ends with its first line");
    return false;
  }
  const EntryKind* kind = FindEntryKind(type_word);
  if (!kind) {
    ReportNothingPrinted(key, "its type is read as '" + type_word + "', which has no reference");
    return true;
  }
  At(values_, Value::kBibitem) = rules_.name_reference(key);
  read_.fill(false);
  ReadTags(*kind);
  const std::vector<Value> shown = rules_.print(*kind, values_);
  if (shown.empty())
    ReportNothingPrinted(key, "the style has no format for it that fits its values");
  ReportCarriedOver(shown, key);
  if (rules_.is_plain_text) ReportCommands(shown, key);
  return true;
}

void ReferenceWalk::ReportNothingPrinted(std::string_view key, std::string_view why) {
  if (!warnings_) return;
  warnings_->Report(WarningKind::kNothingPrinted, head_, key,
                    std::string("no reference was printed: ").append(why));
}

/// Notes whose values were read, and reports those shown that are of an earlier entry.
void ReferenceWalk::ReportCarriedOver(std::span<const Value> shown, std::string_view key) {
  if (!warnings_) return;
  for (std::size_t i = 0; i < kValueCount; ++i) {
    if (read_[i]) owner_[i] = key;
  }
  for (const Value value : shown) {
    const auto index = static_cast<std::size_t>(value);
    if (value == Value::kBibitem || read_[index] || values_[index].empty()) continue;
    warnings_->Report(WarningKind::kCarriedOver, head_, key,
                      std::string("shows the ")
                          .append(NameOf(value))
                          .append(" of the earlier entry '")
                          .append(owner_[index])
                          .append("'"));
  }
}

/// Reports the first command in each value that is shown.
void ReferenceWalk::ReportCommands(std::span<const Value> shown, std::string_view key) {
  if (!warnings_) return;
  for (const Value value : shown) {
    const std::string& text = At(values_, value);
    const std::size_t at = text.find('\\');
    if (value == Value::kBibitem || at == std::string::npos) continue;
    std::size_t end = at + 1;
    while (end < text.size() && IsLetter(text[end])) ++end;
    end = std::max(end, std::min(at + 2, text.size()));
    warnings_->Report(WarningKind::kCommandLeft, head_, key,
                      std::string("'")
                          .append(text, at, end - at)
                          .append("' is left in the ")
                          .append(NameOf(value)));
  }
}

void ReferenceWalk::PassUnsupported(std::string_view key, std::string_view type_word) {
  ++unsupported_;
  output_.Write({"\n\nAttention!\n==========\nThe entry type of the bibitem-key '", key, "' is '@",
                 type_word, "', which is not supported, so far.\n", rules_.advice, "\n\n\n\n"});
  while (ReadNext() && !IsKnownEntry(line_)) {
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
    if ((found >> i & 1) == 0 || PassesOver(tag)) continue;
    const std::size_t behind_line = library_.Position();
    ReadFieldValue(line_, library_, At(values_, tag.value));
    read_[static_cast<std::size_t>(tag.value)] = true;
    Treat(tag);
    // A value over several lines has made the current line longer: more tags may stand on it.
    if (library_.Position() != behind_line) found = kind.names.Find(line_.Text());
  }
}

bool ReferenceWalk::PassesOver(const TagRead& tag) const {
  switch (tag.pass_over) {
    case PassOver::kNothing:
      return false;
    case PassOver::kBooktitleAnyCase:
      return ContainsNoCase(line_.Text(), kBooktitle);
    case PassOver::kBooktitleLowerCase:
      return line_.Text().find(kBooktitle) != std::string_view::npos;
  }
  return false;
}

void ReferenceWalk::Treat(const TagRead& tag) {
  std::string& value = At(values_, tag.value);
  switch (tag.after) {
    case AfterReading::kNothing:
      return;
    case AfterReading::kFormatNames:
      FormatAuthorList(value, style_);
      return;
    case AfterReading::kStripTitle:
      if (rules_.strips_titles) StripBraces(At(values_, Value::kTitle));
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

std::vector<Value> PrintReference(OutputFile& output, const std::string& format,
                                  std::span<const Value> order, const EntryValues& values) {
  std::array<std::string_view, kValueCount> arguments;
  for (std::size_t i = 0; i < order.size(); ++i) {
    arguments[i] = values[static_cast<std::size_t>(order[i])];
  }
  std::uint64_t used = 0;
  output.Write(FormatReference(format, std::span(arguments).first(order.size()), &used));
  std::vector<Value> shown;
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
