// SPDX-License-Identifier: MIT
// What Clean authors does to a single name: initials, particles, the word "and".
#pragma once

#include <string>
#include <string_view>

namespace tarvel {

/// Returns the list with every "And" and "AND" that stands between two blanks as "and". One whose
/// leading blank is the first byte of the list is left alone.
void LowerCaseAnd(std::string_view list, std::string& result);

/// Returns the initials of first names: for each word its accented initial (`CopyAccentedInitial`),
/// or else its first character upper-cased, with the 'h' of a second character ("Christoph" gives
/// "Ch. "); then "." and a blank, or ".-" where a hyphen joins the word to the next one. The last
/// initial keeps its blank.
///
/// Words end at a blank, '-', '~' or '.', but not inside a LaTeX construct: "Fran{\c c}ois" and
/// "I\~nigo" are one word each. A word without any letter gives nothing.
void AbbreviateFirstNames(std::string_view names, std::string& initials);

/// Returns the initial of a word that begins with an accent, a LaTeX letter or braces, upper-cased
/// and whole: "{\'e}mile" gives "{\'E}", "\v{s}tefan" "\v{S}", "{\o}ystein" "{\O}". What is no part
/// of such a construct is dropped, and open braces are closed. False, and nothing given, when the
/// word begins with a letter or a blank or holds no letter.
bool CopyAccentedInitial(std::string_view word, std::string& initial);

/// Turns a word of 'A' to 'Z' and '-' alone into initials (`MakeInitials`). False, and nothing
/// changed, for any other word; an empty one stays empty and gives true.
bool InitialsFromCapitals(std::string& word);

/// Writes a "." and a blank after each letter; a '-' takes the place of the blank just written.
/// "J-P" becomes "J.-P. ". Everything else is dropped.
void MakeInitials(std::string& word);

/// Writes particles between two blanks in lower case ("Von" as "von"), except that " Le " and
/// " La " stay as they are, and upper-cases the first byte of the list.
void NormaliseParticles(std::string& list);

/// Whether the text holds nothing but printable ASCII without blank, ',' and '.'. An empty one
/// does.
bool IsSingleWord(std::string_view text);

}  // namespace tarvel
