// SPDX-License-Identifier: MIT
#include "ops/entries/passed_heads.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace tarvel {
namespace {

using Texts = std::vector<std::string>;

/// The heads that are passed over, each as "key:offset".
Texts Passed(const std::string& library, const Texts& keys) {
  LineStream lines{std::string_view(library)};
  CitedEntries entries(keys);
  entries.Find(lines);
  Texts passed;
  FindPassedHeads(library, keys, entries, [&](const PassedHead& head) {
    passed.push_back(std::string(head.key) + ":" + std::to_string(head.head));
    EXPECT_GT(head.taken, head.head);
  });
  return passed;
}

TEST(FindPassedHeads, FindsEntriesThatBibTeXTakes) {
  const std::string taken = "@misc{a,\n}\n";
  for (const std::string_view head : {"@misc(a,\n)\n", "@misc{a\n, x = {1}\n}\n", "@misc{ a,\n}\n",
                                      "@misc{\na,\n}\n", "@ misc {a }\n", "@other{a }\n"}) {
    EXPECT_EQ(Passed(std::string(head) + taken, {"a"}), Texts{"a:0"}) << head;
    EXPECT_EQ(Passed(taken + std::string(head), {"a"}), Texts()) << "it comes later";
    EXPECT_EQ(Passed(std::string(head) + taken, {"b"}), Texts()) << "not cited";
    EXPECT_EQ(Passed(std::string(head), {"a"}), Texts()) << "none is taken";
  }
  EXPECT_EQ(Passed("@misc(a,\n)\n@misc(a,\n)\n@misc{b }\n" + taken + "@misc{b,\n}\n", {"b", "a"}),
            (Texts{"a:0", "b:22"}))
      << "of each key the first";
  EXPECT_EQ(Passed(taken + taken, {"a"}), Texts());
}

TEST(FindPassedHeads, KnowsWhatIsNoEntry) {
  for (const std::string_view text :
       {"@comment{a }\n", "@String{a }\n", "@preamble(a )\n", "x@y a\n", "@{a }\n", "@misc a\n",
        "@misc", "@misc{", "@misc{ab }\n"}) {
    EXPECT_EQ(Passed(std::string(text) + "\n@misc{a,\n}\n", {"a"}), Texts()) << text;
  }
}

TEST(FindPassedHeads, IsLinearInTextThatHoldsManyAts) {
  const auto seconds = [](const std::string& piece) {
    std::string library;
    while (library.size() < 4'000'000) library += piece;
    const std::clock_t start = std::clock();
    Passed(library + "\n@misc{a,\n}\n", {"a"});
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  };
  // A minute and more if each looked at the rest.
  EXPECT_LT(seconds("@"), 10);
  EXPECT_LT(seconds("@a{"), 10);
}

}  // namespace
}  // namespace tarvel
