// SPDX-License-Identifier: MIT
#include "ops/prepare/bib_strings.h"

#include <array>
#include <utility>

#include "ops/prepare/letters.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

constexpr std::array<std::pair<std::string_view, std::string_view>, 12> kMonths{{
    {"jan"sv, "January"sv},
    {"feb"sv, "February"sv},
    {"mar"sv, "March"sv},
    {"apr"sv, "April"sv},
    {"may"sv, "May"sv},
    {"jun"sv, "June"sv},
    {"jul"sv, "July"sv},
    {"aug"sv, "August"sv},
    {"sep"sv, "September"sv},
    {"oct"sv, "October"sv},
    {"nov"sv, "November"sv},
    {"dec"sv, "December"sv},
}};

}  // namespace

BibStrings::BibStrings() {
  for (const auto& [name, text] : kMonths) Define(name, text, 0);
}

void BibStrings::Define(std::string_view name, std::string_view text, std::size_t offset) {
  definitions_[Lower(name)].push_back({offset, std::string(text)});
}

const std::string* BibStrings::Find(std::string_view name, std::size_t offset) const {
  const auto found = definitions_.find(Lower(name));
  if (found == definitions_.end()) return nullptr;
  const std::vector<Definition>& definitions = found->second;
  const auto after =
      std::partition_point(definitions.begin(), definitions.end(),
                           [=](const Definition& one) { return one.offset <= offset; });
  return after == definitions.begin() ? nullptr : &(after - 1)->text;
}

}  // namespace tarvel
