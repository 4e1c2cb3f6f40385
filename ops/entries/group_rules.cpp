// SPDX-License-Identifier: MIT
#include "ops/entries/group_rules.h"

#include <algorithm>

#include "core/keyed_hash.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

// The names of the tags in the lines that show them. ORDER: `Field`.
constexpr std::array<std::string_view, kFieldCount> kLabels{
    " Journal: ", " Year: ", " Pages: ",  " Volume: ",      " Author: ", " Title: ",
    " Note: ",    " URL: ",  " Number: ", " Nationality: ", " Comment: "};

constexpr std::array kTitleTypes{"BOOKLET"sv, "MANUAL"sv, "STANDARD"sv};
constexpr std::array kElectronicTypes{"ELECTRONIC"sv};
constexpr std::array kTitleYearTypes{"PERIODICAL"sv, "PROCEEDINGS"sv};
constexpr std::array kPatentTypes{"PATENT"sv};
constexpr std::array kMiscTypes{"MISC"sv};
constexpr std::array kOtherTypes{"OTHER"sv};

constexpr std::array kTitle{Field::kTitle};
constexpr std::array kUrl{Field::kUrl};
constexpr std::array kTitleYear{Field::kTitle, Field::kYear};
constexpr std::array kPatent{Field::kNationality, Field::kNumber, Field::kYear};
constexpr std::array kNote{Field::kNote};

// Compare

constexpr std::array kCompareAuthorTitleTypes{
    "BOOK"sv,   "INCOLLECTION"sv, "INPROCEEDINGS"sv, "CONFERENCE"sv,   "UNPUBLISHED"sv,
    "INBOOK"sv, "TECHREPORT"sv,   "PHDTHESIS"sv,     "MASTERTHESIS"sv, "PROCEEDINGSPAPER"sv};
constexpr std::array kCompareArticleTypes{"ARTICLE"sv, "MEETINGABSTRACT"sv, "EDITORIALMATERIAL"sv,
                                          "REVIEW"sv, "LETTER"sv};
constexpr std::array kAuthorTitle{Field::kAuthor, Field::kTitle};
constexpr std::array kCompareArticle{Field::kVolume, Field::kPages, Field::kJournal, Field::kYear};
constexpr std::array kComment{Field::kComment};

constexpr std::string_view kStoredForSecurity =
    "     For security, the BibTeX entry is stored in %s.\n\n";
constexpr std::string_view kStored = "     The BibTeX entry is stored in %s.\n\n";
constexpr std::string_view kMarkedAsMissing = "     The BibTeX entry is marked as missing.\n";

constexpr std::string_view kExactOfType = "%s - Exactly the same : %s and %s\n";
constexpr std::string_view kProbableOfType = "%s - Probably the same : %s and %s\n";

// What most groups do.
constexpr Verdict Missing(std::string_view headline) {
  return {.headline = headline,
          .closing = kStoredForSecurity,
          .counted = Counted::kExact,
          .stops = true};
}
constexpr Verdict Exact(std::string_view headline) {
  return {.headline = headline, .closing = kStored, .counted = Counted::kExact, .stops = true};
}
constexpr Verdict Differs(std::string_view headline) {
  return {.headline = headline,
          .closing = kMarkedAsMissing,
          .counted = Counted::kNothing,
          .stops = false};
}
constexpr Verdict Probable(std::string_view headline) {
  return {.headline = headline, .closing = kStored, .counted = Counted::kProbable, .stops = true};
}

// Clean doubles

constexpr std::array kDoublesAuthorTitleYearTypes{
    "BOOK"sv,   "INCOLLECTION"sv, "INPROCEEDINGS"sv, "CONFERENCE"sv,  "UNPUBLISHED"sv,
    "INBOOK"sv, "TECHREPORT"sv,   "PHDTHESIS"sv,     "MASTERTHESIS"sv};
constexpr std::array kDoublesArticleTypes{"ARTICLE"sv};
constexpr std::array kAuthorTitleYear{Field::kAuthor, Field::kTitle, Field::kYear};
constexpr std::array kDoublesArticle{Field::kJournal, Field::kVolume, Field::kYear, Field::kPages};

constexpr std::string_view kProbableWithBibitem = "Probably the same: %s %s\n";
constexpr std::string_view kBibitemStays = "     Bibitem %s stays, item %s out\n\n";
constexpr std::string_view kProbableDouble = "Probably the same : %s and %s\n";

template <typename Rules>
auto FindRule(const Rules& rules, std::string_view type) {
  TypeRule<typename Rules::value_type> found;
  for (const auto& rule : rules) {
    const auto at = std::find(rule.group.types.begin(), rule.group.types.end(), type);
    if (at == rule.group.types.end()) continue;
    found = {&rule, *at};
    break;
  }
  return found;
}

