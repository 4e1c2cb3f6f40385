// SPDX-License-Identifier: MIT
#include "tests/support/plain_author_lists.h"

#include <cstddef>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

bool IsAmong(char byte, const std::string& bytes) { return bytes.find(byte) != std::string::npos; }

bool IsPlainLetter(char byte) {
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

std::string Stripped(std::string text, const std::string& bytes) {
  while (!text.empty() && IsAmong(text.back(), bytes)) text.pop_back();
  std::size_t at = 0;
  while (at < text.size() && IsAmong(text[at], bytes)) ++at;
  return text.substr(at);
}

/// "And" and "AND" between two blanks become "and", but not after a blank that begins the list.
std::string WithSmallAnd(std::string list) {
  for (const std::string word : {" And ", " AND "}) {
    for (std::size_t at = 1; at + word.size() <= list.size(); ++at) {
      if (list.compare(at, word.size(), word) == 0) list.replace(at, word.size(), " and ");
    }
  }
  return list;
}

std::vector<std::string> Parts(const std::string& list) {
  std::vector<std::string> parts(1);
  for (std::size_t at = 0; at < list.size();) {
    if (list.compare(at, 4, " and") == 0) {
      parts.emplace_back();
      at += 4;
    } else {
      parts.back() += list[at++];
    }
  }
  std::vector<std::string> names;
  for (const std::string& part : parts) {
    const std::string name = Stripped(part, " ");
    if (!name.empty()) names.push_back(name);
  }
  return names;
}

/// The letter that begins `text`, a UTF-8 character or a stray byte above 127 as one; empty when
/// none does.
std::string Letter(std::string_view text) {
  if (text.empty()) return "";
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::string first(1, text[0]);
  if (lead < 128) return IsPlainLetter(text[0]) ? first : "";
  std::size_t size = 1;
  if (lead >= 0xC0) size = 2;
  if (lead >= 0xE0) size = 3;
  if (lead >= 0xF0) size = 4;
  if (text.size() < size) return first;
  for (std::size_t i = 1; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80 || byte > 0xBF) return first;
  }
  return std::string(text.substr(0, size));
}

/// The letters after a backslash that begins `text`.
std::string CommandName(std::string_view text) {
  std::string name;
  for (std::size_t at = 1; at < text.size() && IsPlainLetter(text[at]); ++at) name += text[at];
  return name;
}

bool IsLetterAccent(const std::string& name) { return name.size() == 1 && Has("vrcHukdbt", name); }

/// How many bytes of `text`, which a backslash begins, belong to one word, as the blanks after an
/// accent do.
std::size_t CommandSize(std::string_view text) {
  const std::string name = CommandName(text);
  std::size_t size = 1 + name.size();
  bool takes_blanks = IsLetterAccent(name);
  if (name.empty() && text.size() > 1 && text[1] != ' ') {
    takes_blanks = IsAmong(text[1], "'`\"^~=.");
    size = 2;
  }
  while (takes_blanks && size < text.size() && text[size] == ' ') ++size;
  return size;
}

/// The initial of a word that a letter does not begin; empty when the word holds none.
std::string AccentedInitial(std::string_view word) {
  static const std::map<std::string, std::string> letters{
      {"o", "O"},   {"l", "L"},   {"aa", "AA"}, {"ae", "AE"}, {"oe", "OE"},
      {"ss", "SS"}, {"dh", "DH"}, {"dj", "DJ"}, {"ng", "NG"}, {"th", "TH"},
      {"O", "O"},   {"L", "L"},   {"AA", "AA"}, {"AE", "AE"}, {"OE", "OE"},
      {"SS", "SS"}, {"DH", "DH"}, {"DJ", "DJ"}, {"NG", "NG"}, {"TH", "TH"}};
  std::string initial;
  std::string closing;
  std::string_view rest = word;
  while (!rest.empty()) {
    const std::string name = rest[0] == '\\' ? CommandName(rest) : "";
    if (name == "i" || name == "j") return initial + PlainUpper(name) + closing;
    if (letters.contains(name)) return initial + "\\" + letters.at(name) + closing;
    if (!name.empty()) {
      // An accent may be glued to the capital it stands on.
      const bool is_glued =
          name.size() > 1 && IsLetterAccent(name.substr(0, 1)) && name[1] >= 'A' && name[1] <= 'Z';
      const std::string command = is_glued ? name.substr(0, 1) : name;
      initial += "\\" + command;
      rest.remove_prefix(1 + command.size());
      if (rest.substr(0, 1) == " ") initial += " ";
    } else if (rest[0] == '\\') {
      rest.remove_prefix(1);
      if (rest.empty() || IsAmong(rest[0], "{} ")) continue;
      initial += "\\";
      if (static_cast<unsigned char>(rest[0]) >= 128) continue;
      initial += rest[0];
      rest.remove_prefix(1);
    } else if (const std::string letter = Letter(rest); !letter.empty()) {
      return initial + PlainUpper(letter) + closing;
    } else {
      if (rest[0] == '{') closing += "}";
      const bool closes = rest[0] == '}' && !closing.empty();
      if (closes) closing.pop_back();
      if (closes || IsAmong(rest[0], "{'\"^~")) initial += rest[0];
      rest.remove_prefix(1);
    }
  }
  return "";
}

