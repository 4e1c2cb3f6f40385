// SPDX-License-Identifier: MIT
#include "warnings/usual_entry.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/text_primitives.h"
#include "warnings/byte_lanes.h"

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

/// Signs by which an entry of the usual form is told from one that needs a closer look. Where all
/// are zero and the last line is "}", every value is in braces and closed: were one open, there
/// would be a "{" too many, as a "}" outside of values ends the entry.
struct Signs {
  int open_braces = 0;  // "{" less "}"
  bool odd = false;     // a byte from 128 on, or an "=" that neither "{" nor " {" follows

  bool AreZero() const { return open_braces == 0 && !odd; }

  /// Adds the signs of the first byte of `text`, of which the two behind it tell what follows.
  void Add(std::string_view text) {
    const std::string_view behind = text.substr(1);
    const bool value = behind.starts_with('{') || behind.starts_with(" {");
    odd |= static_cast<signed char>(text[0]) < 0 || (text[0] == '=' && !value);
    if (text[0] == '{') ++open_braces;
    if (text[0] == '}') --open_braces;
  }
};

/// Adds up signs, each lane for itself. What is true is -1 in a lane.
template <typename L>
struct SignLanes {
  L closed{};
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
    const L behind = next == ' ' ? third : next;
    closed += byte == '{';
    closed -= byte == '}';
    odd |= byte | ((byte == '=') & ~(behind == '{'));
  }

  /// Adds the signs only of those bytes at `text` whose lanes in `counted` are -1, not 0.
  [[gnu::always_inline]] void AddCounted(const char* text, const L& counted) {
    SignLanes<L> all;
    all.Add(text);
    closed += all.closed & counted;
    odd |= all.odd & counted;
  }

  /// Adds what was added up to `signs`, and begins anew.
  [[gnu::always_inline]] void MoveTo(Signs& signs) {
    signs.open_braces -= SumOfLanes(closed);
    signs.odd |= HasNegative(odd);
    closed = L{};
    odd = L{};
  }
};

/// What is looked at in one step, with what is read behind it to tell what follows.
template <typename L>
constexpr std::size_t kStep = 2 * sizeof(L);
constexpr std::size_t kBehind = 2;

template <typename L>
[[gnu::always_inline]] inline bool HasStep(std::string_view text, std::size_t at) {
  return text.size() - at >= kStep<L> + kBehind;
}

/// Adds the signs of whole steps from the second byte of `text` on, up to one that holds an "@".
/// Gives the place of that step, or of the rest that is shorter than one.
template <typename L>
[[gnu::always_inline]] inline std::size_t AddSteps(std::string_view text, Signs& signs) {
  // What comes next is fetched while this is added up: a large library is in no cache yet.
  constexpr std::size_t kAhead = 1024;
  SignLanes<L> lanes;
  std::size_t at = 1;
  std::size_t steps = 0;
  while (HasStep<L>(text, at)) {
    const char* const step = text.data() + at;
    L one;
    L two;
    LoadLanes(step, one);
    LoadLanes(step + sizeof(L), two);
    if (HasNegative((one == '@') | (two == '@'))) break;
    __builtin_prefetch(step + kAhead);
    lanes.Add(step);
    lanes.Add(step + sizeof(L));
    at += kStep<L>;
    if (++steps < kMostLaneSteps / 2) continue;
    lanes.MoveTo(signs);
    steps = 0;
  }
  lanes.MoveTo(signs);
  return at;
}

/// Adds the signs of the bytes from `at` up to the "@" in that step; gives its place. Does nothing
/// where less than a step is left.
template <typename L>
[[gnu::always_inline]] inline std::size_t AddUpToAt(std::string_view text, std::size_t at,
                                                    Signs& signs) {
  if (!HasStep<L>(text, at)) return at;
  const char* const step = text.data() + at;
  L one;
  L two;
  LoadLanes(step, one);
  LoadLanes(step + sizeof(L), two);
  const std::uint64_t found = NegativeLanes(one == '@') | NegativeLanes(two == '@') << sizeof(L);
  const auto before = static_cast<std::size_t>(std::countr_zero(found));
  SignLanes<L> lanes;
  SetFirstLanes(before, one, two);
  lanes.AddCounted(step, one);
  lanes.AddCounted(step + sizeof(L), two);
  lanes.MoveTo(signs);
  return at + before;
}

// Not one function, in which the loop of the first would have too few registers.
TARVEL_FOR_WIDE_LANES [[gnu::noinline]] std::size_t AddStepsWide(std::string_view text,
                                                                 Signs& signs) {
  return AddSteps<WideLanes>(text, signs);
}
TARVEL_FOR_WIDE_LANES [[gnu::noinline]] std::size_t AddUpToAtWide(std::string_view text,
                                                                  std::size_t at, Signs& signs) {
  return AddUpToAt<WideLanes>(text, at, signs);
}

/// Adds the signs of `text` up to its next "@" behind the first byte, or to the end. Gives the
/// place of that.
std::size_t AddSigns(std::string_view text, Signs& signs) {
  std::size_t at = HasWideLanes() ? AddUpToAtWide(text, AddStepsWide(text, signs), signs)
                                  : AddUpToAt<Lanes>(text, AddSteps<Lanes>(text, signs), signs);
  for (; at < text.size() && text[at] != '@'; ++at) signs.Add(text.substr(at));
  return at;
}

/// Whether the text ends with a "}" on a line of its own, blanks behind it left out.
bool EndsWithBraceLine(std::string_view text) {
  while (!text.empty() && IsBlank(text.back()) && !text.ends_with("\n}\n")) text.remove_suffix(1);
  return text.ends_with("\n}\n");
}

}  // namespace

bool IsKnownType(std::string_view word) {
  if (word.size() > kLongestType) return false;
  TypeWord letters{};
  std::copy(word.begin(), word.end(), letters.begin());
  return kTypes.Holds(letters, word.size());
}

std::string_view TakeKnownType(std::string_view head, TypeWord& word) {
  Lanes one;
  Lanes two;
  if (head.size() <= 2 * sizeof(Lanes) || head[0] != '@') return {};
  LoadLanes(head.data() + 1, one);
  LoadLanes(head.data() + 1 + sizeof(Lanes), two);
  const std::uint64_t behind = NegativeLanes(two == '{') << sizeof(Lanes);
  const auto size = static_cast<std::size_t>(std::countr_zero(NegativeLanes(one == '{') | behind));
  if (size > kLongestType) return {};
  const char* const masks = kTypeMasks.data() + word.size() - size;
  for (std::size_t i = 0; i < word.size(); ++i) {
    word[i] = static_cast<char>(head[i + 1] & masks[i]);
  }
  return kTypes.Holds(word, size) ? std::string_view(word.data(), size) : std::string_view();
}

EntryText MeasureEntry(std::string_view text) {
  Signs signs;
  const std::size_t size = AddSigns(text, signs);
  const std::string_view entry = text.substr(0, size);
  TypeWord word;
  return {size, signs.AreZero() && EndsWithBraceLine(entry) && !TakeKnownType(entry, word).empty()};
}

}  // namespace tarvel
