// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

#include "core/output_file.h"
#include "ops/entries/entry_record.h"

namespace tarvel {

/// A group of entry types that are distinguished by the same tags. Compare and Clean doubles group
/// the types differently, on purpose.
struct TypeGroup {
  std::span<const std::string_view> types;
  std::span<const Field> compared;
  std::string_view detail_end;  // of the lines that show the compared tags; empty: none are shown
};

inline constexpr std::size_t kMostCompared = 4;

/// The values of a group's compared tags, in the group's order; unused elements are empty.
struct ComparedValues {
  std::array<std::string_view, kMostCompared> values;
  std::size_t count = 0;

  /// Whether every compared tag is present.
  bool Complete() const;
  bool operator==(const ComparedValues&) const = default;
};

/// The compared values of an entry; views into it.
ComparedValues ComparedValuesOf(const TypeGroup& group, const EntryRecord& entry);
/// The same as views that live as long as the library's bytes and `store`.
ComparedValues KeepComparedValues(const TypeGroup& group, const EntryRecord& entry,
                                  TextStore& store);
/// The hash of an entry's type and compared values, for an index over them.
std::size_t ContentHash(std::string_view type, const ComparedValues& values);

/// The result of comparing the compared tags of two entries.
enum class Content { kTagMissing, kEqual, kDifferent };

/// Judges two entries by the tags of one group, byte for byte.
Content JudgeContent(const ComparedValues& one, const ComparedValues& two);

/// Writes the lines "     1.: ..." and "     2.: ..." that show the compared tags of two entries;
/// nothing for a group without such lines.
void WriteDetails(OutputFile& log, const TypeGroup& group, const ComparedValues& one,
                  const ComparedValues& two);

/// Writes `format` with the texts in the places of its "%s". Nothing but "%s" is special.
void WriteFormat(OutputFile& log, std::string_view format,
                 std::initializer_list<std::string_view> texts);

// Compare

enum class Counted : std::uint8_t { kNothing, kExact, kProbable };

/// What Compare does about two entries. A stop ends the search and copies the first library's
/// entry; without one the search goes on.
struct Verdict {
  std::string_view headline;  // a "%s" at its start is the type, the next are the keys
  std::string_view closing;   // after the details; "%s" is the path of the equal entries
  Counted counted;
  bool stops;
};

struct CompareRule {
  TypeGroup group;
  // Same key:
  Verdict missing;  // one entry lacks a compared tag
  Verdict exact;
  Verdict differs;
  // Different keys, same type, all compared tags present and equal:
  Verdict probable;
};

extern const std::array<CompareRule, 8> kCompareRules;

// Clean doubles

/// Which keys the closing line of a probable double names, and in what order. The entry that stays
/// is always the earlier one, though only the line for articles says so.
enum class ClosingKeys : std::uint8_t { kNone, kLaterThenEarlier, kEarlierThenLater };

struct DoublesRule {
  TypeGroup group;
  /// The only thing that happens to two entries with the same key, whatever their content; empty
  /// where the content decides.
  std::string_view same_key_note;
  std::string_view probable;  // headline of a double under another key; empty: never one
  std::string_view closing;   // after the details
  ClosingKeys closing_keys;
};

extern const std::array<DoublesRule, 8> kDoublesRules;

inline constexpr std::string_view kDoublesExactHeadline = "Exactly the same : %s and %s\n";
inline constexpr std::string_view kDoublesExactClosing = "     One BibTeX entry stays\n\n";
inline constexpr std::string_view kDoublesConflictHeadline =
    "Two identical bibitems (%s and %s) were found with different content:\n";

/// A rule, null for a type word of no group, and the type word as the rule's table holds it, which
/// outlives every entry. Type words are taken whole: "ARTICLE " or "ARTICLES" is in no group.
template <typename Rule>
struct TypeRule {
  const Rule* rule = nullptr;
  std::string_view type;
};

TypeRule<CompareRule> CompareRuleFor(std::string_view type);
TypeRule<DoublesRule> DoublesRuleFor(std::string_view type);

}  // namespace tarvel
