// SPDX-License-Identifier: MIT
// How Clean authors recognises the forms that author lists come in and brings them into one:
// surname, comma, initials, names joined by " and ".
#pragma once

#include <string>
#include <string_view>

namespace tarvel {

// The recognisers. Each gives true and the arranged list in `result`, or false and an empty
// `result` when the list is not of its form. A surname is given with its first byte upper-cased.

/// "J. and Smith and B. and Jones". No ',' in the list, but "and" and '.'.
bool ArrangeInitialsThenSurname(std::string_view list, std::string& result);
/// "Smith and J. and Jones and B.". No ',' in the list, but "and" and '.'. Of several words in a
/// row the first is the surname.
bool ArrangeSurnameThenInitials(std::string_view list, std::string& result);
/// "John and Smith and Bob and Jones". Neither ',' nor '.' in the list, but "and".
bool ArrangeWordPairs(std::string_view list, std::string& result);
/// "Smith, John and Jones, Bob". A ',' and "and" in the list; a name with '.' is abbreviated
/// already and no such list is touched. "King, Jr, Martin" keeps its suffix (Jr, Sr, II, III or IV)
/// with the surname, as "King Jr, M."; otherwise the surname ends at the first of several commas.
bool ArrangeCommaNames(std::string_view list, std::string& result);
/// "John Smith and Bob Jones". No ',' in the list. The surname stands after the last blank or '~'
/// outside braces; blanks in it are removed. A "Jr" or "Sr" stays with the word before it.
bool ArrangeFullNames(std::string_view list, std::string& result);

/// Which case an author list fell into; the number is that of its flag in the log.
enum class AuthorForm {
  kOther = 0,
  kBraced = 1,
  kSingleWord = 2,
  kInitialsThenSurname = 3,
  kSurnameThenInitials = 4,
  kWordPairs = 5,
  kCommaNames = 6,
  kFullNames = 7,
};
inline constexpr int kAuthorForms = 7;

/// Brings an author list into the normal form and gives the form it came in. A braced name and a
/// single word are not rearranged. "et al." and its like are taken out and " {\ldots}" is put at
/// the end instead. A list of no known form stays, but for that, the word "and" in capitals and the
/// particles.
AuthorForm ArrangeAuthorList(const std::string& old_list, std::string& new_list);

}  // namespace tarvel
