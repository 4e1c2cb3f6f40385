// SPDX-License-Identifier: MIT
#include "ops/prepare/entry_former.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvel {
namespace {

struct Formed {
  std::string tags;  // "name=value;..."
  std::string warnings;
};

Formed Form(const std::string& entry, bool keeps_all = false) {
  Formed formed;
  BibStrings strings;
  BibReader reader(entry, strings);
  BibItem item;
  EXPECT_TRUE(reader.Next(item));
  PrepareLog log(entry, [&](const PrepareWarning& warning) {
    formed.warnings.append(warning.text).append("\n");
  });
  const CrossReferences crossrefs(entry);
  EntryFormer former(log, crossrefs, keeps_all);
  former.Form(item, item.tags.size());
  for (const FormedTag& tag : former.Tags()) {
    formed.tags.append(tag.Name()).append("=").append(tag.value).append(";");
  }
  return formed;
}

TEST(EntryFormer, LeavesOutWhatNobodyNeedsAndWouldBeMisread) {
  EXPECT_EQ(Form("@article{k, abstract={a year}, pages={1}, numpages={2}}").tags, "pages=1;");
  EXPECT_EQ(Form("@article{k, abstract={a year}, pages={1}}", true).tags,
            "abstract=a ye{}ar;pages=1;");
}

TEST(EntryFormer, FindsAWordThatPiecesOfAValueMake) {
  EXPECT_EQ(Form("@article{k, abstract={a ye} # \"ar\", pages={1}}").tags, "pages=1;");
}

TEST(EntryFormer, GuardsWhatIsNeeded) {
  EXPECT_EQ(Form("@article{k, title={The {Authors}}}").tags, "title=The {Auth{}ors}\\/;");
}

TEST(EntryFormer, PutsMisreadLinesFirstAndBookkeepingLast) {
  EXPECT_EQ(Form("@article{k, owner={me}, title={T}, url={http://x/author}, author={A}}").tags,
            "url=http://x/author;title=T;author=A;owner=me;");
}

TEST(EntryFormer, GuardsNamesInBracesOrWarnsOfThem) {
  EXPECT_EQ(Form("@misc{k, author={{Tides and Winds}}}").tags, "author={Tides a{}nd Winds};");
  EXPECT_EQ(Form("@misc{k, author={{Tides and Winds}}}").warnings, "");
  EXPECT_EQ(Form("@misc{k, note={{Tides and Winds} x}}").tags, "note={Tides and Winds} x;");
  EXPECT_EQ(Form("@misc{k, editor={Paul {Harrow, Jr.} and {A and B}}}").tags,
            "editor=Paul {Harrow, Jr.} and {A and B};");
  EXPECT_NE(Form("@misc{k, editor={Paul {Harrow, Jr.}}}").warnings.find("comma in braces"),
            std::string::npos);
}

TEST(EntryFormer, WarnsOfAValueThatNothingCures) {
  EXPECT_NE(Form("@online{k, url={http://journal}}").warnings.find("'journal'"), std::string::npos);
  EXPECT_EQ(Form("@online{k, url={http://x}}").warnings, "");
}

}  // namespace
}  // namespace tarvel
