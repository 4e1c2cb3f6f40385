// SPDX-License-Identifier: MIT
#include "ops/entries/compare_libraries.h"

#include <gtest/gtest.h>

#include "tests/support/memory_files.h"

namespace tarvel::testing {
namespace {

const std::string kBook = "@book{K,\n  author = {A},\n  title = {T}\n}\n";

/// The entry that the text is. Its values are views into the stream, which must outlive it.
EntryRecord RecordOf(LineStream& stream) {
  SecondLibrary library(stream);
  EXPECT_TRUE(library.Next());
  return library.Entry();
}

/// The first library's counterparts of an entry: "offset" or, with the same key, "offset key".
std::vector<std::string> Found(const std::string& first, const std::string& entry) {
  LineStream stream{std::string_view(first)};
  const FirstLibrary library(stream);
  std::vector<std::string> found;
  LineStream second{std::string_view(entry)};
  Matches matches = library.Find(RecordOf(second));
  while (const auto match = matches.Next()) {
    found.push_back(std::to_string(match->entry->start) + (match->same_key ? " key" : ""));
  }
  return found;
}

using Texts = std::vector<std::string>;

TEST(FirstLibrary, FindsByKeyOrByContentInTheOrderOfTheFile) {
  const std::string other = "@book{L,\n  author = {A},\n  title = {T}\n}\n";
  const std::string changed = "@book{k,\n  author = {B},\n  title = {T}\n}\n";
  const std::string n = std::to_string(kBook.size());
  EXPECT_EQ(Found(kBook, kBook), Texts{"0 key"}) << "found in both ways it comes once";
  EXPECT_EQ(Found(other + changed, kBook), (Texts{"0", n + " key"}));
  EXPECT_EQ(Found(changed + other, kBook), (Texts{"0 key", n}));
  EXPECT_EQ(Found(kBook + other + kBook, kBook),
            (Texts{"0 key", n, std::to_string(2 * kBook.size()) + " key"}));
  EXPECT_EQ(Found(changed, other), Texts());
}

TEST(FirstLibrary, DistinguishesTypesAndLackingTags) {
  const std::string same = "{L,\n  author = {A},\n  title = {T}\n}\n";
  EXPECT_EQ(Found("@inbook" + same, kBook), Texts()) << "another type of the same group";
  EXPECT_EQ(Found("@Book" + same, kBook), Texts{"0"}) << "types are in capitals";
  const std::string lacks = "@book{L,\n  author = {A}\n}\n";
  EXPECT_EQ(Found(lacks, "@book{K,\n  author = {A}\n}\n"), Texts())
      << "without a tag nothing is alike";
  EXPECT_EQ(Found("@letters{K,\n}\n", kBook), Texts()) << "types of no group are left out";
  EXPECT_EQ(Found(kBook, "@letters{k,\n}\n"), Texts{"0 key"}) << "but are looked for by key";
}

TEST(FirstLibrary, BeginsAtItsFirstKnownEntry) {
  EXPECT_EQ(Found("@comment{jabref-x,\n}\n" + kBook, kBook), Texts{"21 key"});
  EXPECT_EQ(Found("", kBook), Texts());
}

std::string Copied(const std::function<void(OutputFile&)>& copy) {
  MemoryFiles files;
  OutputFile out(files.CreateSink("out", CreateMode::kWrite), "out");
  copy(out);
  EXPECT_TRUE(out.Close());
  return files.files["out"];
}

TEST(FirstLibrary, CopiesAnEntryAsItStandsToItsFirstClosingLine) {
  const std::string entry = "@book{K,\n  title = {T,\n}, \n  author = {A}\n}\n";
  const std::string text = "x\n" + entry;
  LineStream stream{std::string_view(text)};
  FirstLibrary library(stream);
  LineStream second{std::string_view(entry)};
  Matches matches = library.Find(RecordOf(second));
  const auto match = matches.Next();
  ASSERT_TRUE(match);
  EXPECT_EQ(Copied([&](OutputFile& out) { library.Copy(*match->entry, out); }),
            "@book{K,\n  title = {T,\n}, \n");
}

TEST(SecondLibrary, ReadsOnAfterACopy) {
  // The value of the first entry swallows the second; its copy does not.
  const std::string first = "@book{a,\n  title = {T {\n}\n";
  const std::string second = "@book{b,\n}\n";
  const std::string text = "x\n" + first + second + "}\n";
  for (const bool copies : {false, true}) {
    LineStream stream{std::string_view(text)};
    SecondLibrary library(stream);
    ASSERT_TRUE(library.Next());
    EXPECT_EQ(library.Entry().key, "A");
    EXPECT_EQ(library.Entry().type, "BOOK");
    if (copies) {
      EXPECT_EQ(Copied([&](OutputFile& out) { EXPECT_TRUE(library.Copy(out)); }), first);
    }
    ASSERT_EQ(library.Next(), copies);
    if (copies) {
      EXPECT_EQ(library.Entry().key, "B");
    }
    EXPECT_FALSE(library.Next());
  }
}

TEST(SecondLibrary, CopiesToTheEndWhereNoLineCloses) {
  const std::string text = "@book{a,\n  title = {T}\n @misc{b,\n";
  LineStream stream{std::string_view(text)};
  SecondLibrary library(stream);
  ASSERT_TRUE(library.Next());
  EXPECT_EQ(Copied([&](OutputFile& out) { EXPECT_FALSE(library.Copy(out)); }), text);
  EXPECT_FALSE(library.Next());
}

TEST(SecondLibrary, TakesAJabRefBlockForAnEntryAfterTheFirst) {
  const std::string text = kBook + "@comment{jabref-meta: x}\n}\n" + kBook;
  LineStream stream{std::string_view(text)};
  SecondLibrary library(stream);
  std::string keys;
  while (library.Next()) keys += library.Entry().type + " " + library.Entry().key + "\n";
  EXPECT_EQ(keys, "BOOK K\nCOMMENT JABREF-META: X}\nBOOK K\n");
}

}  // namespace
}  // namespace tarvel::testing
