// SPDX-License-Identifier: MIT
#include "ops/authors/author_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "core/byte_set.h"
#include "core/text_primitives.h"
#include "core/utf8.h"

namespace tarvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr ByteSet kWordSeparators(" -~.");
constexpr std::string_view kAccentBytes = "'\"^~";
// Symbols that put an accent on the letter after them when a backslash stands before.
constexpr std::string_view kAccentSymbols = "'`\"^~=.";
// Control words of one letter that put an accent on the letter after them.
constexpr std::string_view kAccentCommands = "vrcHukdbt";

/// A letter that LaTeX writes as a control word.
struct LetterCommand {
  std::string_view name;
  std::string_view upper;
};

// The dotless letters become plain ones: a capital has no dot to lose.
constexpr std::array<LetterCommand, 22> kLetterCommands{
    {{"o", "\\O"},   {"O", "\\O"},   {"l", "\\L"},   {"L", "\\L"},   {"aa", "\\AA"}, {"AA", "\\AA"},
     {"ae", "\\AE"}, {"AE", "\\AE"}, {"oe", "\\OE"}, {"OE", "\\OE"}, {"ss", "\\SS"}, {"SS", "\\SS"},
     {"dh", "\\DH"}, {"DH", "\\DH"}, {"dj", "\\DJ"}, {"DJ", "\\DJ"}, {"ng", "\\NG"}, {"NG", "\\NG"},
     {"th", "\\TH"}, {"TH", "\\TH"}, {"i", "I"},     {"j", "J"}}};

/// Particles that lose their capital. "Le" and "La" keep it.
constexpr std::array<std::string_view, 7> kParticles{" Von ", " Van ", " Di ",   " De ",
                                                     " Da ",  " Del ", " Della "};

bool IsAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

/// The number of bytes of the letter at `at`, or 0. A UTF-8 character counts as one letter, and so
/// does a byte above 127 that begins none.
std::size_t LetterSize(std::string_view text, std::size_t at) {
  if (IsAscii(text[at])) return IsLetter(text[at]) ? 1 : 0;
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t wanted = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  std::size_t size = 1;
  while (size < wanted && at + size < text.size() && ContinuesUtf8(text[at + size])) {
    ++size;
  }
  return size == wanted ? size : 1;
}

/// The letters of the control word after the backslash at `at`; empty when none stands there.
std::string_view ControlWord(std::string_view text, std::size_t at) {
  std::size_t end = at + 1;
  while (end < text.size() && IsLetter(text[end])) ++end;
  return text.substr(at + 1, end - at - 1);
}

const LetterCommand* FindLetterCommand(std::string_view name) {
  const auto* found = std::find_if(kLetterCommands.begin(), kLetterCommands.end(),
                                   [name](const LetterCommand& row) { return row.name == name; });
  return found == kLetterCommands.end() ? nullptr : found;
}

bool IsAccentCommand(std::string_view name) {
  return name.size() == 1 && IsByteOf(name.front(), kAccentCommands);
}

/// The first byte after the LaTeX command at `at`; blanks after an accent belong to it.
std::size_t CommandEnd(std::string_view text, std::size_t at) {
  const std::string_view name = ControlWord(text, at);
  std::size_t end = at + 1 + name.size();
  bool accent = IsAccentCommand(name);
  if (name.empty() && end < text.size() && text[end] != ' ') {
    accent = IsByteOf(text[end], kAccentSymbols);
    ++end;
  }
  return accent ? std::min(text.find_first_not_of(' ', end), text.size()) : end;
}

std::size_t WordEnd(std::string_view text, std::size_t at) {
  while (at < text.size() && !kWordSeparators.Holds(text[at])) {
    at = text[at] == '\\' ? CommandEnd(text, at) : at + 1;
  }
  return at;
}

/// Copies the letter at `at` upper-cased; returns its size, 0 when there is none.
std::size_t CopyLetter(std::string_view word, std::size_t at, std::string& initial) {
  const std::size_t size = LetterSize(word, at);
  if (size == 1) {
    initial.push_back(ToUpper(word[at]));
  } else {
    initial.append(word.substr(at, size));
  }
  return size;
}

