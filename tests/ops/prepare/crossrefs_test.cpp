// SPDX-License-Identifier: MIT
#include "ops/prepare/crossrefs.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvel {
namespace {

/// What the first entry of a library has after it got its parents' tags: "name=value;" each.
std::string TagsOfFirst(const std::string& library, CrossReferences::Parent parent) {
  BibStrings strings;
  BibReader reader(library, strings);
  BibItem item;
  EXPECT_TRUE(reader.Next(item));
  CrossReferences crossrefs(library);
  EXPECT_EQ(crossrefs.Inherit(item), parent);
  using Parent = CrossReferences::Parent;
  EXPECT_EQ(crossrefs.HasParent(), parent == Parent::kFound || parent == Parent::kTooMany);
  std::string tags;
  for (const BibTag& tag : item.tags) tags.append(tag.name).append("=").append(tag.value) += ';';
  return tags;
}

TEST(CrossReferences, AddTheTagsThatTheEntryLacks) {
  EXPECT_EQ(TagsOfFirst("@misc{a, Year={1}, crossref={P}}@misc{p, YEAR={2}, note={n}}",
                        CrossReferences::Parent::kFound),
            "Year=1;crossref=P;note=n;");
}

TEST(CrossReferences, AnEmptyTagOfTheEntryStays) {
  EXPECT_EQ(TagsOfFirst("@misc{a, note={}, crossref=p}@string{p={x}}@misc{p, note={n}}",
                        CrossReferences::Parent::kFound),
            "note=;crossref=p;");
}

TEST(CrossReferences, TheFirstEntryOfAKeyIsTheParent) {
  EXPECT_EQ(TagsOfFirst("@misc{a, crossref={p}}@misc{P, x={1}}@misc{p, x={2}}",
                        CrossReferences::Parent::kFound),
            "crossref=p;x=1;");
}

/// An entry of which nothing could be read is not written: another one of the key is the first.
TEST(CrossReferences, AnEntryThatIsNotWrittenIsNoParent) {
  EXPECT_EQ(TagsOfFirst("@misc{a, crossref={p}}\n@misc{p, x=\"1\n}\n@misc{p, x={2}}\n",
                        CrossReferences::Parent::kFound),
            "crossref=p;x=2;");
}

TEST(CrossReferences, TheTitleOfABookIsTheBooktitleOfItsParts) {
  using Parent = CrossReferences::Parent;
  const std::string book = "@collection{b, title={B}, subtitle={S}}";
  for (const std::string type : {"incollection", "InProceedings", "inbook", "conference"}) {
    EXPECT_EQ(TagsOfFirst("@" + type + "{a, title={T}, subtitle={U}, crossref={b}}" + book,
                          Parent::kFound),
              "title=T;subtitle=U;crossref=b;booktitle=B;booksubtitle=S;");
  }
  EXPECT_EQ(TagsOfFirst("@article{a, title={T}, crossref={b}}" + book, Parent::kFound),
            "title=T;crossref=b;subtitle=S;");
  EXPECT_EQ(
      TagsOfFirst("@inbook{a, booktitle={O}, subtitle={}, crossref={b}}" + book, Parent::kFound),
      "booktitle=O;subtitle=;crossref=b;title=B;");
  EXPECT_EQ(TagsOfFirst("@inbook{a, title={T}, crossref={b}}@book{b, title={B}, booktitle={C}}",
                        Parent::kFound),
            "title=T;crossref=b;booktitle=C;");
  EXPECT_EQ(TagsOfFirst("@inbook{a, title={T}, crossref={b}}@book{b, title={}, crossref={c}}"
                        "@book{c, title={C}}",
                        Parent::kFound),
            "title=T;crossref=b;booktitle=C;")
      << "of the nearest parent that has one";
}

TEST(CrossReferences, AMissingParentAndTheEntryItselfGiveNothing) {
  EXPECT_EQ(TagsOfFirst("@misc{a, crossref={q}}", CrossReferences::Parent::kMissing),
            "crossref=q;");
  EXPECT_EQ(TagsOfFirst("@misc{a, crossref={A}}", CrossReferences::Parent::kItself), "crossref=A;");
  EXPECT_EQ(TagsOfFirst("@misc{a, note={n}}", CrossReferences::Parent::kNone), "note=n;");
}

TEST(CrossReferences, FollowALongChainAndEndInACircle) {
  std::string chain;
  for (int i = 0; i < 40; ++i) {
    const std::string number = std::to_string(i);
    chain +=
        "@misc{k" + number + ", t" + number + "={x}, crossref={k" + std::to_string(i + 1) + "}}";
  }
  const std::string tags = TagsOfFirst(chain, CrossReferences::Parent::kTooMany);
  EXPECT_NE(tags.find("t32=x;"), std::string::npos);
  EXPECT_EQ(tags.find("t33=x;"), std::string::npos);
  EXPECT_EQ(TagsOfFirst("@misc{a, crossref={b}}@misc{b, crossref={c}}@misc{c, x={1}, crossref={b}}",
                        CrossReferences::Parent::kTooMany),
            "crossref=b;x=1;");
}

TEST(CrossReferences, TagsOfParentsDoNotGrowWithoutMeasure) {
  const std::string parent = "@misc{p, note={" + std::string(2000000, 'n') + "}, x={1}}";
  const std::string library = "@misc{a, crossref={p}}" + parent;
  CrossReferences crossrefs(library);
  BibStrings strings;
  int with_note = 0;
  for (int i = 0; i < 10; ++i) {
    BibReader reader(library, strings);
    BibItem item;
    EXPECT_TRUE(reader.Next(item));
    const auto parent_is = crossrefs.Inherit(item);
    const bool has_note = item.tags.size() > 1;
    with_note += has_note ? 1 : 0;
    EXPECT_EQ(parent_is,
              has_note ? CrossReferences::Parent::kFound : CrossReferences::Parent::kTooLong);
    EXPECT_TRUE(crossrefs.HasParent());
    EXPECT_NE(item.tags.size(), 2U) << "no tag after the one that had no room";
  }
  EXPECT_EQ(with_note, 8);
}

}  // namespace
}  // namespace tarvel
