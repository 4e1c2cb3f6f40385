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

/// Bytes of a list for each variation and each journal, on the small side. Vectors that grow by
/// doubling took a fifth of the time of a small library.
constexpr std::size_t kUsualVariation = 64;
constexpr std::size_t kUsualJournal = 200;

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

/// What names are compared by.
void MakeSearchKey(std::string_view name, std::string& key) {
  SqueezeJournalName(name, key);
  StringToUpper(key);
}

/// Whether the search key of the name is this one.
bool HasSearchKey(std::string_view name, std::string_view key) {
  std::size_t matched = 0;
  for (const char byte : name) {
    if (kLeftOut[static_cast<unsigned char>(byte)]) continue;
    if (matched == key.size() || ToUpper(byte) != key[matched]) return false;
    ++matched;
  }
  return matched == key.size();
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
  destination.resize(source.size());
  std::size_t size = 0;
  for (const char byte : source) {
    destination[size] = byte;  // overwritten by the next one if it is left out
    if (!kLeftOut[static_cast<unsigned char>(byte)]) ++size;
  }
  destination.resize(size);
}

JournalListFault JournalTable::Read() {
  if (!SkipAfter(lines_, kListStart)) return JournalListFault::kNoStart;
  variations_.reserve(lines_.Bytes().size() / kUsualVariation);
  journals_.reserve(lines_.Bytes().size() / kUsualJournal);
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
  const std::size_t count = journals_.size();
  buckets_.resize(kBuckets);
  next_.resize(2 * count + variations_.size(), kNoName);
  // From the last name on, so that each chain leads through the names in their order.
  Link(2 * count, next_.size());
  const auto named = [&](auto name) {
    const auto empty = std::find_if(journals_.begin(), journals_.end(),
                                    [&](const Journal& one) { return (one.*name).empty(); });
    return static_cast<std::size_t>(empty - journals_.begin());
  };
  Link(count, count + named(&Journal::full_name));
  Link(0, named(&Journal::abbreviation));
}

JournalMatch JournalTable::NameAt(std::size_t number) const {
  const std::size_t count = journals_.size();
  if (number < count) return {journals_[number].abbreviation, number};
  if (number < 2 * count) return {journals_[number - count].full_name, number - count};
  return variations_[number - 2 * count];
}

/// Puts names in front of those of their buckets.
void JournalTable::Link(std::size_t begin, std::size_t end) {
  for (std::size_t number = end; number-- > begin;) {
    Bucket& bucket = buckets_[BucketOf(NameAt(number).text)];
    next_[number] = bucket.first;
    bucket.first = static_cast<NameNumber>(number);
  }
}

/// The order of the names is the order of the search: of equal search keys the first counts.
void JournalTable::IndexBucket(Bucket& bucket) const {
  auto& index = bucket.index.emplace();
  for (NameNumber number = bucket.first; number != kNoName; number = next_[number]) {
    MakeSearchKey(NameAt(number).text, key_);
    index.FindOrPut(KeyedHash(key_), number,
                    [&](std::size_t other) { return HasSearchKey(NameAt(other).text, key_); });
  }
}

std::optional<JournalMatch> JournalTable::FindJournal(std::string_view value) const {
  Bucket& bucket = buckets_[BucketOf(value)];
  if (!bucket.index) IndexBucket(bucket);
  MakeSearchKey(value, key_);
  const auto found = bucket.index->Find(
      KeyedHash(key_), [&](std::size_t other) { return HasSearchKey(NameAt(other).text, key_); });
  return found ? std::optional(NameAt(*found)) : std::nullopt;
}

}  // namespace tarvel