/// Copies the command at `at`, a backslash, as far as it belongs to an initial, and returns the
/// offset after it. Sets `is_letter` where the command is the letter that the initial is of.
std::size_t CopyCommand(std::string_view word, std::size_t at, std::string& initial,
                        bool& is_letter) {
  const std::string_view name = ControlWord(word, at);
  if (name.empty()) {
    // An accent of one byte: of a byte from 128 on only the backslash is copied.
    const bool accent = at + 1 < word.size() && !IsByteOf(word[at + 1], "{} ");
    if (accent) initial.push_back('\\');
    if (accent && IsAscii(word[at + 1])) initial.push_back(word[++at]);
    return at + 1;
  }
  at += 1 + name.size();
  if (const LetterCommand* letter = FindLetterCommand(name)) {
    initial.append(letter->upper);
    is_letter = true;
    return at;
  }
  std::string_view command = name;
  // An accent glued to its letter, as in "\vS".
  if (name.size() > 1 && IsAccentCommand(name.substr(0, 1)) && name[1] == ToUpper(name[1])) {
    command = name.substr(0, 1);
    at -= name.size() - 1;
  }
  initial.append("\\").append(command);
  if (at < word.size() && word[at] == ' ') initial.push_back(' ');
  return at;
}

/// The initial of one word; false when it holds no letter.
bool CopyInitial(std::string_view word, std::string& initial) {
  if (CopyAccentedInitial(word, initial)) return true;
  const std::size_t size = CopyLetter(word, 0, initial);
  if (size != 0 && size < word.size() && word[size] == 'h') initial.push_back('h');
  return size != 0;
}

bool IsJoinedByHyphen(std::string_view names, std::size_t word_end) {
  return names.substr(word_end).starts_with('-') || names.substr(word_end).starts_with(".-");
}

void LowerCaseWord(std::string& list, std::string_view word) {
  for (std::size_t at = list.find(word); at != kNone; at = list.find(word, at + 1)) {
    const std::size_t after = at + word.size();
    const bool between_blanks =
        at > 1 && list[at - 1] == ' ' && after < list.size() && list[after] == ' ';
    if (between_blanks) list.replace(at, word.size(), "and");
  }
}

}  // namespace

void LowerCaseAnd(std::string_view list, std::string& result) {
  result.assign(list);
  LowerCaseWord(result, "And");
  LowerCaseWord(result, "AND");
}

void AbbreviateFirstNames(std::string_view names, std::string& initials) {
  initials.clear();
  std::string initial;
  std::size_t at = kWordSeparators.FindOther(names, 0);
  while (at < names.size()) {
    const std::size_t end = WordEnd(names, at);
    if (CopyInitial(names.substr(at, end - at), initial)) {
      initials.append(initial).append(IsJoinedByHyphen(names, end) ? ".-" : ". ");
    }
    at = kWordSeparators.FindOther(names, end);
  }
}

bool CopyAccentedInitial(std::string_view word, std::string& initial) {
  initial.clear();
  if (word.empty() || word.front() == ' ' || LetterSize(word, 0) != 0) return false;
  std::size_t depth = 0;  // of the braces that were copied
  bool has_letter = false;
  for (std::size_t at = 0; at < word.size() && !has_letter;) {
    const char byte = word[at];
    if (byte == '\\') {
      at = CopyCommand(word, at, initial, has_letter);
      continue;
    }
    const std::size_t size = CopyLetter(word, at, initial);
    has_letter = size != 0;
    at += std::max<std::size_t>(size, 1);
    const bool closes = byte == '}' && depth > 0;
    if (byte == '{') ++depth;
    if (closes) --depth;
    if (byte == '{' || closes || IsByteOf(byte, kAccentBytes)) initial.push_back(byte);
  }
  if (!has_letter) {
    initial.clear();
    return false;
  }
  initial.append(depth, '}');
  return true;
}

bool InitialsFromCapitals(std::string& word) {
  const auto fits = [](char byte) { return byte == '-' || (byte >= 'A' && byte <= 'Z'); };
  if (!std::all_of(word.begin(), word.end(), fits)) return false;
  MakeInitials(word);
  return true;
}

void MakeInitials(std::string& word) {
  std::string initials;
  for (std::size_t at = 0; at < word.size();) {
    const std::size_t size = LetterSize(word, at);
    if (size != 0) initials.append(word, at, size).append(". ");
    if (word[at] == '-' && initials.ends_with(' ')) initials.back() = '-';
    at += std::max<std::size_t>(size, 1);
  }
  word = std::move(initials);
}

void NormaliseParticles(std::string& list) {
  // One pass for all, as a search for each took a quarter of Clean authors.
  for (std::size_t at = list.find(' '); at != kNone; at = list.find(' ', at + 1)) {
    const std::string_view rest = std::string_view(list).substr(at);
    const bool is_particle =
        std::any_of(kParticles.begin(), kParticles.end(),
                    [rest](std::string_view particle) { return rest.starts_with(particle); });
    if (is_particle) list[at + 1] = ToLower(list[at + 1]);
  }
  if (!list.empty()) list.front() = ToUpper(list.front());
}

bool IsSingleWord(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char byte) {
    return byte >= '!' && byte <= '~' && byte != ',' && byte != '.';
  });
}

}  // namespace tarvel
