// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "app/settings.h"
#include "app/tags.h"

// What the preference dialogs show, from top to bottom.

namespace tarvel {

/// The name of one flag of the settings: a field, or the flag of one tag.
class FlagName {
 public:
  constexpr FlagName() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): tables name a field by its pointer alone
  constexpr FlagName(Flag Settings::*field) : field_(field) {}
  static constexpr FlagName OfTag(std::size_t index) {
    FlagName name;
    name.tag_ = index;
    return name;
  }
  constexpr Flag& In(Settings& settings) const {
    return field_ ? settings.*field_ : settings.RemoveTag[tag_];
  }

 private:
  Flag Settings::*field_ = nullptr;
  std::size_t tag_ = 0;
};

/// A radio button. `choose` sets its flag and clears the others of its group.
struct RadioRow {
  std::string_view label;
  Flag Settings::*flag;
  void (*choose)(Settings&, Flag Settings::*);
};

/// A check box and the flag that it shows and writes.
struct CheckRow {
  std::string_view label;
  FlagName flag;
};

/// A heading with what stands below it: one group of radio buttons, then check boxes in columns of
/// `kColumnHeight`.
struct PreferenceSection {
  std::string_view heading;
  std::span<const RadioRow> radios;
  std::span<const CheckRow> check_boxes;
  std::string_view description;  // what precedes a check box's label in its tooltip; empty: none
};

inline constexpr std::size_t kColumnHeight = 6;

template <const auto& kGroup>
void ChooseIn(Settings& settings, Flag Settings::*chosen) {
  Choose(settings, kGroup, chosen);
}

inline constexpr std::array<RadioRow, 6> kStyleRows{{
    {"American Physical Society", &Settings::StyleAPS, &ChooseIn<kStyleFlags>},
    {"American Chemical Society", &Settings::StyleACS, &ChooseIn<kStyleFlags>},
    {"Institute of Physics", &Settings::StyleIOP, &ChooseIn<kStyleFlags>},
    {"Nature", &Settings::StyleNature, &ChooseIn<kStyleFlags>},
    {"Wiley", &Settings::StyleWiley, &ChooseIn<kStyleFlags>},
    {"Springer_Comp_Sci", &Settings::StyleSpringerCompSci, &ChooseIn<kStyleFlags>},
}};

inline constexpr std::array<RadioRow, 2> kPagesRows{{
    {"Range of pages", &Settings::PagesRange, &ChooseIn<kPagesFlags>},
    {"Only first page", &Settings::PagesFirstOnly, &ChooseIn<kPagesFlags>},
}};

inline constexpr std::array<RadioRow, 2> kJournalRows{{
    {"Abbreviation", &Settings::JournalAbbreviated, &ChooseIn<kJournalFlags>},
    {"Full names", &Settings::JournalFullNames, &ChooseIn<kJournalFlags>},
}};

/// Text shows all of these, Extract only the first.
inline constexpr std::array<CheckRow, 3> kReferenceRows{{
    {"Title ", &Settings::PrintTitle},  // the blank at the end is part of the label
    {"Print name of bibitem?", &Settings::PrintBibitem},
    {"Use LaTeX code?", &Settings::UseLaTeXCode},
}};

inline constexpr std::array<CheckRow, 1> kOwnListRows{{
    {"Load own .tvl file", &Settings::UseOwnJournalFile},
}};

inline constexpr std::array<CheckRow, 3> kCleanOptionRows{{
    {"Remove empty entries (recommended)", &Settings::RemoveEmptyEntries},
    {"Remove journal strings", &Settings::RemoveJournalStrings},
    {"Remove JabRef structure", &Settings::RemoveJabRefStructure},
}};

/// The tags in the order of their check boxes, a column a line. The order of `kTagRules` is that of
/// their matching.
inline constexpr std::array<std::string_view, kTagCount> kTagsInDialog{
    "author",    "title",    "journal",     "year",      "volume",       "pages",       "month",
    "abstract",  "note",     "owner",       "timestamp", "url",          "comment",     "eid",
    "number",    "keywords", "crossref",    "review",    "doi",          "file",        "editor",
    "publisher", "address",  "edition",     "school",    "series",       "citeseerurl", "type",
    "booktitle", "chapter",  "nationality", "yearfiled", "organization", "institution"};

static_assert(
    [] {
      std::array<int, kTagCount + 1> uses{};
      for (const std::string_view tag : kTagsInDialog) ++uses[TagIndex(tag)];
      for (std::size_t tag = 0; tag < kTagCount; ++tag) {
        if (uses[tag] != 1) return false;
      }
      return true;
    }(),
    "every tag has one check box");

namespace detail {

constexpr std::array<CheckRow, kTagCount> MakeTagRows() {
  std::array<CheckRow, kTagCount> rows{};
  for (std::size_t i = 0; i < kTagCount; ++i) {
    const std::size_t tag = TagIndex(kTagsInDialog[i]);
    rows[i] = {kTagRules.at(tag).label, FlagName::OfTag(tag)};
  }
  return rows;
}

}  // namespace detail

inline constexpr std::array<CheckRow, kTagCount> kTagRows = detail::MakeTagRows();

inline constexpr std::array<PreferenceSection, 2> kExtractSections{{
    {"Journal Style", kStyleRows, {}, {}},
    {"Options", kPagesRows, std::span(kReferenceRows).first(1), {}},
}};
inline constexpr std::array<PreferenceSection, 2> kTextSections{{
    {"Journal Style", kStyleRows, {}, {}},
    {"Options", kPagesRows, kReferenceRows, {}},
}};
inline constexpr std::array<PreferenceSection, 2> kJournalSections{{
    {"Journal Style", kJournalRows, {}, {}},
    {"Options", {}, kOwnListRows, {}},
}};
inline constexpr std::array<PreferenceSection, 2> kCleanSections{{
    {"Remove tags", {}, kTagRows, "Remove tag: "},
    {"Options", {}, kCleanOptionRows, {}},
}};

}  // namespace tarvel
