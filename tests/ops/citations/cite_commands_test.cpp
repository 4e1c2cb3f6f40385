// SPDX-License-Identifier: MIT
#include "ops/citations/cite_commands.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(CiteCommands, KnowTheirNames) {
  EXPECT_TRUE(IsCommandName("all"));
  EXPECT_TRUE(IsCommandName("my@cite"));
  EXPECT_FALSE(IsCommandName("cite*"));
  EXPECT_FALSE(IsCommandName(""));
  for (const std::string_view name : KnownCiteCommands()) {
    EXPECT_TRUE(CiteCommands({"all"}).Find(name)) << name;
    EXPECT_EQ(CiteCommands({}).Find(name).has_value(), name == "cite") << name;
  }
}

TEST(CiteCommands, HaveShapes) {
  const CiteCommands all({"all", "see"});
  EXPECT_EQ(all.Find("citep"), CiteShape::kList);
  EXPECT_EQ(all.Find("cites"), CiteShape::kLists);
  EXPECT_EQ(all.Find("pvolcite"), CiteShape::kVolume);
  EXPECT_EQ(all.Find("volcites"), CiteShape::kVolumeLists);
  EXPECT_EQ(all.Find("see"), CiteShape::kList) << "an own command";
  EXPECT_EQ(all.Find("all"), std::nullopt) << "no command, but the word for all";
  EXPECT_EQ(all.Find("citet*"), std::nullopt) << "the star is no part of the name";
  EXPECT_EQ(CiteCommands({"cites"}).Find("cites"), CiteShape::kLists);
  EXPECT_EQ(CiteCommands({"cites"}).Find("citep"), std::nullopt);
}

}  // namespace
}  // namespace tarvel