std::string Initials(const std::string& first_names) {
  std::string initials;
  std::string_view rest = first_names;
  for (;;) {
    while (!rest.empty() && IsAmong(rest[0], " -~.")) rest.remove_prefix(1);
    if (rest.empty()) return initials;
    std::string word;
    while (!rest.empty() && !IsAmong(rest[0], " -~.")) {
      const std::size_t size = rest[0] == '\\' ? CommandSize(rest) : 1;
      word += rest.substr(0, size);
      rest.remove_prefix(size);
    }
    const std::string letter = Letter(word);
    std::string initial = letter.empty() ? AccentedInitial(word) : PlainUpper(letter);
    if (!letter.empty() && word.substr(letter.size(), 1) == "h") initial += "h";
    if (initial.empty()) continue;
    const bool is_joined = rest.substr(0, 1) == "-" || rest.substr(0, 2) == ".-";
    initials += initial + (is_joined ? ".-" : ". ");
  }
}

/// Initials of first names, or of nothing but capitals and hyphens.
std::string InitialsOrCapitals(const std::string& first_names) {
  std::string capitals;
  for (const char byte : first_names) {
    if (byte == '-') {
      if (!capitals.empty() && capitals.back() == ' ') capitals.back() = '-';
    } else if (byte >= 'A' && byte <= 'Z') {
      capitals += std::string(1, byte) + ". ";
    } else {
      return Initials(first_names);
    }
  }
  return capitals;
}

/// In capitals, but for the names of commands.
std::string LoudInitials(const std::string& initials) {
  std::string loud;
  for (std::size_t at = 0; at < initials.size();) {
    const std::string name =
        initials[at] == '\\' ? CommandName(std::string_view(initials).substr(at)) : "";
    if (initials[at] == '\\') {
      loud += "\\" + name;
      at += 1 + name.size();
    } else {
      loud += PlainUpper(initials.substr(at++, 1));
    }
  }
  return loud;
}

using Name = std::pair<std::string, std::string>;  // the surname and the initials
using Names = std::vector<Name>;

bool InitialsFirst(const std::vector<std::string>& parts, Names& names) {
  if (parts.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < parts.size(); i += 2) {
    if (!Has(parts[i], ".") || Has(parts[i + 1], ".") || Has(parts[i + 1], " ")) return false;
    names.emplace_back(parts[i + 1], Initials(LoudInitials(parts[i])));
  }
  return true;
}

bool SurnameFirst(const std::vector<std::string>& parts, Names& names) {
  std::vector<std::string> waiting;
  for (const std::string& part : parts) {
    if (Has(part, ".")) {
      if (waiting.empty()) return false;
      names.emplace_back(waiting[0], Initials(part));
      waiting.clear();
    } else {
      if (Has(part, " ")) return false;
      waiting.push_back(part);
    }
  }
  return waiting.empty();
}

bool WordPairs(const std::vector<std::string>& parts, Names& names) {
  if (parts.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < parts.size(); i += 2) {
    if (Has(parts[i], " ") || Has(parts[i + 1], " ")) return false;
    names.emplace_back(parts[i + 1], Initials(parts[i]));
  }
  return true;
}

bool CommaNames(const std::vector<std::string>& parts, Names& names) {
  static const std::set<std::string> suffixes{"Jr", "Sr", "II", "III", "IV"};
  for (const std::string& part : parts) {
    const std::size_t comma = part.find(',');
    if (comma == std::string::npos || Has(part, ".")) return false;
    std::string surname = Stripped(part.substr(0, comma), " ");
    if (surname.empty()) return false;
    std::string rest = part.substr(comma + 1);
    const std::size_t second = rest.find(',');
    if (second != std::string::npos) {
      const std::string middle = Stripped(rest.substr(0, second), " ");
      if (suffixes.contains(middle)) {
        surname += " " + middle;
        rest.erase(0, second + 1);
      }
    }
    names.emplace_back(surname, InitialsOrCapitals(Stripped(rest, " ")));
  }
  return true;
}

