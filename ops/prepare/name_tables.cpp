// SPDX-License-Identifier: MIT
#include "ops/prepare/name_tables.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/entry_types.h"
#include "core/text_primitives.h"
#include "ops/prepare/letters.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

using Use = TagRow::Use;
constexpr bool kVerbatim = true;
constexpr bool kRenamed = true;

// Needed are the tags that operations print or compare, and those that BibTeX's own styles print.
constexpr std::array kTags{
    TagRow{"address", Use::kNeeded},
    TagRow{"annote", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"author", Use::kNeeded},
    TagRow{"authors", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"booksubtitle", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"booktitle", Use::kNeeded},
    TagRow{"chapter", Use::kNeeded},
    TagRow{"comment", Use::kNeeded},
    TagRow{"comments", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"crossref", Use::kNeeded, kVerbatim},
    TagRow{"date", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"doi", Use::kNeeded, kVerbatim},
    TagRow{"edition", Use::kNeeded},
    TagRow{"editor", Use::kNeeded},
    TagRow{"editors", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"eid", Use::kNeeded},
    TagRow{"eprint", Use::kNeeded, kVerbatim},
    TagRow{"eprinttype", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"eventtitle", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"file", Use::kOther, kVerbatim},
    TagRow{"howpublished", Use::kNeeded},
    TagRow{"institution", Use::kNeeded, !kVerbatim, kRenamed},
    TagRow{"journal", Use::kNeeded},
    TagRow{"journalsubtitle", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"journaltitle", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"key", Use::kNeeded},
    TagRow{"location", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"month", Use::kNeeded},
    TagRow{"nationality", Use::kNeeded},
    TagRow{"note", Use::kNeeded},
    TagRow{"notes", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"number", Use::kNeeded},
    TagRow{"organization", Use::kNeeded},
    TagRow{"owner", Use::kBookkeeping, kVerbatim},
    TagRow{"pages", Use::kNeeded},
    TagRow{"publisher", Use::kNeeded},
    TagRow{"school", Use::kNeeded},
    TagRow{"series", Use::kNeeded},
    TagRow{"shortjournal", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"subtitle", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"timestamp", Use::kBookkeeping, kVerbatim},
    TagRow{"title", Use::kNeeded},
    TagRow{"type", Use::kNeeded},
    TagRow{"url", Use::kNeeded, kVerbatim},
    TagRow{"urldate", Use::kOther, !kVerbatim, kRenamed},
    TagRow{"volume", Use::kNeeded},
    TagRow{"year", Use::kNeeded},
};

// The names of biblatex, as BibTeX's styles know them; and plurals that people write.
constexpr std::array kTagChanges{
    TagChange{"authors", "author"},
    TagChange{"editors", "editor"},
    TagChange{"notes", "note"},
    TagChange{"comments", "comment"},
    TagChange{"subtitle", "title", TagChange::How::kAppend},
    TagChange{"booksubtitle", "booktitle", TagChange::How::kAppend},
    TagChange{"journaltitle", "journal"},
    TagChange{"shortjournal", "journal"},
    TagChange{"journalsubtitle", "journal", TagChange::How::kAppend},
    TagChange{"eventtitle", "booktitle"},
    TagChange{"date", "year", TagChange::How::kDate},
    TagChange{"location", "address"},
    TagChange{"institution", "school", TagChange::How::kRenameInThesis},
    TagChange{"annote", "annotation"},
    TagChange{"urldate", "lastchecked"},
    TagChange{"eprinttype", "archiveprefix"},
};

constexpr std::array kPartsOfBooks{"INCOLLECTION"sv, "INPROCEEDINGS"sv, "INBOOK"sv, "CONFERENCE"sv};

