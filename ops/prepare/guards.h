// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "ops/prepare/tag_words.h"
#include "ops/prepare/text_facts.h"

namespace tarvel {

/// The value without the pairs of braces that stand around all of it, and without the blanks at the
/// inner sides of these. A pair directly around a command stays: the command may apply only up to
/// the end of the pair. `is_names`: the value is a list of authors or editors. A pair makes one
/// name of it, so one pair stays, unless there are several names in it, each with a comma.
std::string_view StripOuterBraces(std::string_view value, bool is_names);

/// Whether the value begins or ends with a brace, which Extract and Text would strip.
bool NeedsEnds(std::string_view value);
/// Writes such a value so that it neither begins nor ends with a brace, and prints the same: the
/// first letter of a braced word, and a "?" or the like at the end of one, stand outside it; else
/// "\relax" stands before it or "\/" after it. What BibTeX makes of its letters stays the same.
void GuardEnds(std::string_view value, std::string& guarded);

/// Writes the value with an empty group in each of the words, in each "journal" with blanks within,
/// in each name before "={" that Clean characters looks for, and after each "@" that a "{" follows
/// somewhere. Nothing is put into names of commands, or into what commands such as "\url" take.
void GuardWords(std::string_view value, WordSet words, std::string& guarded);

/// Whether braces in the list hold a comma or an "and".
bool HasPartsInBraces(std::string_view names);
/// Whether the first comma of a name in the list stands in braces. The styles that put first names
/// first cut the name there.
bool HasCommaInBraces(std::string_view names);
/// Writes the list with an empty group in each "and" in braces, which Extract and Text would take
/// for the end of a name.
void GuardNames(std::string_view names, std::string& guarded);

/// What operations would misread in a line: words, or one of the signs that `GuardWords` knows.
struct Harm {
  WordSet words = 0;
  bool is_exempt = false;  // Clean characters would leave the line out
  bool is_at = false;      // text between an "@" and a "{" would be turned into capitals
  bool Any() const { return words != 0 || is_exempt || is_at; }
};
/// What `FindHarm` calls when the facts do not rule out harm.
Harm LookForHarm(std::string_view value, const TextFacts& facts, WordSet harmful);
/// Which of the harmful words and which of the signs stand in the value, whose facts are `facts`. A
/// "journal" with blanks in it counts as that word.
inline Harm FindHarm(std::string_view value, const TextFacts& facts, WordSet harmful) {
  const bool has_sign = facts.has_brace && (facts.has_at || facts.has_equals);
  const bool may_be = (facts.words & harmful) != 0 || facts.may_journal || has_sign;
  return may_be ? LookForHarm(value, facts, harmful) : Harm();
}

}  // namespace tarvel
