// SPDX-License-Identifier: MIT
#include "ops/journal_styles.h"

#include <initializer_list>
#include <string_view>

#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::string_view kNotOpened =
    "ReadJournalStyles()_1 => Could not open the text file 'Journal_styles_....tvl'";
constexpr std::string_view kNoBlank =
    "ReadJournalStyles()_2 => the config file 'Journal_styles_....tvl' seems to be corrupt. "
    "No spaces?";
constexpr std::string_view kNoEqualsSign =
    "ReadJournalStyles()_3 => the config file 'Journal_styles_....tvl' seems to be corrupt. "
    "No '; // ' and '='?";
constexpr std::string_view kWrongCount =  // sic: 60, though 71 are needed
    "ReadJournalStyles()_4 => We need 60 entries in the config file 'Journal_styles_....tvl', "
    "but we have ";

constexpr int kDefinitions = 71;
constexpr std::string_view kCommentMark = "; // ";

struct StyleRow {
  std::string_view prefix;
  Flag Settings::*flag;
  bool has_plain_phd;  // whether the name of its plain thesis carries the blank
};

// ORDER: JournalStyle
constexpr std::array<StyleRow, kStyleCount> kStyles{{
    {"ACS_", &Settings::StyleACS, false},
    {"APS_", &Settings::StyleAPS, true},
    {"IOP_", &Settings::StyleIOP, true},
    {"NATURE_", &Settings::StyleNature, true},
    {"WILEY_", &Settings::StyleWiley, true},
    {"SPRINGER_C_", &Settings::StyleSpringerCompSci, false},
}};

// ORDER: StyleKey
constexpr std::array<std::string_view, kStyleKeyCount> kKeyNames{
    "article_title", "article", "article_title_latex", "article_latex", "book_latex",  "book",
    "inpro_latex",   "inpro",   "phd_latex",           "phd",           "incol_latex", "incol"};

struct KindKeys {
  StyleKey plain;
  StyleKey latex;
};

// ORDER: ReferenceKind
constexpr std::array<KindKeys, 6> kKindKeys{{
    {StyleKey::kArticleTitle, StyleKey::kArticleTitleLaTeX},
    {StyleKey::kArticle, StyleKey::kArticleLaTeX},
    {StyleKey::kBook, StyleKey::kBookLaTeX},
    {StyleKey::kIncol, StyleKey::kIncolLaTeX},
    {StyleKey::kInpro, StyleKey::kInproLaTeX},
    {StyleKey::kPhd, StyleKey::kPhdLaTeX},
}};

class ValueList {
 public:
  constexpr ValueList(std::initializer_list<ReferenceValue> values) {
    for (const ReferenceValue value : values) values_[size_++] = value;
  }
  constexpr std::span<const ReferenceValue> Values() const { return {values_.data(), size_}; }

 private:
  std::array<ReferenceValue, 8> values_{};
  std::size_t size_ = 0;
};

constexpr auto Bibitem = ReferenceValue::kBibitem;
constexpr auto Author = ReferenceValue::kAuthor;
constexpr auto Title = ReferenceValue::kTitle;
constexpr auto Journal = ReferenceValue::kJournal;
constexpr auto Year = ReferenceValue::kYear;
constexpr auto Volume = ReferenceValue::kVolume;
constexpr auto Pages = ReferenceValue::kPages;
constexpr auto Publisher = ReferenceValue::kPublisher;
constexpr auto Address = ReferenceValue::kAddress;
constexpr auto Editor = ReferenceValue::kEditor;
constexpr auto Booktitle = ReferenceValue::kBooktitle;
constexpr auto School = ReferenceValue::kSchool;

// Odd places are meant: APS books put the title first, Wiley theses print publisher and address,
// which no thesis has. Style files rely on them. ORDER: ReferenceKind, then JournalStyle
constexpr ValueList kValueOrders[6][kStyleCount] = {
    // article with title
    {{Bibitem, Author, Title, Journal, Year, Volume, Pages},
     {Bibitem, Author, Title, Journal, Volume, Pages, Year},
     {Bibitem, Author, Title, Journal, Volume, Pages, Year},
     {Bibitem, Author, Title, Journal, Volume, Pages, Year},
     {Bibitem, Author, Title, Journal, Year, Volume, Pages},
     {Bibitem, Author, Year, Title, Journal, Volume, Pages}},
    // article without title
    {{Bibitem, Author, Journal, Year, Volume, Pages},
     {Bibitem, Author, Journal, Volume, Pages, Year},
     {Bibitem, Author, Journal, Volume, Pages, Year},
     {Bibitem, Author, Journal, Volume, Pages, Year},
     {Bibitem, Author, Journal, Year, Volume, Pages},
     {Bibitem, Author, Year, Journal, Volume, Pages}},
    // book
    {{Bibitem, Author, Title, Publisher, Address, Year},
     {Bibitem, Title, Author, Publisher, Address, Year},
     {Bibitem, Author, Year, Title, Address, Publisher},
     {Bibitem, Author, Title, Publisher, Address, Year},
     {Bibitem, Author, Title, Publisher, Address, Year},
     {Bibitem, Author, Year, Title, Publisher, Address}},
    // part of a book
    {{Bibitem, Author, Title, Editor, Booktitle, Publisher, Address, Year},
     {Bibitem, Author, Booktitle, Editor, Publisher, Address, Year},
     {Bibitem, Author, Year, Title, Booktitle, Editor, Address, Publisher},
     {Bibitem, Author, Year, Title, Booktitle, Editor, Address, Publisher},
     {Bibitem, Author, Booktitle, Editor, Publisher, Address, Year, Pages},
     {Bibitem, Author, Year, Title, Booktitle, Editor, Publisher, Address}},
    // paper in proceedings
    {{Bibitem, Author, Booktitle, Editor, Publisher, Address, Year, Pages},
     {Bibitem, Author, Booktitle, Editor, Publisher, Address, Year, Pages},
     {Bibitem, Author, Year, Booktitle, Address, Editor, Pages},
     {Bibitem, Author, Year, Booktitle, Address, Editor, Pages},
     {Bibitem, Author, Booktitle, Editor, Publisher, Address, Year},
     {Bibitem, Author, Year, Title, Booktitle, Editor, Publisher, Address}},
    // thesis
    {{Bibitem, Author, School, Year},
     {Bibitem, Author, School, Year},
     {Bibitem, Author, Year, School},
     {Bibitem, Author, Year, School},
     {Bibitem, Author, Publisher, Address, Year},
     {Bibitem, Author, Year, Title, Address}},
};

