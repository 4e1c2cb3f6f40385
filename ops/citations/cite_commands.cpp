// SPDX-License-Identifier: MIT
#include "ops/citations/cite_commands.h"

#include <algorithm>
#include <array>

#include "core/ascii.h"

namespace tarvel {

namespace {

struct CiteRow {
  std::string_view name;
  CiteShape shape = CiteShape::kList;
};

/// The commands of LaTeX, natbib (with its bibentry), biblatex and csquotes. ORDER: by name, as
/// bytes.
constexpr auto kCommands = std::to_array<CiteRow>({
    {"Autocite"},
    {"Autocites", CiteShape::kLists},
    {"Avolcite", CiteShape::kVolume},
    {"Avolcites", CiteShape::kVolumeLists},
    {"Cite"},
    {"Citealp"},
    {"Citealt"},
    {"Citeauthor"},
    {"Citep"},
    {"Cites", CiteShape::kLists},
    {"Citet"},
    {"Footcite"},
    {"Footcites", CiteShape::kLists},
    {"Footcitetext"},
    {"Footcitetexts", CiteShape::kLists},
    {"Ftvolcite", CiteShape::kVolume},
    {"Fvolcite", CiteShape::kVolume},
    {"Fvolcites", CiteShape::kVolumeLists},
    {"Notecite"},
    {"Parencite"},
    {"Parencites", CiteShape::kLists},
    {"Pnotecite"},
    {"Pvolcite", CiteShape::kVolume},
    {"Pvolcites", CiteShape::kVolumeLists},
    {"Smartcite"},
    {"Smartcites", CiteShape::kLists},
    {"Supercite"},
    {"Svolcite", CiteShape::kVolume},
    {"Svolcites", CiteShape::kVolumeLists},
    {"Textcite"},
    {"Textcites", CiteShape::kLists},
    {"Tvolcite", CiteShape::kVolume},
    {"Tvolcites", CiteShape::kVolumeLists},
    {"Volcite", CiteShape::kVolume},
    {"Volcites", CiteShape::kVolumeLists},
    {"autocite"},
    {"autocites", CiteShape::kLists},
    {"avolcite", CiteShape::kVolume},
    {"avolcites", CiteShape::kVolumeLists},
    {"bibentry"},
    {"blockcquote"},
    {"cite"},
    {"citealp"},
    {"citealt"},
    {"citeauthor"},
    {"citedate"},
    {"citefield"},
    {"citefullauthor"},
    {"citelist"},
    {"citename"},
    {"citenum"},
    {"citep"},
    {"citepalias"},
    {"cites", CiteShape::kLists},
    {"citet"},
    {"citetalias"},
    {"citetitle"},
    {"citeurl"},
    {"citeyear"},
    {"citeyearpar"},
    {"displaycquote"},  // an environment
    {"fnotecite"},
    {"footcite"},
    {"footcites", CiteShape::kLists},
    {"footcitetext"},
    {"footcitetexts", CiteShape::kLists},
    {"footfullcite"},
    {"footfullcites", CiteShape::kLists},
    {"foreignblockcquote", CiteShape::kVolume},
    {"foreigndisplaycquote", CiteShape::kVolume},  // an environment
    {"foreigntextcquote", CiteShape::kVolume},
    {"ftvolcite", CiteShape::kVolume},
    {"ftvolcites", CiteShape::kVolumeLists},
    {"fullcite"},
    {"fullcites", CiteShape::kLists},
    {"fvolcite", CiteShape::kVolume},
    {"fvolcites", CiteShape::kVolumeLists},
    {"hybridblockcquote", CiteShape::kVolume},
    {"hyphenblockcquote", CiteShape::kVolume},
    {"hyphendisplaycquote", CiteShape::kVolume},  // an environment
    {"hyphentextcquote", CiteShape::kVolume},
    {"nocite"},
    {"notecite"},
    {"onlinecite"},
    {"parencite"},
    {"parencites", CiteShape::kLists},
    {"pnotecite"},
    {"pvolcite", CiteShape::kVolume},
    {"pvolcites", CiteShape::kVolumeLists},
    {"shortcites"},
    {"smartcite"},
    {"smartcites", CiteShape::kLists},
    {"supercite"},
    {"supercites", CiteShape::kLists},
    {"svolcite", CiteShape::kVolume},
    {"svolcites", CiteShape::kVolumeLists},
    {"textcite"},
    {"textcites", CiteShape::kLists},
    {"textcquote"},
    {"tvolcite", CiteShape::kVolume},
    {"tvolcites", CiteShape::kVolumeLists},
    {"volcite", CiteShape::kVolume},
    {"volcites", CiteShape::kVolumeLists},
});

static_assert(std::is_sorted(kCommands.begin(), kCommands.end(),
                             [](const CiteRow& a, const CiteRow& b) { return a.name < b.name; }));

const CiteRow* FindKnown(std::string_view name) {
  const auto* const found = std::lower_bound(
      kCommands.begin(), kCommands.end(), name,
      [](const CiteRow& row, std::string_view wanted) { return row.name < wanted; });
  return found != kCommands.end() && found->name == name ? found : nullptr;
}

}  // namespace

CiteCommands::CiteCommands(const std::vector<std::string>& names) : names_(names) {
  names_.emplace_back("cite");
  all_ = std::erase(names_, "all") != 0;  // it names no command: "\all" cites nothing
}

std::optional<CiteShape> CiteCommands::Find(std::string_view name) const {
  const CiteRow* known = FindKnown(name);
  const bool is_read =
      (all_ && known) || std::find(names_.begin(), names_.end(), name) != names_.end();
  if (!is_read) return std::nullopt;
  return known ? known->shape : CiteShape::kList;
}

bool IsCommandName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(),
                                      [](char byte) { return IsLetter(byte) || byte == '@'; });
}

std::vector<std::string_view> KnownCiteCommands() {
  std::vector<std::string_view> names;
  for (const CiteRow& row : kCommands) names.push_back(row.name);
  return names;
}

}  // namespace tarvel
