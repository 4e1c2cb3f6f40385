// SPDX-License-Identifier: MIT
#include "ops/citations/key_map.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include "tests/support/plain_rekey.h"

namespace tarvel {
namespace {

std::string Rekeyed(std::string_view map_lines, std::string_view document) {
  KeyMap map;
  EXPECT_EQ(map.Read(map_lines), 0U);
  return ReplaceKeys(document, CiteCommands({"all"}), map).text;
}

TEST(KeyMap, IsWhatTheFileSays) {
  KeyMap map;
  EXPECT_EQ(map.Read("a\tb\r\nc\\td\\\\\te\\x7f\nlast\tz"), 0U);
  ASSERT_TRUE(map.Find("a"));
  EXPECT_EQ(*map.Find("a"), "b");
  ASSERT_TRUE(map.Find("c\td\\"));
  EXPECT_EQ(*map.Find("c\td\\"), "e\x7f");
  EXPECT_EQ(*map.Find("last"), "z");
  EXPECT_FALSE(map.Find("b"));
  EXPECT_EQ(KeyMap().Read(""), 0U);
}

TEST(KeyMap, RefusesOtherLines) {
  for (const std::string_view line :
       {"a", "a\tb\tc", "\tb", "a\t", "", "a\\q\tb", "a\\\tb", "a\\x7\tb", "a\\xZZ\tb", "a\tb{",
        "a\tb}", "a\tb,c", "a\t50%", "a\tb#", "a\tb~", "a\tb\\\\"}) {
    EXPECT_EQ(KeyMap().Read("x\ty\n" + std::string(line) + "\n"), 2U) << line;
  }
}

TEST(KeyMap, KnowsWhatIsInDoubt) {
  KeyMap map;
  EXPECT_EQ(map.Read("a\tb\na\tc\na\tb\nk\tk_a\nm\tm_aa\n"), 0U);
  EXPECT_EQ(*map.Find("a"), "b");
  EXPECT_EQ(map.Ambiguous(), std::vector<std::string>{"a"});
  EXPECT_EQ(map.Divided(), std::vector<std::string>{"k"});
}

TEST(ReplaceKeys, ChangesNothingElse) {
  EXPECT_EQ(Rekeyed("a\tnew\n", "\\citep[a][a]{ a ,%a\n b,aa}\r\n% \\cite{a}\n\\verb|\\cite{a}| a"),
            "\\citep[a][a]{ new ,%a\n b,aa}\r\n% \\cite{a}\n\\verb|\\cite{a}| a");
  EXPECT_EQ(Rekeyed("a\tb\nb\ta\n", "\\cites{a}{b,a}"), "\\cites{b}{a,b}") << "all at once";
  EXPECT_EQ(Rekeyed("a\tb\n", std::string_view("\0\xff no citation", 14)),
            std::string_view("\0\xff no citation", 14));
  EXPECT_EQ(Rekeyed("a\tb\n", "\\nocite{a}\\end{document}\\cite{a}"),
            "\\nocite{b}\\end{document}\\cite{a}");
  KeyMap map;
  EXPECT_EQ(map.Read("a\tb\n"), 0U);
  EXPECT_EQ(ReplaceKeys("\\cite{a,a} \\cite{c}", CiteCommands({"all"}), map).replaced, 2U);
}

TEST(ReplaceKeys, KeepsEveryByteOfAnyDocument) {
  const std::string_view pieces[] = {"\\cite",
                                     "\\cites",
                                     "\\volcite",
                                     "{",
                                     "}",
                                     "[",
                                     "]",
                                     "(",
                                     ")",
                                     "a",
                                     "b",
                                     ",",
                                     " ",
                                     "\n",
                                     "\r\n",
                                     "%",
                                     "\\",
                                     "*",
                                     "\\verb|",
                                     "|",
                                     "\\begin{verbatim}",
                                     "\\end{verbatim}",
                                     "\\iffalse",
                                     "\\fi",
                                     "\\input",
                                     "\\citep[see]{a,b}",
                                     std::string_view("\0", 1),
                                     "\xff"};
  KeyMap same;
  EXPECT_EQ(same.Read("a\ta\nb\tb\n"), 0U);
  KeyMap swapped;
  EXPECT_EQ(swapped.Read("a\tb\nb\ta\n"), 0U);
  std::mt19937 random(11);
  std::size_t replaced = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string document;
    for (std::size_t n = random() % 30; n > 0; --n)
      document += pieces[random() % std::size(pieces)];
    ASSERT_EQ(ReplaceKeys(document, CiteCommands({"all"}), same).text, document);
    const RekeyedDocument once = ReplaceKeys(document, CiteCommands({"all"}), swapped);
    ASSERT_EQ(once.text.size(), document.size());
    ASSERT_EQ(ReplaceKeys(once.text, CiteCommands({"all"}), swapped).text, document) << document;
    replaced += once.replaced;
  }
  EXPECT_GT(replaced, 2000U);
}

// Documents that hold all that the reader knows, by its side and in each other.
const std::string_view kRichDocuments[] = {
    "\\cite{a,b, one ,%a\r\n c d}\\citep[see][p. \\cite{k}]{a}\\cites(x)(y)[1]{a}[2]{b} "
    "\\cite*<b>{a}%\r\n\\cite\r\n{b}\\cite{a\r\n\r\nb}",
    "\\volcite[a]{b}[2]{a}\\Volcites(x)(y){2}{a}{3}[k]{b}\\shortcites{a}{b}\\footcitetexts{a}{b}",
    "\\verb|\\cite{a}| \\verb*!\\cite{a}! \\verb \\cite{a}\\verb\n\\cite{b}\\verb a\\url "
    "x{\\cite{a}}"
    "\\lstinline[x]{\\cite{a}}\\lstinline[x\n]{\\cite{a}}\\url{%{}}\\cite{a}\\mintinline{c}{\\cite{"
    "a}}",
    "\\begin{verbatim}\\cite{a}\\end{verbatim}\\begin{x}\\begin x\\end {y}\\begin\t{lstlisting}%\n"
    "\\end{lstlisting}\\iffalse\\cite{a}\\ifx\\%\\fi%\\fi\n\\else\\cite{a}\\fi\\iffalse\\ifdef\\fi",
    "\\input a \\include{b}\\input{c#}\\input{ }\\input%\n{d}\\subfile e \\cite{#1,\\a}\\cite{{a}}"
    "\\cite[\\cite{a}\\\\]}{b}\\cite[x}{a}\\cite[{x}]{b,,a,}\\Citep@x{a}\\p@cite{a}",
    "\\import{\\cite{a}}\\subimport%\n{a%}{b}\\cite{a}\\import{%}\n{x}\\newcommand*{ \\cite "
    "}[1]{\\cite{#1,a}}"
    "\\def%\n\\cite#1{a}\\renewcommand\\citep[1]{b}\\gdef\n\n\\cite{a}\\newcommand{x\\cite{b}",
    "\\textcquote[a]{b}[.]{c}\\foreigntextcquote{a}[k]{b}{a}\\hyphenblockcquote [x] {a} "
    "[y]{b,a}\\begin"
    "{displaycquote}[1]{a,b}\\begin{foreigndisplaycquote}{a}[1]{b}\\end{displaycquote}{a}",
    "\\cite{c  d,c\n d , c%x\n\td,c\r\n  %\n d}\\cite{c \td}",
    "\\cite{a}\\cite{a\\cite{b}\\endinput\\cite{a}",
    "\\cite{b}\\end{document}\\cite{a}"};

TEST(ReplaceKeys, ReadsEveryBeginningOfADocumentLikeThePlainVersion) {
  const std::string keys = "a\tb\nb\ta\none\tun\\xe9\nc d\tc\\td\nk\tk_a\n";
  KeyMap map;
  EXPECT_EQ(map.Read(keys), 0U);
  const auto plain_map = testing::PlainReadKeyMap(keys);
  ASSERT_TRUE(plain_map);
  std::string all;
  for (const std::string_view document : kRichDocuments) all.append(document).append("\n");
  std::size_t replaced = 0;
  for (std::size_t from = 0; from < all.size(); from += 97) {
    for (std::size_t size = 0; size <= all.size() - from; ++size) {
      const std::string document = all.substr(from, size);
      const RekeyedDocument rekeyed = ReplaceKeys(document, CiteCommands({"all"}), map);
      const testing::PlainRekeyed plain = testing::PlainRekey(document, *plain_map);
      ASSERT_EQ(rekeyed.text, plain.text) << document;
      ASSERT_EQ(rekeyed.replaced, plain.replaced) << document;
      replaced += rekeyed.replaced;
    }
  }
  EXPECT_GT(replaced, 2000U);
}

TEST(KeyMap, IsReadLikeThePlainOne) {
  const std::string_view pieces[] = {"a",  "b",   "\t",   "\t", "\n", "\r\n",
                                     "\\", "\\t", "\\x4", "f",  "x",  "\\\\"};
  std::mt19937 random(12);
  int good = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string bytes;
    for (std::size_t n = random() % 8; n > 0; --n) bytes += pieces[random() % std::size(pieces)];
    const auto plain = testing::PlainReadKeyMap(bytes);
    KeyMap map;
    ASSERT_EQ(map.Read(bytes) == 0, plain.has_value()) << bytes;
    if (!plain) continue;
    for (const auto& [old_key, new_key] : *plain) {
      ASSERT_TRUE(map.Find(old_key)) << bytes;
      ASSERT_EQ(*map.Find(old_key), new_key) << bytes;
    }
    good += plain->empty() ? 0 : 1;
  }
  EXPECT_GT(good, 300);
}

}  // namespace
}  // namespace tarvel