std::size_t FormatIndex(JournalStyle style, StyleKey key) {
  return static_cast<std::size_t>(style) * kStyleKeyCount + static_cast<std::size_t>(key);
}

using FormatNames = std::array<std::string, kStyleCount * kStyleKeyCount>;

/// The names that a definition's key is searched for in. ORDER: FormatIndex
FormatNames BuiltInNames() {
  FormatNames names;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const StyleRow& style = kStyles[i / kStyleKeyCount];
    const std::size_t key = i % kStyleKeyCount;
    names[i].append(style.prefix).append(kKeyNames[key]);
    const bool is_plain_phd = static_cast<StyleKey>(key) == StyleKey::kPhd;
    if (!is_plain_phd || style.has_plain_phd) names[i].push_back(' ');
  }
  return names;
}

/// The text from `begin` to `end`; empty where they cross.
std::string_view Between(std::string_view line, std::size_t begin, std::size_t end) {
  return begin < end ? line.substr(begin, end - begin) : std::string_view();
}

bool IsDefinition(std::string_view line) {
  return line.find(kCommentMark) != std::string_view::npos && line.front() != '#' &&
         line.front() != '/';
}

/// The format of a definition, found by counting bytes: three after the "=" and two before the
/// comment stand its first and its last byte.
std::string FormatOf(std::string_view line, std::size_t equals_sign) {
  const std::size_t mark = line.find(kCommentMark);
  std::string format(Between(line, equals_sign + 3, mark == 0 ? 0 : mark - 1));
  // Once more for those that stand directly after another: one pass leaves every second of them.
  ReplaceString(format, "\\n", "\n");
  ReplaceString(format, "\\n", "\n");
  return format;
}

}  // namespace

void JournalStyles::Define(std::string_view key, const std::string& format) {
  static const FormatNames names = BuiltInNames();
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i].find(key) != std::string::npos) formats_[i] = format;
  }
}

const std::string& JournalStyles::Format(JournalStyle style, StyleKey key) const {
  return formats_[FormatIndex(style, key)];
}

int ReadJournalStyles(const RunContext& run, JournalStyles& styles) {
  const std::string path = run.program_directory().append(kStylesFile);
  std::optional<LineStream> file = run.files.OpenLines(path, ReadMode::kRead);
  if (!file) return Fail(run, kNotOpened);

  int definitions = 0;
  while (const auto line = file->ReadLine(limits::kShortLine)) {
    if (!IsDefinition(*line)) continue;
    const std::size_t blank = line->find(' ');
    if (blank == std::string_view::npos) return Fail(run, kNoBlank);
    const std::size_t equals_sign = line->find('=');
    if (equals_sign == std::string_view::npos) return Fail(run, kNoEqualsSign);
    styles.Define(line->substr(0, blank + 1), FormatOf(*line, equals_sign));
    ++definitions;
  }
  if (definitions == kDefinitions) return kSucceeded;
  // The number reported is one more than the number found.
  return Fail(run, std::string(kWrongCount) + std::to_string(definitions + 1) + " entries\n");
}

std::optional<JournalStyle> SelectedStyle(const Settings& settings) {
  for (std::size_t s = 0; s < kStyleCount; ++s) {
    if (settings.*kStyles[s].flag != 0) return static_cast<JournalStyle>(s);
  }
  return std::nullopt;
}

StyleKey StyleKeyFor(ReferenceKind kind, bool latex) {
  const KindKeys& keys = kKindKeys[static_cast<std::size_t>(kind)];
  return latex ? keys.latex : keys.plain;
}

std::span<const ReferenceValue> ValueOrder(ReferenceKind kind, JournalStyle style) {
  return kValueOrders[static_cast<std::size_t>(kind)][static_cast<std::size_t>(style)].Values();
}

}  // namespace tarvel
