// SPDX-License-Identifier: MIT
#include "ops/journals/journal_table.h"

#include <array>

#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::string_view kListStart = "START";
constexpr std::string_view kJournalStart = "******* Journal-start *******";
constexpr std::string_view kVariations = "******* Variations    *******";
constexpr std::string_view kJournalEnd = "******* Journal-end   *******";

constexpr std::array<bool, 256> kLeftOut = [] {
  std::array<bool, 256> left_out{};
  for (const char byte : std::string_view(" \t.:;{}\\")) {
    left_out[static_cast<unsigned char>(byte)] = true;
  }
  return left_out;
}();

bool Contains(std::string_view line, std::string_view marker) {
  return line.find(marker) != std::string_view::npos;
}

/// Reads on behind the next line with the marker; false at the end of the list.
bool SkipBehind(LineStream& lines, std::string_view marker) {
  while (const auto line = lines.ReadLine(limits::kPairLine)) {
    if (Contains(*line, marker)) return true;
  }
  return false;
}

std::string_view CutLastByte(std::string_view line) { return line.substr(0, line.size() - 1); }

/// Reads the next line as a name; false at the end of the list.
bool ReadName(LineStream& lines, std::string_view& name) {
  const auto line = lines.ReadLine(limits::kPairLine);
  if (!line) return false;
  name = CutLastByte(*line);
  return true;
}

std::string SearchKeyOf(std::string_view name) {
  std::string key;
  SqueezeJournalName(name, key);
  StringToUpper(key);
  return key;
}

}  // namespace

void SqueezeJournalName(std::string_view source, std::string& destination) {
  destination.clear();
  for (const char byte : source) {
    if (!kLeftOut[static_cast<unsigned char>(byte)]) destination += byte;
  }
}

JournalListFault JournalTable::Read() {
  if (!SkipBehind(lines_, kListStart)) return JournalListFault::kNoStart;
  while (journals_.size() < most_ && SkipBehind(lines_, kJournalStart)) {
    const JournalListFault fault = ReadBlock();
    if (fault != JournalListFault::kNone) return fault;
  }
  BuildIndex();
  return JournalListFault::kNone;
}

/// Reads a journal from the line behind its start marker on.
JournalListFault JournalTable::ReadBlock() {
  Journal journal;
  if (!ReadName(lines_, journal.full_name)) return JournalListFault::kNoName;
  if (!ReadName(lines_, journal.abbreviation)) return JournalListFault::kNoAbbreviation;
  if (!SkipBehind(lines_, kVariations)) return JournalListFault::kNoVariations;
  ReadVariations(journal);
  journals_.push_back(journal);
  return JournalListFault::kNone;
}

void JournalTable::ReadVariations(Journal& journal) {
  bool searched = true;
  while (const auto line = lines_.ReadLine(limits::kPairLine)) {
    if (Contains(*line, kJournalEnd)) return;
    const std::string_view name = CutLastByte(*line);
    searched = searched && journal.variations < kSearchedVariations && !name.empty();
    if (searched) variations_.push_back({name, journals_.size()});
    ++journal.variations;
  }
}

/// The order of the insertions is the order of the search: of equal keys the first stays.
void JournalTable::BuildIndex() {
  found_by_key_.reserve(2 * journals_.size() + variations_.size());
  for (const auto name : {&Journal::abbreviation, &Journal::full_name}) {
    for (std::size_t i = 0; i < journals_.size() && !(journals_[i].*name).empty(); ++i) {
      Add(journals_[i].*name, i);
    }
  }
  for (const JournalMatch& variation : variations_) Add(variation.text, variation.index);
}

void JournalTable::Add(std::string_view text, std::size_t index) {
  found_by_key_.try_emplace(SearchKeyOf(text), JournalMatch{text, index});
}

std::optional<JournalMatch> JournalTable::FindJournal(std::string_view value) const {
  const auto found = found_by_key_.find(SearchKeyOf(value));
  if (found == found_by_key_.end()) return std::nullopt;
  return found->second;
}

}  // namespace tarvel
