// SPDX-License-Identifier: MIT
#include "ops/authors/author_names.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace tarvel {
namespace {

using namespace std::string_view_literals;

struct Row {
  std::string_view text;
  std::string_view result;
  std::string_view says;
};

struct TestedRow {
  std::string_view text;
  bool accepted;
  std::string_view result;
  std::string_view says;
};

TEST(LowerCaseAnd, LowersTheWordBetweenBlanksOnly) {
  constexpr Row kRows[] = {
      {"A And B", "A and B", "between blanks"},
      {"A AND B", "A and B", "in capitals"},
      {"A And B AND C And D", "A and B and C and D", "each one"},
      {"A And And B", "A and and B", "two that share a blank"},
      {"A AND AND B", "A and and B", "two in capitals that share a blank"},
      {"A aND B", "A aND B", "other mixtures stay"},
      {"A AnD B", "A AnD B", "other mixtures stay"},
      {"A Anders B", "A Anders B", "a longer word stays"},
      {"A ANDERS B", "A ANDERS B", "a longer word in capitals stays"},
      {"A XAnd B", "A XAnd B", "a word that ends so stays"},
      {"A And", "A And", "no blank after it"},
      {"A AND", "A AND", "no blank after it"},
      {"And B", "And B", "no blank before it"},
      {" And B", " And B", "its blank is the first byte of the list"},
      {" AND B", " AND B", "its blank is the first byte of the list"},
      {" And And B", " And and B", "only the first one is left alone"},
      {"  And B", "  and B", "the second byte is blank enough"},
      {"A\tAnd B", "A\tAnd B", "a tab is no blank"},
      {"A~And~B", "A~And~B", "a tie is no blank"},
      {"", "", "nothing"},
      {" And ", " And ", "its blank is the first byte"},
      {"A And ", "A and ", "at the end"},
  };
  for (const Row& row : kRows) {
    std::string result = "old";
    LowerCaseAnd(row.text, result);
    EXPECT_EQ(result, row.result) << row.says;
  }
}

TEST(AbbreviateFirstNames, GivesEveryWordItsInitial) {
  constexpr Row kRows[] = {
      {"John", "J. ", "the blank after the last initial is kept"},
      {"john paul", "J. P. ", "upper-cased"},
      {"J", "J. ", "an initial without '.'"},
      {"J.", "J. ", "an initial with '.'"},
      {"J.P.", "J. P. ", "'.' ends a word"},
      {"J.  P.", "J. P. ", "blanks up to the next word are skipped"},
      {"J.~P.", "J. P. ", "a tie ends a word"},
      {"J.-P.", "J.-P. ", "'.' directly followed by '-'"},
      {"J. -P.", "J. P. ", "'.' followed by a blank first"},
      {"Jean-Paul", "J.-P. ", "a word that ended at '-'"},
      {"Jean - Paul", "J. P. ", "a word that ended at a blank"},
      {"Jean--Paul", "J.-P. ", "the second hyphen is skipped"},
      {"Jean-", "J.-", "the last initial too"},
      {"-Jean", "J. ", "a hyphen before the first word is skipped"},
      {"Christoph", "Ch. ", "'h' belongs to the initial"},
      {"thomas", "Th. ", "whatever the first letter"},
      {"CHristoph", "C. ", "a capital 'H' does not"},
      {"Ch.-Th.", "Ch.-Th. ", "in abbreviated names as well"},
      {"Hh", "Hh. ", "'h' after any letter"},
      {"h", "H. ", "'h' alone"},
      {"JP", "J. ", "one word, one initial"},
      {"", "", "no words"},
      {" -~.", "", "no words"},
      {"{\\'E}mile", "{\\'E}. ", "an accented initial is whole"},
      {"{\\v S}tefan Jan", "{\\v S}. J. ", "the blank of an accent ends no word"},
      {"\\v Stefan Jan", "\\v S. J. ", "without braces as well"},
      {"\\v  Stefan", "\\v S. ", "of several blanks one is kept"},
      {"{\\.Z}aneta", "{\\.Z}. ", "the '.' of an accent ends no word"},
      {"\\.{Z}aneta", "\\.{Z}. ", "without braces as well"},
      {"\\~Nico", "\\~N. ", "the '~' of an accent ends no word"},
      {"I\\~nigo", "I. ", "inside a word as well"},
      {"Fran{\\c c}ois", "F. ", "inside a word as well"},
      {"Fran\\c cois", "F. ", "inside a word as well"},
      {"Mar\\'\\i a", "M. A. ", "the blank after a letter command ends the word"},
      {"{John Paul}", "{J}. P. ", "braces alone hide no blank"},
      {"{\\sc John Paul}", "J. P. ", "and no other command does"},
      {"{\\'Emile Jean", "{\\'E}. J. ", "nor do braces around an accent"},
      {"{\\'Etienne-Jean}", "{\\'E}.-J. ", "nor a hyphen"},
      {"\\' Etienne", "\\'E. ", "a blank between an accent and its letter belongs to both"},
      {"\\& Sons", "S. ", "other symbols are no accents"},
      {"1 John ?", "J. ", "a word without a letter gives nothing"},
      {"3rd", "R. ", "the first letter counts"},
      {"{} John", "J. ", "empty braces give nothing"},
      {"\\", "", "a backslash alone"},
      {"\\ John", "J. ", "a backslash before a blank"},
      {"\xC3\x89mile", "\xC3\x89. ", "a UTF-8 character is one letter"},
      {"\xC3\xA9mile", "\xC3\xA9. ", "bytes above 127 are not upper-cased"},
      {"\xC3\x89hm", "\xC3\x89h. ", "the letter after it is the second character"},
      {"\xE6\x98\x8E\xE6\x98\x8E", "\xE6\x98\x8E. ", "three bytes"},
      {"\xF0\x90\x8D\x88x", "\xF0\x90\x8D\x88. ", "four bytes"},
      {"\xC9mile", "\xC9. ", "a Latin-1 letter"},
      {"\xE6\x98", "\xE6. ", "a character that is cut short"},
      {"J\0P"sv, "J. ", "a zero byte ends no word"},
  };
  for (const Row& row : kRows) {
    std::string result = "old";
    AbbreviateFirstNames(row.text, result);
    EXPECT_EQ(result, row.result) << row.text << ": " << row.says;
  }
}

TEST(CopyAccentedInitial, CopiesTheConstructAndItsLetter) {
  constexpr TestedRow kRows[] = {
      {"John", false, "", "begins with a letter"},
      {" {\\'E}", false, "", "begins with a blank"},
      {"", false, "", "nothing"},
      {"{}", false, "", "no letter"},
      {"12", false, "", "no letter"},
      {"\\", false, "", "no letter"},
      {"\xC3\x89mile", false, "", "begins with a UTF-8 letter"},
      {"{\\'e}mile", true, "{\\'E}", "upper-cased"},
      {"{\\'e}{\\'e}", true, "{\\'E}", "it stops after the first letter"},
      {"\\'emile", true, "\\'E", "no braces"},
      {"\\'{e}mile", true, "\\'{E}", "braces after the accent"},
      {"{\\'{e}}mile", true, "{\\'{E}}", "braces in braces"},
      {"{\\\"o}", true, "{\\\"O}", "quotation mark"},
      {"{\\^o}", true, "{\\^O}", "circumflex"},
      {"{\\~o}", true, "{\\~O}", "tilde"},
      {"{\\`o}", true, "{\\`O}", "any character after a backslash"},
      {"\"o", true, "\"O", "a quotation mark alone is copied"},
      {"'o", true, "'O", "an apostrophe alone is copied"},
      {"^o", true, "^O", "a circumflex alone is copied"},
      {"~o", true, "~O", "a tie alone is copied"},
      {"(o)", true, "O", "other characters are dropped"},
      {"[1]o", true, "O", "other characters are dropped"},
      {"\\v{s}tefan", true, "\\v{S}", "the accent v keeps its letter"},
      {"\\r{a}ke", true, "\\r{A}", "the accent r keeps its letter"},
      {"\\c{c}etin", true, "\\c{C}", "the accent c keeps its letter"},
      {"\\vStefan", true, "\\vS", "an accent glued to its letter"},
      {"{\\v s}tefan", true, "{\\v S}", "an accent and a blank"},
      {"{\\H{o}}rs", true, "{\\H{O}}", "the accent H"},
      {"{\\u g}", true, "{\\u G}", "the accent u"},
      {"{\\k e}", true, "{\\k E}", "the accent k"},
      {"{\\b o}", true, "{\\b O}", "the accent b"},
      {"{\\d o}", true, "{\\d O}", "the accent d"},
      {"{\\t oo}", true, "{\\t O}", "the accent t"},
      {"{\\o}ystein", true, "{\\O}", "a letter command is the letter"},
      {"{\\O}yvind", true, "{\\O}", "in capitals already"},
      {"{\\l}", true, "{\\L}", "l"},
      {"{\\aa}ke", true, "{\\AA}", "aa"},
      {"{\\AA}ke", true, "{\\AA}", "AA"},
      {"{\\ae}", true, "{\\AE}", "ae"},
      {"{\\oe}", true, "{\\OE}", "oe"},
      {"{\\ss}", true, "{\\SS}", "ss"},
      {"{\\dh}", true, "{\\DH}", "dh"},
      {"{\\dj}", true, "{\\DJ}", "dj"},
      {"{\\ng}", true, "{\\NG}", "ng"},
      {"{\\th}", true, "{\\TH}", "th"},
      {"\\o{}ystein", true, "\\O", "the empty braces after it are not needed"},
      {"{\\'\\i}", true, "{\\'I}", "a dotless letter has a plain capital"},
      {"{\\'{\\i}}", true, "{\\'{I}}", "in braces as well"},
      {"{\\v\\j}", true,
       "{\\v"
       "J}",
       "a dotless j"},
      {"\\emph{j}ohn", true, "\\emph{J}", "another command is kept"},
      {"{John}", true, "{J}", "braces are closed"},
      {"{{John", true, "{{J}}", "every one of them"},
      {"}John", true, "J", "a brace that opens nothing is dropped"},
      {"{}John", true, "{}J", "a pair is kept"},
      {"\\{John", true, "{J}", "a brace is a brace after a backslash"},
      {"{\xC3\x89}mile", true, "{\xC3\x89}", "a UTF-8 letter in braces"},
      {"\\\xC3\x89", true, "\\\xC3\x89", "a UTF-8 letter is not cut after a backslash"},
  };
  for (const TestedRow& row : kRows) {
    std::string result = "old";
    EXPECT_EQ(CopyAccentedInitial(row.text, result), row.accepted) << row.text << ": " << row.says;
    EXPECT_EQ(result, row.result) << row.text << ": " << row.says;
  }
}

/// Whether every "}" closes a "{" before it and none stays open.
bool IsBalanced(std::string_view text) {
  int depth = 0;
  for (const char byte : text) {
    depth += byte == '{' ? 1 : byte == '}' ? -1 : 0;
    if (depth < 0) return false;
  }
  return depth == 0;
}

TEST(AbbreviateFirstNames, GivesBalancedInitialsForAnyBytes) {
  constexpr std::string_view kBytes = "{{}}\\\\'\"^vcoaEh  .-~\xC3\xA9";
  std::mt19937 random(5102);
  for (int i = 0; i < 20000; ++i) {
    std::string names;
    for (auto left = random() % 16; left > 0; --left) names += kBytes[random() % kBytes.size()];
    std::string initials;
    AbbreviateFirstNames(names, initials);
    ASSERT_TRUE(IsBalanced(initials)) << names << " gives " << initials;
    ASSERT_TRUE(initials.empty() || initials.ends_with(". ") || initials.ends_with(".-")) << names;
    ASSERT_FALSE(initials.starts_with('.')) << names << " gives " << initials;
  }
}

TEST(InitialsFromCapitals, TakesWordsOfCapitalsAndHyphensOnly) {
  constexpr TestedRow kRows[] = {
      {"JP", true, "J. P. ", "capitals"},
      {"J-P", true, "J.-P. ", "capitals and a hyphen"},
      {"J", true, "J. ", "one capital"},
      {"AZ", true, "A. Z. ", "from A to Z"},
      {"", true, "", "an empty word"},
      {"-", true, "", "a hyphen alone"},
      {"Jp", false, "Jp", "a small letter"},
      {"J P", false, "J P", "a blank"},
      {"J.P.", false, "J.P.", "a '.'"},
      {"J~P", false, "J~P", "a tie"},
      {"{J}", false, "{J}", "braces"},
      {"J1", false, "J1", "a digit"},
      {"J@", false, "J@", "the byte before 'A'"},
      {"J[", false, "J[", "the byte after 'Z'"},
      {"\xC3\x89P", false, "\xC3\x89P", "an accented capital"},
      {"J\0P"sv, false, "J\0P"sv, "a zero byte"},
  };
  for (const TestedRow& row : kRows) {
    std::string word(row.text);
    EXPECT_EQ(InitialsFromCapitals(word), row.accepted) << row.says;
    EXPECT_EQ(word, row.result) << row.says;
  }
}

TEST(MakeInitials, GivesEveryLetterAPeriodAndABlank) {
  constexpr Row kRows[] = {
      {"JP", "J. P. ", "the trailing blank is kept"},
      {"J-P", "J.-P. ", "a hyphen takes the place of the blank"},
      {"J-P-R", "J.-P.-R. ", "each hyphen"},
      {"JPR", "J. P. R. ", "three"},
      {"J-", "J.-", "at the end"},
      {"-J", "J. ", "no blank was written yet"},
      {"J--P", "J.-P. ", "the second hyphen finds no blank"},
      {"jp", "j. p. ", "the letters stay as they are"},
      {"J.P 1", "J. P. ", "everything else is dropped"},
      {"\xC3\x89P", "\xC3\x89. P. ", "a UTF-8 character is one letter"},
      {"", "", "nothing"},
  };
  for (const Row& row : kRows) {
    std::string word(row.text);
    MakeInitials(word);
    EXPECT_EQ(word, row.result) << row.says;
  }
}

TEST(NormaliseParticles, LowersParticlesBetweenBlanks) {
  constexpr Row kRows[] = {
      {"A and Von B", "A and von B", "Von"},
      {"A and Van B", "A and van B", "Van"},
      {"A and Di B", "A and di B", "Di"},
      {"A and De B", "A and de B", "De"},
      {"A and Da B", "A and da B", "Da"},
      {"A and Le B", "A and Le B", "Le stays"},
      {"A and La B", "A and La B", "La stays"},
      {"A and Del B", "A and del B", "Del"},
      {"A and Della B", "A and della B", "Della"},
      {"A Von B Von C", "A von B von C", "every one"},
      {"A De De De B", "A de de de B", "those that share a blank as well"},
      {"A  De B", "A  de B", "after two blanks"},
      {"A Van De B", "A van de B", "one after the other"},
      {"A De La B", "A de La B", "one after the other"},
      {"Von B", "Von B", "not at the start of the list"},
      {"A Von", "A Von", "not at its end"},
      {"A VON B", "A VON B", "not in capitals"},
      {"A Vons B", "A Vons B", "not in a longer word"},
      {"A~Von B", "A~Von B", "a tie is no blank"},
      {"{A De B}", "{A de B}", "in braces as well"},
      {"von B", "Von B", "the first byte is upper-cased"},
      {"a", "A", "the first byte is upper-cased"},
      {"{a}", "{a}", "a brace is the first byte"},
      {" a", " a", "a blank is the first byte"},
      {" De B", " de B", "a blank may be the first byte"},
      {"\xC3\xA9", "\xC3\xA9", "bytes above 127 stay"},
      {"", "", "nothing"},
  };
  for (const Row& row : kRows) {
    std::string list(row.text);
    NormaliseParticles(list);
    EXPECT_EQ(list, row.result) << row.says;
  }
}

TEST(IsSingleWord, KnowsEveryByte) {
  for (int code = 0; code < 256; ++code) {
    const char byte = static_cast<char>(code);
    const bool in_ranges =
        (byte >= '!' && byte <= '+') || byte == '-' || (byte >= '/' && code < 127);
    EXPECT_EQ(IsSingleWord(std::string("a") + byte), in_ranges) << code;
  }
  EXPECT_TRUE(IsSingleWord(""));
}

}  // namespace
}  // namespace tarvel
