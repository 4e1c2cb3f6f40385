// SPDX-License-Identifier: MIT
#include "ops/authors/author_lists.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>

#include "core/name_list.h"
#include "core/text_primitives.h"
#include "ops/authors/author_names.h"

namespace tarvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::array<std::string_view, 4> kSuffixes{"Jr", "Jr.", "Sr.", "Sr"};
/// Those that stand between two commas; a name with commas and a '.' is not rearranged.
constexpr std::array<std::string_view, 5> kMiddleSuffixes{"Jr", "Sr", "II", "III", "IV"};

// ORDER: the longer form before the shorter one that it holds.
constexpr std::array<std::string_view, 8> kEtAlForms{"{\\ldots}",  "\\ldots",   "{\\it et al}",
                                                     "and et al.", "and et al", "et al.",
                                                     "et al",      "and Others"};

/// Each form holds one of these. A search for every form took a twentieth of Clean authors.
constexpr std::array<std::string_view, 3> kEtAlMarks{"\\ldots", "t al", "Others"};

bool Holds(std::string_view text, char byte) { return text.find(byte) != kNone; }
bool IsAmong(std::string_view text, std::span<const std::string_view> texts) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}
bool HoldsAnd(std::string_view list) { return list.find("and") != kNone; }
bool IsOneWord(std::string_view part) { return !Holds(part, ' '); }

/// The names arranged so far.
class ArrangedNames {
 public:
  explicit ArrangedNames(std::string& result) : result_(result) { result_.clear(); }

  void Add(std::string_view surname, std::string_view initials) {
    const std::size_t start = result_.size();
    result_.append(surname).append(", ").append(initials).append("and ");
    result_[start] = ToUpper(result_[start]);
  }

  /// First names of one word or several, or nothing but capitals that stand for several.
  void AddWithFirstNames(std::string_view surname, std::string_view first_names) {
    initials_.assign(first_names);
    if (!InitialsFromCapitals(initials_)) AbbreviateFirstNames(first_names, initials_);
    Add(surname, initials_);
  }

  void AddAbbreviated(std::string_view surname, std::string_view first_names) {
    AbbreviateFirstNames(first_names, initials_);
    Add(surname, initials_);
  }

  /// Cuts the last "and " and the byte before it, which is the blank or hyphen of an initial or the
  /// blank after the comma. False when there is no name: a list of none is of no form.
  bool Finish() {
    if (result_.empty()) return false;
    result_.resize(result_.size() - (1 + std::string_view("and ").size()));
    return true;
  }

  bool Reject() {
    result_.clear();
    return false;
  }

 private:
  std::string& result_;
  std::string initials_;
};

/// Upper-cases all but the names of LaTeX commands: "{\v s}" becomes "{\v S}".
void UpperCaseText(std::string& text) {
  bool in_command = false;
  for (char& byte : text) {
    const char upper = ToUpper(byte);
    in_command = byte == '\\' || (in_command && upper >= 'A' && upper <= 'Z');
    if (!in_command) byte = upper;
  }
}

bool HoldsLooseInitials(std::string_view list) {
  return !Holds(list, ',') && HoldsAnd(list) && Holds(list, '.');
}

/// The offset of the last of `stops` outside braces, counted from the end, or npos. The bytes of
/// the accents "\~" and "\." are no stops.
std::size_t FindLastStop(std::string_view text, std::string_view stops) {
  std::size_t depth = 0;
  for (std::size_t at = text.size(); at-- > 0;) {
    const char byte = text[at];
    if (byte == '}') ++depth;
    if (byte == '{' && depth > 0) --depth;
    if (depth > 0 || !IsByteOf(byte, stops)) continue;
    if (byte == ' ' || at == 0 || text[at - 1] != '\\') return at;
  }
  return kNone;
}

/// Removes every one of `bytes` that is not part of an accent.
void RemoveBytes(std::string& text, std::string_view bytes) {
  std::string kept;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool accent = text[at] != ' ' && at > 0 && text[at - 1] == '\\';
    if (accent || !IsByteOf(text[at], bytes)) kept += text[at];
  }
  text = std::move(kept);
}

/// Puts the word before a suffix in front of it, and takes it from the first names.
void TakeWordBeforeSuffix(std::string_view& first_names, std::string& surname) {
  const std::string_view before = first_names.substr(0, first_names.find_last_not_of(" ~.") + 1);
  if (before.empty()) return;
  const std::size_t stop = FindLastStop(before, " ~.");
  const std::size_t start = stop == kNone ? 0 : stop + 1;
  std::string word(before.substr(start));
  RemoveBytes(word, " ~.");
  surname = word + " " + surname;
  first_names = before.substr(0, start);
}

/// Adds one name in its full form; false when it has no first names.
bool AddFullName(std::string_view part, ArrangedNames& names) {
  part = Trim(part, " ~");
  const std::size_t stop = FindLastStop(part, " ~");
  if (stop == kNone) return false;
  std::string surname(part.substr(stop + 1));
  RemoveBytes(surname, " ");
  std::string_view first_names = part.substr(0, stop);
  if (IsAmong(surname, kSuffixes)) {
    TakeWordBeforeSuffix(first_names, surname);
  }
  names.AddWithFirstNames(surname, Trim(first_names, " ~"));
  return true;
}

