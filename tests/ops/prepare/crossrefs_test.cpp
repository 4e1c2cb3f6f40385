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
  EXPECT_EQ(crossrefs.HasParent(), parent == CrossReferences::Parent::kFound);
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

TEST(CrossReferences, AMissingParentAndTheEntryItselfGiveNothing) {
  EXPECT_EQ(TagsOfFirst("@misc{a, crossref={q}}", CrossReferences::Parent::kMissing),
            "crossref=q;");
  EXPECT_EQ(TagsOfFirst("@misc{a, crossref={a}}", CrossReferences::Parent::kMissing),
            "crossref=a;");
  EXPECT_EQ(TagsOfFirst("@misc{a, note={n}}", CrossReferences::Parent::kNone), "note=n;");
}

}  // namespace
}  // namespace tarvel
