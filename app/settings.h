// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

#include "app/tags.h"

namespace tarvel {

using Flag = std::int32_t;  // 0 or 1

/// The preference flags. The preference dialogs and the batch program's options write them, the
/// operations read them; nothing of them outlives the process.
struct Settings {
  // The journal style: exactly one is set.
  Flag StyleAPS = 1;
  Flag StyleACS = 0;
  Flag StyleIOP = 0;
  Flag StyleNature = 0;
  Flag StyleWiley = 0;
  Flag StyleSpringerCompSci = 0;

  // At start neither is set, and only the first page is printed.
  Flag PagesRange = 0;
  Flag PagesFirstOnly = 0;  // kept in step with PagesRange; no operation reads it

  Flag PrintTitle = 1;
  Flag PrintBibitem = 0;
  Flag UseLaTeXCode = 0;

  Flag JournalAbbreviated = 0;
  Flag JournalFullNames = 1;
  Flag UseOwnJournalFile = 0;

  std::array<Flag, kTagCount> RemoveTag = [] {  // ORDER: kTagRules
    std::array<Flag, kTagCount> flags{};
    for (std::size_t i = 0; i < kTagCount; ++i) flags[i] = kTagRules[i].removed_at_start;
    return flags;
  }();
  Flag RemoveEmptyEntries = 1;
  Flag RemoveJournalStrings = 1;
  Flag RemoveJabRefStructure = 1;  // shown and kept in step; no operation reads it

  Flag AppendRenamed = 0;  // of the batch program only
};

/// Flags of which at most one is set.
template <std::size_t N>
using FlagGroup = std::array<Flag Settings::*, N>;

inline constexpr FlagGroup<6> kStyleFlags{&Settings::StyleAPS,   &Settings::StyleACS,
                                          &Settings::StyleIOP,   &Settings::StyleNature,
                                          &Settings::StyleWiley, &Settings::StyleSpringerCompSci};
inline constexpr FlagGroup<2> kPagesFlags{&Settings::PagesRange, &Settings::PagesFirstOnly};
inline constexpr FlagGroup<2> kJournalFlags{&Settings::JournalAbbreviated,
                                            &Settings::JournalFullNames};

/// Sets the chosen flag of a group to 1 and all others of the group to 0.
template <std::size_t N>
void Choose(Settings& settings, const FlagGroup<N>& group, Flag Settings::*chosen) {
  for (const auto flag : group) settings.*flag = 0;
  settings.*chosen = 1;
}

}  // namespace tarvel