/// Adds a name that begins with its surname and a comma: "Surname, First names" or, as in BibTeX,
/// "Surname, Suffix, First names". False when it has no comma, no surname, or a '.'.
bool AddCommaName(std::string_view part, ArrangedNames& names) {
  const std::size_t comma = part.find(',');
  if (comma == kNone || Holds(part, '.')) return false;
  std::string surname(Trim(part.substr(0, comma), " "));
  if (surname.empty()) return false;
  std::string_view first_names = part.substr(comma + 1);
  const std::size_t second = std::min(first_names.find(','), first_names.size());
  const std::string_view middle = Trim(first_names.substr(0, second), " ");
  const bool has_suffix = second < first_names.size() && IsAmong(middle, kMiddleSuffixes);
  if (has_suffix) {
    surname.append(" ").append(middle);
    first_names.remove_prefix(second + 1);
  }
  names.AddWithFirstNames(surname, Trim(first_names, " "));
  return true;
}

struct Recogniser {
  bool (*arrange)(std::string_view list, std::string& result);
  AuthorForm form;
};

// ORDER: the first that accepts a list arranges it.
constexpr std::array<Recogniser, 5> kRecognisers{
    {{ArrangeInitialsThenSurname, AuthorForm::kInitialsThenSurname},
     {ArrangeSurnameThenInitials, AuthorForm::kSurnameThenInitials},
     {ArrangeWordPairs, AuthorForm::kWordPairs},
     {ArrangeCommaNames, AuthorForm::kCommaNames},
     {ArrangeFullNames, AuthorForm::kFullNames}}};

bool RemoveEtAl(std::string& list) {
  const auto occurs = [&list](std::string_view mark) { return list.find(mark) != kNone; };
  if (std::none_of(kEtAlMarks.begin(), kEtAlMarks.end(), occurs)) return false;
  bool found = false;
  for (const std::string_view form : kEtAlForms) found |= ReplaceString(list, form, "");
  return found;
}

/// Arranges a list by the first recogniser that accepts it.
AuthorForm Recognise(const std::string& list, std::string& result) {
  for (const Recogniser& recogniser : kRecognisers) {
    if (recogniser.arrange(list, result)) return recogniser.form;
  }
  result = list;
  return AuthorForm::kOther;
}

AuthorForm ArrangeNames(const std::string& old_list, std::string& new_list) {
  std::string shortened = old_list;
  const bool has_et_al = RemoveEtAl(shortened);
  std::string list;
  LowerCaseAnd(shortened, list);
  const AuthorForm form = Recognise(list, new_list);
  if (has_et_al) new_list.append(" {\\ldots}");
  return form;
}

}  // namespace

// In the next three functions an empty half-name means that none is waiting: no part is empty.

bool ArrangeInitialsThenSurname(std::string_view list, std::string& result) {
  ArrangedNames names(result);
  if (!HoldsLooseInitials(list)) return false;
  std::string initials;
  NameParts parts(list);
  while (const auto part = parts.Next()) {
    const bool is_initials = Holds(*part, '.');
    if (is_initials != initials.empty()) return names.Reject();
    if (is_initials) {
      initials = *part;
      UpperCaseText(initials);
      continue;
    }
    if (!IsOneWord(*part)) return names.Reject();
    names.AddAbbreviated(*part, initials);
    initials.clear();
  }
  return initials.empty() ? names.Finish() : names.Reject();
}

bool ArrangeSurnameThenInitials(std::string_view list, std::string& result) {
  ArrangedNames names(result);
  if (!HoldsLooseInitials(list)) return false;
  std::string_view surname;
  NameParts parts(list);
  while (const auto part = parts.Next()) {
    const bool is_initials = Holds(*part, '.');
    if (is_initials ? surname.empty() : !IsOneWord(*part)) return names.Reject();
    if (is_initials) {
      names.AddAbbreviated(surname, *part);
      surname = {};
    } else if (surname.empty()) {
      surname = *part;
    }
  }
  return surname.empty() ? names.Finish() : names.Reject();
}

bool ArrangeWordPairs(std::string_view list, std::string& result) {
  ArrangedNames names(result);
  if (Holds(list, ',') || Holds(list, '.') || !HoldsAnd(list)) return false;
  std::string_view first_name;
  NameParts parts(list);
  while (const auto part = parts.Next()) {
    if (!IsOneWord(*part)) return names.Reject();
    if (first_name.empty()) {
      first_name = *part;
    } else {
      names.AddAbbreviated(*part, first_name);
      first_name = {};
    }
  }
  return first_name.empty() ? names.Finish() : names.Reject();
}

bool ArrangeCommaNames(std::string_view list, std::string& result) {
  ArrangedNames names(result);
  if (!Holds(list, ',') || !HoldsAnd(list)) return false;
  NameParts parts(list);
  while (const auto part = parts.Next()) {
    if (!AddCommaName(*part, names)) return names.Reject();
  }
  return names.Finish();
}

bool ArrangeFullNames(std::string_view list, std::string& result) {
  ArrangedNames names(result);
  if (Holds(list, ',')) return false;
  NameParts parts(list);
  while (const auto part = parts.Next()) {
    if (!AddFullName(*part, names)) return names.Reject();
  }
  return names.Finish();
}

AuthorForm ArrangeAuthorList(const std::string& old_list, std::string& new_list) {
  AuthorForm form = AuthorForm::kOther;
  if (old_list.starts_with('{') && old_list.ends_with('}')) {
    form = AuthorForm::kBraced;
    new_list = old_list;
  } else if (IsSingleWord(old_list)) {
    form = AuthorForm::kSingleWord;
    new_list = old_list;
  } else {
    form = ArrangeNames(old_list, new_list);
  }
  NormaliseParticles(new_list);
  return form;
}

}  // namespace tarvel
