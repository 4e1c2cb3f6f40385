// SPDX-License-Identifier: MIT
#include "ops/journals/journal_table.h"

#include <algorithm>
#include <array>

#include "core/ascii.h"
#include "core/keyed_hash.h"
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

/// Reads on after the next line with the marker; false at the end of the list.
bool SkipAfter(LineStream& lines, std::string_view marker) {
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

constexpr std::size_t kBuckets = 1024;

/// The bucket of a name, by the first and the last byte of its search key.
std::size_t BucketOf(std::string_view name) {
  const auto counts = [](char byte) { return !kLeftOut[static_cast<unsigned char>(byte)]; };
  const auto first = std::find_if(name.begin(), name.end(), counts);
  if (first == name.end()) return 0;
  const auto last = std::find_if(name.rbegin(), name.rend(), counts);
  const auto low_bits = [](char byte) { return static_cast<std::size_t>(ToUpper(byte)) & 31; };
  return low_bits(*first) * 32 + low_bits(*last);
}

}  // namespace

void SqueezeJournalName(std::string_view source, std::string& destination) {
  destination.clear();
  for (const char byte : source) {
    if (!kLeftOut[static_cast<unsigned char>(byte)]) destination += byte;
  }
}

JournalListFault JournalTable::Read() {
  if (!SkipAfter(lines_, kListStart)) return JournalListFault::kNoStart;
  while (journals_.size() < most_ && SkipAfter(lines_, kJournalStart)) {
    const JournalListFault fault = ReadBlock();
    if (fault != JournalListFault::kNone) return fault;
  }
  BuildIndex();
  return JournalListFault::kNone;
}

/// Reads a journal from the line after its start marker on.
JournalListFault JournalTable::ReadBlock() {
  Journal journal;
  if (!ReadName(lines_, journal.full_name)) return JournalListFault::kNoName;
  if (!ReadName(lines_, journal.abbreviation)) return JournalListFault::kNoAbbreviation;
  if (!SkipAfter(lines_, kVariations)) return JournalListFault::kNoVariations;
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

void JournalTable::BuildIndex() {
  buckets_.resize(kBuckets);
  for (const auto name : {&Journal::abbreviation, &Journal::full_name}) {
    for (std::size_t i = 0; i < journals_.size() && !(journals_[i].*name).empty(); ++i) {
      Add(journals_[i].*name, i);
    }
  }
  for (const JournalMatch& variation : variations_) Add(variation.text, variation.index);
}

void JournalTable::Add(std::string_view text, std::size_t index) {
  buckets_[BucketOf(text)].names.push_back({text, index});
}

/// The order of the names is the order of the search: of equal search keys the first counts.
void JournalTable::IndexBucket(Bucket& bucket) {
  for (std::size_t number = 0; number < bucket.names.size(); ++number) {
    const std::string key = SearchKeyOf(bucket.names[number].text);
    bucket.index.FindOrPut(KeyedHash(key), number, [&](std::size_t other) {
      return SearchKeyOf(bucket.names[other].text) == key;
    });
  }
  bucket.is_indexed = true;
}

std::optional<JournalMatch> JournalTable::FindJournal(std::string_view value) const {
  Bucket& bucket = buckets_[BucketOf(value)];
  if (!bucket.is_indexed) IndexBucket(bucket);
  const std::string key = SearchKeyOf(value);
  const auto found = bucket.index.Find(KeyedHash(key), [&](std::size_t other) {
    return SearchKeyOf(bucket.names[other].text) == key;
  });
  return found ? std::optional(bucket.names[*found]) : std::nullopt;
}

}  // namespace tarvel
