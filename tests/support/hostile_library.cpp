// SPDX-License-Identifier: MIT
#include "tests/support/hostile_library.h"

#include <array>
#include <cstdlib>
#include <vector>

namespace tarvel::testing {

namespace {

using std::string_view_literals::operator""sv;

constexpr std::array kTypes{"article"sv,
                            "article"sv,
                            "article"sv,
                            "letter"sv,
                            "review"sv,
                            "book"sv,
                            "book"sv,
                            "inproceedings"sv,
                            "conference"sv,
                            "unpublished"sv,
                            "inbook"sv,
                            "techreport"sv,
                            "phdthesis"sv,
                            "incollection"sv,
                            "meetingabstract"sv,
                            "editorialmaterial"sv,
                            "masterthesis"sv,
                            "proceedingspaper"sv,
                            "booklet"sv,
                            "manual"sv,
                            "standard"sv,
                            "electronic"sv,
                            "electronic"sv,
                            "periodical"sv,
                            "proceedings"sv,
                            "patent"sv,
                            "patent"sv,
                            "misc"sv,
                            "misc"sv,
                            "other"sv,
                            "other"sv,
                            "other"sv,
                            "mastersthesis"sv,
                            "articles"sv,
                            "article "sv,
                            "electronic "sv};

constexpr std::array kKeys{"a"sv, "a"sv, "a"sv,  "b"sv,   "b"sv,        "k1"sv,    "k1"sv,
                           "c"sv, ""sv,  " a"sv, "a b"sv, "\xc3\xa4"sv, "title"sv, "year1"sv};

constexpr std::array kTags{"journal"sv, "year"sv,        "pages"sv,  "volume"sv,
                           "author"sv,  "title"sv,       "note"sv,   "url"sv,
                           "number"sv,  "nationality"sv, "comment"sv};

constexpr std::array kOddTags{"booktitle"sv, "abstract"sv, "doi"sv, "yearfiled"sv,
                              "owner"sv,     "NOTES"sv,    "x"sv,   "key = {year} title"sv};

constexpr std::array kValues{"x"sv,
                             "x"sv,
                             "x"sv,
                             "x"sv,
                             "x"sv,
                             "y"sv,
                             "y"sv,
                             "X"sv,
                             ""sv,
                             "12-15"sv,
                             "12--19"sv,
                             "12"sv,
                             "-3"sv,
                             "--"sv,
                             "{x}"sv,
                             "{x} y"sv,
                             "x  y"sv,
                             "x y"sv,
                             "x\ny"sv,
                             "x\n   y"sv,
                             "x\n\n \ny"sv,
                             "x\n}y"sv,
                             "x\n"sv,
                             "\nx"sv,
                             "\n"sv,
                             "x{"sv,
                             "x}"sv,
                             "x}}"sv,
                             "{x"sv,
                             "%s%n"sv,
                             "Journal"sv,
                             "a comment"sv,
                             "@ x {y}"sv,
                             "\xc3\xa4"sv,
                             "x\n\xc3\xa4 y"sv,
                             "12\n-15"sv,
                             "x\n@article{b,\n"sv,
                             "x\n@book{a,\ntitle = {x}"sv};

constexpr std::array kEntryEnds{"}\n"sv, "}\n"sv,     "}\n"sv,    "}\n\n"sv,     "}\n\n"sv,
                                "\n"sv,  " }\n"sv,    "}}\n"sv,   "} title\n"sv, "} year = {x}\n"sv,
                                ""sv,    "}text\n"sv, "}\n}\n"sv, "}"sv};

constexpr std::array kLinesBetween{"\n"sv,
                                   "free text\n"sv,
                                   "title = {stray}\n"sv,
                                   "}\n"sv,
                                   "@string{jf = {Journal}}\n"sv,
                                   "@preamble{\"x\"}\n"sv,
                                   "@comment{jabref-meta: groups;}\n"sv,
                                   "@COMMENT{JABREF-META: x,\n"sv,
                                   "@Comment{JabRef-entrytype: y}\n}\n"sv,
                                   "@comment{jabref"sv,
                                   "me@home.org\n"sv,
                                   "@\n"sv,
                                   "mail x@y, see @book{a, {\n"sv,
                                   "@comment{other}\n"sv,
                                   "{\n"sv,
                                   "% @article{a,\n"sv,
                                   " \t\n"sv};

// Around the limits of the operations and of the continuation lines.
constexpr std::array<std::size_t, 6> kLimits{999, 4999, 5000, 9998, 24999, 25000};

}  // namespace

std::string HostileLibraries::AnyCase(std::string_view text) {
  const std::size_t style = Below(4);  // as it is, upper, mixed
  std::string result(text);
  for (char& byte : result) {
    const bool upper = style == 1 || (style == 2 && Once(2));
    if (upper && byte >= 'a' && byte <= 'z') byte = static_cast<char>(byte - 'a' + 'A');
  }
  return result;
}

std::string HostileLibraries::Filler() {
  return std::string(kLimits[Below(kLimits.size())] - 20 + Below(24), Once(3) ? ' ' : 'f');
}

std::string HostileLibraries::Value() {
  std::string value(OneOf(kValues));
  if (Once(400)) value += Filler() + (Once(2) ? "\n}\n" : "x");
  return value;
}

std::string HostileLibraries::TagLine(std::string_view name) {
  std::string line = Once(8) ? "" : "  ";
  line += AnyCase(name) + (Once(6) ? "=" : " = ");
  const std::size_t form = Below(30);
  if (form == 0) return line + "\"" + Value() + "\",\n";
  if (form == 1) return line + "x,\n";
  if (form == 2) return line + "\n   {" + Value() + "},\n";
  if (form == 3) return line + "{" + Value() + ",\n";
  if (form == 4) return line + "{" + Value() + "}";
  if (form == 5) return line + "{" + Value() + "} # {y},\n";
  return line + "{" + Value() + "},\n";
}

std::string HostileLibraries::Entry() {
  std::string entry = Once(12) ? "} @" : "@";
  entry += AnyCase(OneOf(kTypes));
  entry += Once(60) ? "," : "{";
  entry += AnyCase(OneOf(kKeys));
  if (Once(300)) entry += Filler();
  entry += Once(40) ? "\n" : ",\n";
  // Mostly one value for all tags, so that whole entries are equal often.
  const bool usual = !Once(3);
  for (const std::string_view tag : kTags) {
    if (Once(12)) continue;
    if (usual && !Once(15)) {
      entry += "  " + std::string(tag) + " = {x},\n";
    } else {
      entry += TagLine(tag);
    }
    if (Once(40)) entry += TagLine(OneOf(kOddTags));
    if (Once(60)) entry += TagLine(OneOf(kTags));
    if (Once(250)) entry += "  abstract = {" + Filler() + "},\n";
  }
  if (Once(12) && entry.ends_with(",\n")) entry.resize(entry.size() - 2);
  return entry.append(OneOf(kEntryEnds));
}

std::string HostileLibraries::Between() {
  std::string text(OneOf(kLinesBetween));
  if (Once(100)) text += Filler() + (Once(2) ? "@book{a,\n" : "}\n");
  return text;
}

void HostileLibraries::Spoil(std::string& library) {
  constexpr std::array kBytes{"{"sv, "}"sv, "@"sv, "\n"sv, ","sv, "="sv, "\0"sv, "\r"sv, "\xff"sv};
  for (std::size_t times = Once(2) ? Below(4) : 0; times > 0 && !library.empty(); --times) {
    library.replace(Below(library.size()), Below(2), OneOf(kBytes));
  }
  if (Once(12)) {
    for (std::size_t at = 0; (at = library.find('\n', at)) != std::string::npos; at += 2) {
      library.insert(at, 1, '\r');
    }
  }
  if (Once(6)) {
    while (library.ends_with('\n')) library.pop_back();
  }
}

std::string HostileLibraries::Next() {
  std::string library;
  for (std::size_t left = Once(25) ? 0 : Below(7); left > 0; --left) {
    while (Once(4)) library += Between();
    library += Entry();
  }
  while (Once(4)) library += Between();
  Spoil(library);
  return library;
}

std::string HostileLibraries::NestedEntry() {
  constexpr std::array kOpening{""sv, ""sv, "{"sv, "{{"sv, "{{{"sv, "{\n{ "sv};
  std::string entry = "@" + AnyCase(OneOf(kTypes)) + "{" + AnyCase(OneOf(kKeys)) + ",\n";
  for (const std::string_view tag : kTags) {
    const std::string_view opening = Once(6) ? OneOf(kOpening) : ""sv;
    entry.append(tag).append(" = {").append(opening).append(Once(12) ? OneOf(kValues) : "x"sv);
    entry += Once(20) ? "\n" : "},\n";
  }
  if (Once(20)) entry += std::string(1 + Below(60), '}') + "\n";
  if (Once(20)) entry += std::string(Below(4), '\n') + " \n";
  if (Once(60)) entry += Filler() + "\n";
  return entry += Once(5) ? "" : "}\n\n";
}

std::string HostileLibraries::NextNested() {
  std::string library;
  for (std::size_t left = 2 + Below(24); left > 0; --left) library += NestedEntry();
  for (std::size_t left = Once(2) ? Below(40) : 0; left > 0; --left) library += "}}\n";
  Spoil(library);
  return library;
}

std::string HostileLibraries::Related(std::string_view other) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (std::size_t at = 1; at <= other.size(); ++at) {
    if (at != other.size() && other[at] != '@') continue;
    parts.emplace_back(other.substr(start, at - start));
    start = at;
  }
  std::string library;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (Once(4)) library += Entry();
    if (Once(6)) continue;
    std::string part = Once(4) ? parts[Below(parts.size())] : parts[i];
    const std::size_t key = part.find('{');
    if (Once(5) && key != std::string::npos) part.insert(key + 1, OneOf(kKeys));
    library += part;
  }
  Spoil(library);
  return library;
}

int RandomRuns(int usual) {
  const char* runs = std::getenv("TARVEL_RANDOM_RUNS");
  return runs ? std::atoi(runs) : usual;
}

}  // namespace tarvel::testing