/// Cuts `text` after its last stop outside braces: what is after it is returned, and the stop is
/// given. Of "\~" and "\." the second byte is no stop.
std::string CutLastWord(std::string& text, const std::string& stops, std::string& stop) {
  std::string word;  // backwards
  int depth = 0;
  for (stop.clear(); !text.empty(); text.pop_back()) {
    const char byte = text.back();
    const bool is_accent = byte != ' ' && text.size() > 1 && text[text.size() - 2] == '\\';
    if (byte == '}') ++depth;
    if (byte == '{' && depth > 0) --depth;
    if (depth == 0 && IsAmong(byte, stops) && !is_accent) {
      stop = std::string(1, byte);
      break;
    }
    word += byte;
  }
  return {word.rbegin(), word.rend()};
}

/// Without those of `bytes` that are no accents.
std::string Without(const std::string& text, const std::string& bytes) {
  std::string kept;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool is_accent = text[at] != ' ' && at > 0 && text[at - 1] == '\\';
    if (is_accent || !IsAmong(text[at], bytes)) kept += text[at];
  }
  return kept;
}

std::string StrippedEnd(std::string text, const std::string& bytes) {
  while (!text.empty() && IsAmong(text.back(), bytes)) text.pop_back();
  return text;
}

bool FullNames(const std::vector<std::string>& parts, Names& names) {
  static const std::set<std::string> suffixes{"Jr", "Jr.", "Sr.", "Sr"};
  for (const std::string& part : parts) {
    std::string first_names = Stripped(part, " ~");
    std::string stop;
    std::string surname = CutLastWord(first_names, " ~", stop);
    if (stop.empty()) return false;
    first_names.pop_back();
    surname = Without(surname, " ");
    std::string before = StrippedEnd(first_names, " ~.");
    if (suffixes.contains(surname) && !before.empty()) {
      surname = Without(CutLastWord(before, " ~.", stop), " ~.") + " " + surname;
      first_names = before;
    }
    names.emplace_back(surname, InitialsOrCapitals(Stripped(first_names, " ~")));
  }
  return true;
}

std::string Joined(const Names& names) {
  std::string list;
  for (const auto& [surname, initials] : names) {
    list += PlainUpper(surname.substr(0, 1)) + surname.substr(1) + ", " + initials + "and ";
  }
  return list.substr(0, list.size() - 5);
}

/// The first form of a list that fits, 3 to 7, and the list in the normal form; 0 when none fits.
int Recognise(const std::string& list, std::string& result) {
  const bool has_comma = Has(list, ",");
  const bool has_and = Has(list, "and");
  const bool has_dot = Has(list, ".");
  const std::vector<std::string> parts = Parts(list);
  const auto fits = [&](bool may, bool (*read)(const std::vector<std::string>&, Names&)) {
    Names names;
    if (!may || !read(parts, names) || names.empty()) return false;
    result = Joined(names);
    return true;
  };
  if (fits(!has_comma && has_and && has_dot, InitialsFirst)) return 3;
  if (fits(!has_comma && has_and && has_dot, SurnameFirst)) return 4;
  if (fits(!has_comma && has_and && !has_dot, WordPairs)) return 5;
  if (fits(has_comma && has_and, CommaNames)) return 6;
  if (fits(!has_comma, FullNames)) return 7;
  return 0;
}

std::string WithParticles(std::string list) {
  for (const std::string particle : {"Von", "Van", "Di", "De", "Da", "Del", "Della"}) {
    const std::string wanted = " " + particle + " ";
    for (std::size_t at = 0; at < list.size(); ++at) {
      if (list.compare(at, wanted.size(), wanted) == 0) {
        list[at + 1] = static_cast<char>(list[at + 1] - 'A' + 'a');
      }
    }
  }
  return PlainUpper(list.substr(0, 1)) + (list.empty() ? "" : list.substr(1));
}

bool IsWord(const std::string& text) {
  for (const char byte : text) {
    if (byte < '!' || byte > '~' || byte == ',' || byte == '.') return false;
  }
  return true;
}

}  // namespace

std::string PlainNewAuthorList(const std::string& old_list, int& flag) {
  const bool is_braced = old_list.substr(0, 1) == "{" && old_list.back() == '}';
  flag = is_braced ? 1 : 2;
  if (is_braced || IsWord(old_list)) return WithParticles(old_list);
  std::string shortened = old_list;
  bool has_others = false;
  for (const std::string form : {"{\\ldots}", "\\ldots", "{\\it et al}", "and et al.", "and et al",
                                 "et al.", "et al", "and Others"}) {
    if (PlainReplaceString(shortened, form, "")) has_others = true;
  }
  const std::string list = WithSmallAnd(shortened);
  std::string result = list;
  flag = Recognise(list, result);
  return WithParticles(result + (has_others ? " {\\ldots}" : ""));
}

}  // namespace tarvel::testing
