// SPDX-License-Identifier: MIT
#include "ops/citations/key_map.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>

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
       {"a", "a\tb\tc", "\tb", "a\t", "", "a\\q\tb", "a\\\tb", "a\\x7\tb", "a\\xZZ\tb"}) {
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
  EXPECT_GT(replaced, 5000U);
}

}  // namespace
}  // namespace tarvel