void WriteDetail(OutputFile& log, std::string_view start, const TypeGroup& group,
                 const ComparedValues& values) {
  log.Write(start);
  for (std::size_t i = 0; i < values.count; ++i) {
    log.Write({kLabels[static_cast<std::size_t>(group.compared[i])], values.values[i]});
  }
  log.Write(group.detail_end);
}

template <typename Get>
ComparedValues Collect(const TypeGroup& group, const EntryRecord& entry, Get get) {
  ComparedValues compared;
  for (const Field field : group.compared) compared.values[compared.count++] = get(entry[field]);
  return compared;
}

/// Of a value over 64 KiB only both ends and the size count: values that never close reach to the
/// end of the library, and there may be one for each entry. Of other values so long a library of
/// 20 MB holds 300, too few for comparing them to matter.
std::size_t HashOf(std::string_view value) {
  constexpr std::size_t kEnd = std::size_t{1} << 15;
  if (value.size() <= 2 * kEnd) return KeyedHash(value);
  return KeyedHash(value.substr(0, kEnd)) + 31 * KeyedHash(value.substr(value.size() - kEnd)) +
         value.size();
}

}  // namespace

const std::array<CompareRule, 8> kCompareRules{{
    {.group = {.types = kCompareAuthorTitleTypes, .compared = kAuthorTitle, .detail_end = "\n"},
     .missing = Missing("%s - One of the two entries (%s and %s)\n"
                        "does not have one of the following tags: author or title\n\n"),
     .exact = Exact(kExactOfType),
     .differs = Differs("%s - Same item (%s) but not the same tags (author and title)\n"),
     .probable = Probable(kProbableOfType)},
    // The type is shown as "ARTICLE" whatever it is, except where the contents differ.
    {.group = {.types = kCompareArticleTypes, .compared = kCompareArticle, .detail_end = "\n"},
     .missing =
         Missing("ARTICLE - One of the two entries (%s and %s)\n"
                 "does not have one of the following tags: volume, pages, journal or year\n\n"),
     .exact = Exact("ARTICLE - Exactly the same : %s and %s\n"),
     .differs =
         Differs("%s - Same item (%s) but not the same tags (volume, pages, journal and year)\n"),
     .probable = Probable("ARTICLE - Probably the same : %s and %s\n")},
    {.group = {.types = kTitleTypes, .compared = kTitle, .detail_end = "\n"},
     .missing = Missing("%s - One of the two entries (%s and %s)\n"
                        "does not have the following tag: title\n\n"),
     .exact = Exact(kExactOfType),
     .differs = Differs("%s - Same item (%s) but not the same tag (title)\n"),
     .probable = Probable(kProbableOfType)},
    // A probable match is left out of the count.
    {.group = {.types = kElectronicTypes, .compared = kUrl, .detail_end = "\n"},
     .missing = Missing("%s - One of the two entries (%s and %s)\n"
                        "does not have the following tag: url\n\n"),
     .exact = Exact(kExactOfType),
     .differs = Differs("%s - Same item (%s) but not the same tag (url)\n"),
     .probable = {.headline = kProbableOfType,
                  .closing = kStored,
                  .counted = Counted::kNothing,
                  .stops = true}},
    {.group = {.types = kTitleYearTypes, .compared = kTitleYear, .detail_end = "\n"},
     .missing = Missing("%s - One of the two entries (%s and %s)\n"
                        "does not have the following tags: title or year\n\n"),
     .exact = Exact(kExactOfType),
     .differs = Differs("%s - Same item (%s) but not the same tags (title and year)\n"),
     .probable = Probable(kProbableOfType)},
    {.group = {.types = kPatentTypes, .compared = kPatent, .detail_end = "\n"},
     .missing = Missing("PATENT - One of the two entries (%s and %s)\n"
                        "does not have the following tags: nationality, number, year\n\n"),
     .exact = Exact("PATENT - Exactly the same : %s and %s\n"),
     .differs =
         Differs("%s - Same item (%s) but not the same tags (nationality, number and year)\n"),
     .probable = Probable("PATENT - Probably the same : %s and %s\n")},
    {.group = {.types = kMiscTypes, .compared = kNote, .detail_end = "\n"},
     .missing = Missing("MISC - One of the two entries (%s and %s)\n"
                        "does not have the following tag: note\n\n"),
     .exact = Exact("MISC - Exactly the same : %s and %s\n"),
     .differs = Differs("%s - Same item (%s) but not the same tag (note)\n"),
     .probable = Probable("MISC - Probably the same : %s and %s\n")},
    // Shows no tags, and a match does not end the search: the entry is counted and may still be
    // missing.
    {.group = {.types = kOtherTypes, .compared = kComment, .detail_end = ""},
     .missing =
         Missing("OTHER - One of the two entries (%s and %s)\ndoes not have the tag comment\n\n"),
     .exact = {.headline = "OTHER - Exactly the same : %s and %s\n",
               .closing = "",
               .counted = Counted::kExact,
               .stops = false},
     .differs = Differs("OTHER - Same item (%s) but not the same tag (comment)\n"),
     .probable = {.headline = "OTHER - Probably the same : %s and %s\n",
                  .closing = kStored,
                  .counted = Counted::kProbable,
                  .stops = false}},
}};