// The types of biblatex and other programs, and spellings that people use.
constexpr std::array<std::pair<std::string_view, std::string_view>, 56> kTypeChanges{{
    {"mastersthesis"sv, "MASTERTHESIS"sv},
    {"mathesis"sv, "MASTERTHESIS"sv},
    {"mscthesis"sv, "MASTERTHESIS"sv},
    {"bachelorthesis"sv, "MASTERTHESIS"sv},
    {"bachelorsthesis"sv, "MASTERTHESIS"sv},
    {"bathesis"sv, "MASTERTHESIS"sv},
    {"bscthesis"sv, "MASTERTHESIS"sv},
    {"diplomathesis"sv, "MASTERTHESIS"sv},
    {"diplomthesis"sv, "MASTERTHESIS"sv},
    {"diplomarbeit"sv, "MASTERTHESIS"sv},
    {"dissertation"sv, "PHDTHESIS"sv},
    {"doctoralthesis"sv, "PHDTHESIS"sv},
    {"doctorthesis"sv, "PHDTHESIS"sv},
    {"habilthesis"sv, "PHDTHESIS"sv},
    {"candthesis"sv, "PHDTHESIS"sv},
    {"report"sv, "TECHREPORT"sv},
    {"technicalreport"sv, "TECHREPORT"sv},
    {"techrep"sv, "TECHREPORT"sv},
    {"workingpaper"sv, "TECHREPORT"sv},
    {"online"sv, "ELECTRONIC"sv},
    {"www"sv, "ELECTRONIC"sv},
    {"web"sv, "ELECTRONIC"sv},
    {"webpage"sv, "ELECTRONIC"sv},
    {"website"sv, "ELECTRONIC"sv},
    {"internet"sv, "ELECTRONIC"sv},
    {"url"sv, "ELECTRONIC"sv},
    {"collection"sv, "BOOK"sv},
    {"mvbook"sv, "BOOK"sv},
    {"mvcollection"sv, "BOOK"sv},
    {"reference"sv, "BOOK"sv},
    {"mvreference"sv, "BOOK"sv},
    {"mvproceedings"sv, "PROCEEDINGS"sv},
    {"proceeding"sv, "PROCEEDINGS"sv},
    {"inreference"sv, "INCOLLECTION"sv},
    {"suppcollection"sv, "INCOLLECTION"sv},
    {"bookinbook"sv, "INBOOK"sv},
    {"suppbook"sv, "INBOOK"sv},
    {"suppperiodical"sv, "ARTICLE"sv},
    {"inproceeding"sv, "INPROCEEDINGS"sv},
    {"conferencepaper"sv, "INPROCEEDINGS"sv},
    {"preprint"sv, "UNPUBLISHED"sv},
    {"submitted"sv, "UNPUBLISHED"sv},
    {"artwork"sv, "MISC"sv},
    {"audio"sv, "MISC"sv},
    {"bibnote"sv, "MISC"sv},
    {"commentary"sv, "MISC"sv},
    {"dataset"sv, "MISC"sv},
    {"image"sv, "MISC"sv},
    {"jurisdiction"sv, "MISC"sv},
    {"legal"sv, "MISC"sv},
    {"legislation"sv, "MISC"sv},
    {"movie"sv, "MISC"sv},
    {"music"sv, "MISC"sv},
    {"performance"sv, "MISC"sv},
    {"software"sv, "MISC"sv},
    {"video"sv, "MISC"sv},
}};

/// What in the "type" of a thesis says that it is none for a doctor's degree.
constexpr std::array kMasterWords{"MASTER"sv,   "MATHESIS"sv, "DIPLOM"sv, "MAGISTER"sv,
                                  "BACHELOR"sv, "M.SC"sv,     "MSC"sv,    "BATHESIS"sv};

}  // namespace

const TagRow* FindTag(std::string_view name) {
  const auto found = std::find_if(kTags.begin(), kTags.end(),
                                  [name](const TagRow& row) { return row.name == name; });
  return found == kTags.end() ? nullptr : &*found;
}

std::span<const TagChange> TagChanges() { return kTagChanges; }

KnownType FindKnownType(std::string_view word, std::string_view thesis_type) {
  if (const std::string_view type = FindEntryType(word); !type.empty()) return {type};
  if (EqualNoCase(word, "thesis")) {
    const bool is_masters =
        std::any_of(kMasterWords.begin(), kMasterWords.end(),
                    [=](std::string_view sign) { return ContainsNoCase(thesis_type, sign); });
    return {is_masters ? "MASTERTHESIS" : "PHDTHESIS", false};
  }
  for (const auto& [other, type] : kTypeChanges) {
    if (EqualNoCase(word, other)) return {type, false};
  }
  return {"MISC", false, false};
}

bool IsThesis(std::string_view type) { return type == "PHDTHESIS" || type == "MASTERTHESIS"; }

bool IsPartOfBook(std::string_view type) {
  return std::find(kPartsOfBooks.begin(), kPartsOfBooks.end(), type) != kPartsOfBooks.end();
}

}  // namespace tarvel
