// SPDX-License-Identifier: MIT
#include "core/usual_entry.h"

#include <algorithm>
#include <cstring>

#include "core/byte_lanes.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

constexpr std::array kKnownTypes{
    "ARTICLE"sv,          "BOOK"sv,       "PHDTHESIS"sv,  "INCOLLECTION"sv,
    "INPROCEEDINGS"sv,    "MISC"sv,       "OTHER"sv,      "PROCEEDINGS"sv,
    "ELECTRONIC"sv,       "BOOKLET"sv,    "INBOOK"sv,     "MASTERTHESIS"sv,
    "CONFERENCE"sv,       "MANUAL"sv,     "TECHREPORT"sv, "UNPUBLISHED"sv,
    "STANDARD"sv,         "PERIODICAL"sv, "PATENT"sv,     "MEETINGABSTRACT"sv,
    "PROCEEDINGSPAPER"sv, "LETTER"sv,     "REVIEW"sv,     "EDITORIALMATERIAL"sv};

/// The types by their size and first two letters: no two are in one place, so that one comparison
/// tells whether a word is a type.
class TypeTable {
 public:
  constexpr TypeTable() {
    for (const std::string_view type : kKnownTypes) {
      TypeWord word{};
      std::copy(type.begin(), type.end(), word.begin());
      TypeWord& place = places_[PlaceOf(word, type.size())];
      collides_ |= place[0] != 0;
      place = word;
    }
  }
  constexpr bool Collides() const { return collides_; }
  /// Whether the word of that size, in capitals with zeros behind it, is a type.
  bool Holds(const TypeWord& word, std::size_t size) const {
    const TypeWord& place = places_[PlaceOf(word, size)];
    return size > 0 && std::memcmp(place.data(), word.data(), word.size()) == 0;
  }

 private:
  static constexpr std::size_t PlaceOf(const TypeWord& word, std::size_t size) {
    const auto letter = [&](std::size_t i) -> std::size_t {
      return static_cast<unsigned char>(word[i]);
    };
    return (size + letter(0) * 5 + letter(1) * 3) % 128;
  }

  std::array<TypeWord, 128> places_{};
  bool collides_ = false;
};
constexpr TypeTable kTypes;
static_assert(!kTypes.Collides());

constexpr bool IsBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

/// What is left of the bytes of a word and of those behind it: without the bit 0xDF lacks, a letter
/// is a capital, and nothing else becomes one.
constexpr auto kTypeMasks = [] {
  std::array<char, 2 * TypeWord().size()> masks{};
  std::fill_n(masks.begin(), TypeWord().size(), static_cast<char>(0xDF));
  return masks;
}();

/// Signs by which an entry of the usual form is told from one that needs a closer look. All but the
/// first are zero for "@type{key," with a line "  tag = {value}," for each tag up to the "}" of the
/// entry itself.
struct Signs {
  int open_braces = 0;     // "{" less "}"
  int unended_values = 0;  // "={" and "= {" less "}" and "}," at the end of a line
  bool odd = false;        // a byte from 128 on, or an "=" that neither "{" nor " {" follows

  bool operator==(const Signs&) const = default;
};

/// Adds up signs, each lane for itself. What is true is -1 in a lane.
template <typename L>
struct SignLanes {
  L closed{};
  L ended{};
  L odd{};

  /// Adds the signs of the bytes at `text`. Two more, which tell what follows, are read behind
  /// them.
  [[gnu::always_inline]] void Add(const char* text) {
    L byte;
    L next;
    L third;
    LoadLanes(text, byte);
    LoadLanes(text + 1, next);
    LoadLanes(text + 2, third);
    const L is_equals = byte == '=';
    const L value = is_equals & ((next == '{') | ((next == ' ') & (third == '{')));
    const L closes = byte == '}';
    const L end = closes & ((next == '\n') | ((next == ',') & (third == '\n')));
    closed += (byte == '{') - closes;
    ended += value - end;
    odd |= byte | (is_equals ^ value);
  }

  /// Adds the signs of the last `count` bytes at `text` only.
  [[gnu::always_inline]] void AddLast(const char* text, std::size_t count) {
    L counted;
    SetLastLanes(count, counted);
    SignLanes<L> last;
    last.Add(text);
    closed += last.closed & counted;
    ended += last.ended & counted;
    odd |= last.odd & counted;
  }

  [[gnu::always_inline]] void AddTo(Signs& signs) const {
    signs.open_braces -= SumOfLanes(closed);
    signs.unended_values -= SumOfLanes(ended);
    signs.odd |= HasNegative(odd);
  }
};

/// The signs of at least as many bytes as there are lanes. Two more can be read behind them.
template <typename L>
[[gnu::always_inline]] inline Signs AddSigns(std::string_view text) {
  // What comes next is fetched while this is added up: a large library is in no cache yet.
  constexpr std::size_t kAhead = 1024;
  constexpr std::size_t kMostBytes = (kMostLaneSteps - 1) * sizeof(L);
  const char* const end = text.data() + text.size();
  Signs signs;
  SignLanes<L> lanes;
  while (text.size() >= sizeof(L)) {
    const std::size_t size = std::min(text.size() / sizeof(L) * sizeof(L), kMostBytes);
    for (std::size_t i = 0; i < size; i += sizeof(L)) {
      __builtin_prefetch(text.data() + i + kAhead);
      lanes.Add(text.data() + i);
    }
    text.remove_prefix(size);
    if (size < kMostBytes) break;
    lanes.AddTo(signs);
    lanes = {};
  }
  lanes.AddLast(end - sizeof(L), text.size());
  lanes.AddTo(signs);
  return signs;
}

TARVEL_FOR_WIDE_LANES Signs AddSignsWide(std::string_view text) {
  return AddSigns<WideLanes>(text);
}

Signs SignsOf(std::string_view text) {
  return HasWideLanes() ? AddSignsWide(text) : AddSigns<Lanes>(text);
}

constexpr std::size_t kLeastSize = sizeof(WideLanes);

}  // namespace

bool IsKnownType(std::string_view word) {
  if (word.size() > kLongestType) return false;
  TypeWord letters{};
  std::copy(word.begin(), word.end(), letters.begin());
  return kTypes.Holds(letters, word.size());
}

std::string_view TakeKnownType(std::string_view head, TypeWord& word) {
  const std::size_t size = head.substr(0, kLongestType + 2).find('{') - 1;
  if (size >= kLongestType + 1 || !head.starts_with('@') || head.size() <= word.size()) return {};
  const char* const masks = kTypeMasks.data() + word.size() - size;
  for (std::size_t i = 0; i < word.size(); ++i) {
    word[i] = static_cast<char>(head[i + 1] & masks[i]);
  }
  return kTypes.Holds(word, size) ? std::string_view(word.data(), size) : std::string_view();
}

bool IsUsualEntry(std::string_view text) {
  TypeWord word;
  if (TakeKnownType(text, word).empty()) return false;
  std::size_t end = text.size();
  while (IsBlank(text[end - 1])) --end;
  // A further line with "}" in the middle would hide text behind the entry.
  if (end <= kLeastSize || end == text.size()) return false;
  if (text[end - 2] != '\n' || text[end - 1] != '}' || text[end] != '\n') return false;
  Signs usual;
  usual.open_braces = 1;  // the entry's own
  return SignsOf(text.substr(0, end - 1)) == usual;
}

}  // namespace tarvel
