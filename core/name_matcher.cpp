// SPDX-License-Identifier: MIT
#include "core/name_matcher.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::size_t kPiece = 3;
constexpr std::size_t kCodes = 32;

/// The lower five bits of a byte: the same for both cases of a letter.
constexpr std::size_t CodeOf(char byte) { return static_cast<unsigned char>(byte) % kCodes; }

/// How often the letters occur in English text, in a thousand letters, by their codes. Pieces of
/// rare letters are seldom met outside the names.
constexpr std::array<int, kCodes> kFrequency{50, 82, 15, 28, 43, 127, 22, 20, 61, 70, 2,
                                             8,  40, 24, 67, 75, 19,  1,  60, 63, 91, 28,
                                             10, 24, 2,  20, 1,  50,  50, 50, 50, 50};

/// How often to expect the piece at `offset` of a name.
double FrequencyOf(std::string_view name, std::size_t offset) {
  double frequency = 1;
  for (const char byte : name.substr(offset, kPiece)) frequency *= kFrequency[CodeOf(byte)] / 1e3;
  return frequency;
}

/// The offset in a name of the first of two pieces, one for each of the places that are looked at.
std::size_t BestPieces(std::string_view name) {
  std::size_t best = 0;
  double lowest = std::numeric_limits<double>::max();
  for (std::size_t offset = 0; offset + kPiece < name.size(); ++offset) {
    const double frequency = FrequencyOf(name, offset) + FrequencyOf(name, offset + 1);
    if (frequency >= lowest) continue;
    lowest = frequency;
    best = offset;
  }
  return best;
}

bool StandsAt(std::string_view text, std::size_t place, std::string_view name) {
  if (text.size() - place < name.size()) return false;
  return std::equal(name.begin(), name.end(), text.begin() + static_cast<std::ptrdiff_t>(place),
                    [](char one, char other) { return one == ToUpper(other); });
}

}  // namespace

NameMatcher::NameMatcher(std::span<const std::string_view> names)
    : names_(names.begin(), names.end()), candidates_(1) {
  for (std::string& name : names_) StringToUpper(name);
  for (std::size_t i = 0; i < names_.size(); ++i) AddPieces(i);
}

void NameMatcher::AddPieces(std::size_t name) {
  const auto offset = static_cast<std::ptrdiff_t>(BestPieces(names_[name]));
  AddPiece(name, offset);
  AddPiece(name, names_[name].size() > 1 ? offset + 1 : offset - 1);
}

/// Adds the three bytes at `offset` of a name; those that stand outside the name may be any.
void NameMatcher::AddPiece(std::size_t name, std::ptrdiff_t offset) {
  std::array<std::uint32_t, kPiece> allowed{};  // bit i: the code i
  for (std::size_t i = 0; i < kPiece; ++i) {
    const auto place = static_cast<std::size_t>(offset + static_cast<std::ptrdiff_t>(i));
    const bool inside = place < names_[name].size();  // one before the name is a large number
    allowed[i] = inside ? 1U << CodeOf(names_[name][place]) : ~0U;
  }
  for (std::uint32_t first = allowed[0]; first != 0; first &= first - 1) {
    for (std::uint32_t second = allowed[1]; second != 0; second &= second - 1) {
      const auto pair = static_cast<std::size_t>(std::countr_zero(first)) +
                        kCodes * static_cast<std::size_t>(std::countr_zero(second));
      thirds_[pair] |= allowed[2];
      if (list_of_[pair] == 0) {
        list_of_[pair] = static_cast<std::uint16_t>(candidates_.size());
        candidates_.emplace_back();
      }
      candidates_[list_of_[pair]].push_back(
          {static_cast<std::uint8_t>(name), static_cast<std::int8_t>(offset)});
    }
  }
}

/// The names of which the three bytes at `place` are the chosen piece.
std::uint64_t NameMatcher::NamesAround(std::string_view text, std::size_t place) const {
  const std::size_t second = place + 1 < text.size() ? CodeOf(text[place + 1]) : 0;
  std::uint64_t found = 0;
  for (const Candidate& candidate : candidates_[list_of_[CodeOf(text[place]) + kCodes * second]]) {
    const std::ptrdiff_t begin = static_cast<std::ptrdiff_t>(place) - candidate.offset;
    if (begin < 0 || !StandsAt(text, static_cast<std::size_t>(begin), names_[candidate.name]))
      continue;
    found |= std::uint64_t{1} << candidate.name;
  }
  return found;
}

template <bool kStopsAtFirst>
std::uint64_t NameMatcher::Search(std::string_view text) const {
  std::uint64_t found = 0;
  const auto look = [&](std::size_t place, std::array<char, kPiece + 1> bytes) {
    const std::size_t pair = CodeOf(bytes[0]) + kCodes * CodeOf(bytes[1]);
    if ((thirds_[pair] >> CodeOf(bytes[2]) & 1U) != 0) found |= NamesAround(text, place);
    return kStopsAtFirst && found != 0;
  };
  std::size_t place = 0;
  std::array<char, kPiece + 1> bytes{};
  for (; place + bytes.size() <= text.size(); place += 2) {
    std::memcpy(bytes.data(), text.data() + place, bytes.size());
    if (look(place, bytes)) return found;
  }
  for (; place < text.size(); place += 2) {
    bytes.fill('\0');  // what stands behind the end may be any byte
    text.copy(bytes.data(), bytes.size(), place);
    if (look(place, bytes)) return found;
  }
  return found;
}

int NameMatcher::First(std::string_view text) const {
  const std::uint64_t found = Find(text);
  return found == 0 ? -1 : std::countr_zero(found);
}

template std::uint64_t NameMatcher::Search<false>(std::string_view text) const;
template std::uint64_t NameMatcher::Search<true>(std::string_view text) const;

}  // namespace tarvel