const std::array<DoublesRule, 8> kDoublesRules{{
    {.group = {.types = kDoublesAuthorTitleYearTypes,
               .compared = kAuthorTitleYear,
               .detail_end = "\n"},
     .same_key_note = "",
     .probable = kProbableWithBibitem,
     .closing = kBibitemStays,
     .closing_keys = ClosingKeys::kLaterThenEarlier},
    {.group = {.types = kDoublesArticleTypes, .compared = kDoublesArticle, .detail_end = "\n"},
     .same_key_note = "",
     .probable = kProbableWithBibitem,
     .closing = kBibitemStays,
     .closing_keys = ClosingKeys::kEarlierThenLater},
    {.group = {.types = kTitleTypes, .compared = kTitle, .detail_end = " \n"},
     .same_key_note = "",
     .probable = kProbableWithBibitem,
     .closing = kBibitemStays,
     .closing_keys = ClosingKeys::kLaterThenEarlier},
    {.group = {.types = kElectronicTypes, .compared = kUrl, .detail_end = " \n"},
     .same_key_note = "",
     .probable = kProbableDouble,
     .closing = kDoublesExactClosing,
     .closing_keys = ClosingKeys::kNone},
    {.group = {.types = kMiscTypes, .compared = kNote, .detail_end = " \n"},
     .same_key_note = "",
     .probable = kProbableDouble,
     .closing = kDoublesExactClosing,
     .closing_keys = ClosingKeys::kNone},
    {.group = {.types = kTitleYearTypes, .compared = kTitleYear, .detail_end = "\n"},
     .same_key_note = "",
     .probable = kProbableDouble,
     .closing = kDoublesExactClosing,
     .closing_keys = ClosingKeys::kNone},
    {.group = {.types = kPatentTypes, .compared = kPatent, .detail_end = "\n"},
     .same_key_note = "",
     .probable = kProbableDouble,
     .closing = kDoublesExactClosing,
     .closing_keys = ClosingKeys::kNone},
    {.group = {.types = kOtherTypes, .compared = {}, .detail_end = ""},
     .same_key_note =
         "............. The item (@OTHER) names are equal (%s and %s), but not the content.\n",
     .probable = "",
     .closing = "",
     .closing_keys = ClosingKeys::kNone},
}};

bool ComparedValues::Complete() const {
  const auto end = values.begin() + static_cast<std::ptrdiff_t>(count);
  return std::none_of(values.begin(), end, [](std::string_view value) { return value.empty(); });
}

ComparedValues ComparedValuesOf(const TypeGroup& group, const EntryRecord& entry) {
  return Collect(group, entry, [](const FieldValue& value) { return value.Text(); });
}

ComparedValues KeepComparedValues(const TypeGroup& group, const EntryRecord& entry,
                                  TextStore& store) {
  return Collect(group, entry, [&store](const FieldValue& value) { return value.Keep(store); });
}

std::size_t ContentHash(std::string_view type, const ComparedValues& values) {
  constexpr auto kMultiplier = static_cast<std::size_t>(0x9E3779B97F4A7C15);
  std::size_t hash = 0;
  for (std::size_t i = 0; i < values.count; ++i) {
    hash = hash * kMultiplier + HashOf(values.values[i]);
  }
  return hash * kMultiplier + KeyedHash(type);
}

Content JudgeContent(const ComparedValues& one, const ComparedValues& two) {
  if (!one.Complete() || !two.Complete()) return Content::kTagMissing;
  return one == two ? Content::kEqual : Content::kDifferent;
}

void WriteDetails(OutputFile& log, const TypeGroup& group, const ComparedValues& one,
                  const ComparedValues& two) {
  if (group.detail_end.empty()) return;
  WriteDetail(log, "     1.:", group, one);
  WriteDetail(log, "     2.:", group, two);
}

void WriteFormat(OutputFile& log, std::string_view format,
                 std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    const std::size_t place = format.find("%s");
    if (place == std::string_view::npos) break;
    log.Write({format.substr(0, place), text});
    format.remove_prefix(place + 2);
  }
  log.Write(format);
}

TypeRule<CompareRule> CompareRuleFor(std::string_view type) {
  return FindRule(kCompareRules, type);
}

TypeRule<DoublesRule> DoublesRuleFor(std::string_view type) {
  return FindRule(kDoublesRules, type);
}

}  // namespace tarvel
