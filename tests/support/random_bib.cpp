// SPDX-License-Identifier: MIT
#include "tests/support/random_bib.h"

#include <array>

namespace tarvel::testing {

namespace {

using namespace std::string_view_literals;

constexpr std::array kTypes{"article"sv,       "book"sv,         "inproceedings"sv, "phdthesis"sv,
                            "mastersthesis"sv, "incollection"sv, "misc"sv,          "online"sv,
                            "thesis"sv,        "report"sv,       "electronic"sv,    "booklet"sv,
                            "collection"sv,    "patent"sv,       "other"sv,         "nonsense"sv,
                            "proceedings"sv,   "conference"sv};

constexpr std::array kNames{
    "author"sv,       "title"sv,     "journal"sv,      "year"sv,      "volume"sv,
    "pages"sv,        "publisher"sv, "address"sv,      "booktitle"sv, "editor"sv,
    "school"sv,       "note"sv,      "url"sv,          "number"sv,    "comment"sv,
    "month"sv,        "abstract"sv,  "doi"sv,          "file"sv,      "owner"sv,
    "timestamp"sv,    "date"sv,      "journaltitle"sv, "location"sv,  "subtitle"sv,
    "institution"sv,  "numpages"sv,  "shortauthor"sv,  "annote"sv,    "howpublished"sv,
    "keywords"sv,     "urldate"sv,   "type"sv,         "series"sv,    "eprinttype"sv,
    "booksubtitle"sv, "my-note"sv,   "x_1"sv,          "e@mail"sv,    "isbn"sv,
    "volumes"sv,      "notes"sv,     "language"sv,     "key"sv,       "journal.x"sv};

constexpr std::array kWords{"the"sv,
                            "of"sv,
                            "DNA"sv,
                            "journal"sv,
                            "Journal"sv,
                            "year"sv,
                            "Years"sv,
                            "author"sv,
                            "AUTHORS"sv,
                            "title"sv,
                            "volume"sv,
                            "pages"sv,
                            "note"sv,
                            "Notes"sv,
                            "url"sv,
                            "number"sv,
                            "comment"sv,
                            "school"sv,
                            "publisher"sv,
                            "address"sv,
                            "editor"sv,
                            "nationality"sv,
                            "timestamp"sv,
                            "jour nal"sv,
                            "url={x}"sv,
                            "doi = {"sv,
                            "a@b.c"sv,
                            "@book"sv,
                            "@article{x,"sv,
                            "@comment{jabref"sv,
                            "\\url{http://journal.x/year}"sv,
                            "\\title"sv,
                            "\\'e"sv,
                            "{\\\"o}"sv,
                            "{\\O}"sv,
                            "\\verb|author|"sv,
                            "$x_{1}$"sv,
                            "and"sv,
                            "Doe, J."sv,
                            "et al."sv,
                            "2001"sv,
                            "caf\xc3\xa9"sv,
                            "\xc3\x89tude"sv,
                            "\xff"sv,
                            "="sv,
                            "#"sv,
                            "%"sv,
                            "\\relax"sv,
                            "?"sv,
                            "author ="sv,
                            "booktitle"sv,
                            "}"sv,
                            "{"sv,
                            "\\cite[see][]{author}"sv,
                            "\\href{http://note}{note}"sv,
                            "{}"sv,
                            "{{}}"sv,
                            "\\/"sv};

constexpr std::array kWhite{" "sv,    "  "sv,   "\n"sv,   "\t"sv,
                            "\r\n"sv, "\n  "sv, "\n\n"sv, " \n\t "sv};
constexpr std::array kStrings{"jan"sv, "DEC"sv, "one"sv, "Two"sv, "nowhere"sv};
constexpr std::array kDates{
    "2001"sv,       "2001-03"sv, "2001-03-12"sv, "2001/2003"sv, "2001-12-01/2002"sv,
    "circa 1900"sv, "2001-13"sv, "20"sv,         ""sv};
constexpr std::array kBetween{
    "stray text"sv,
    "% author = {x}"sv,
    "@comment{jabref-meta: x}"sv,
    "}"sv,
    "@"sv,
    "a@b.c, d"sv,
    "@preamble{ \"\\newcommand{\\x}{y}\" # one }"sv,
    "@preamble{ {\\def\\journal@x{y}} }"sv,
    "@string{one = \"first  text\"}"sv,
    "@STRING( Two = one # { and journal } )"sv,
    "#\n\nThis BibTeX file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n"sv};

/// The text with as many closing braces as are open, and none that closes too much.
std::string Balance(const std::string& text) {
  std::string balanced;
  std::size_t depth = 0;
  for (const char byte : text) {
    if (byte == '}' && depth == 0) continue;
    if (byte == '{') ++depth;
    if (byte == '}') --depth;
    balanced += byte;
  }
  return balanced.append(depth, '}');
}

}  // namespace

std::string RandomBib::White() {
  std::string white;
  while (Once(2)) white += OneOf(kWhite);
  return white;
}

std::string RandomBib::AnyCase(std::string_view text) {
  std::string result(text);
  const std::size_t how = Below(4);
  for (std::size_t i = 0; i < result.size(); ++i) {
    if (how == 2 || (how == 3 && i == 0)) {
      if (result[i] >= 'a' && result[i] <= 'z') result[i] = static_cast<char>(result[i] - 32);
    }
  }
  return result;
}

/// A text that is balanced and holds no quote outside of braces.
std::string RandomBib::Text(std::size_t depth) {
  std::string text;
  const std::size_t words = Once(40) ? 300 : Below(7);
  for (std::size_t i = 0; i < words; ++i) {
    if (depth < 3 && Once(4)) {
      text += '{' + Text(depth + 1) + '}';
    } else {
      text += AnyCase(OneOf(kWords));
    }
    if (!Once(6)) text += Once(6) ? std::string(OneOf(kWhite)) : " ";
  }
  return Balance(text);
}

std::string RandomBib::Piece() {
  switch (Below(6)) {
    case 0:
    case 1:
      return '"' + Text(0) + '"';
    case 2:
      return std::to_string(Below(3000));
    case 3:
      return std::string(OneOf(kStrings));
    default:
      return '{' + Text(0) + '}';
  }
}

std::string RandomBib::Value() {
  if (Once(12)) return '{' + std::string(OneOf(kDates)) + '}';
  if (Once(8)) return "{{" + Text(0) + "}}";
  std::string value = Piece();
  while (Once(5)) value += White() + "#" + White() + Piece();
  return value;
}

std::string RandomBib::Body(const std::string& inner) {
  return Once(4) ? "(" + inner + ")" : "{" + inner + "}";
}

std::string RandomBib::Entry(std::size_t number) {
  std::string entry = "@" + White() + AnyCase(OneOf(kTypes)) + White();
  std::string inner = White();
  if (!Once(20)) inner += Once(10) ? "journal:" : Once(20) ? "a@b" : "k";
  inner += std::to_string(number);
  const std::size_t tags = Below(9);
  for (std::size_t i = 0; i < tags; ++i) {
    inner += White() + "," + White() + AnyCase(OneOf(kNames)) + White() + "=" + White() + Value();
  }
  if (Once(4)) {
    inner += ", crossref = {" + AnyCase("k") + std::to_string(Below(entries_ + 1)) + "}";
  }
  if (Once(3)) inner += White() + ",";
  return entry + Body(inner + White());
}

std::string RandomBib::Between() {
  if (Once(2)) return "\n";
  if (Once(3)) return White();
  return "\n" + std::string(OneOf(kBetween)) + "\n";
}

std::string RandomBib::Next() {
  std::string library = Once(10) ? "\xef\xbb\xbf" : "";
  entries_ = Below(8);
  for (std::size_t i = 0; i < entries_; ++i) library += Between() + Entry(i);
  return library + Between();
}

}  // namespace tarvel::testing
