// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string_view>

#include <string>

#include "tests/support/hostile_library.h"
#include "tests/support/prepared_judge.h"
#include "tests/support/random_bib.h"

namespace tarvel {
namespace {

using testing::JudgePrepared;
using testing::RandomRuns;

TEST(PrepareRandom, KeepsEveryValueOfAnyLibraryThatBibTeXReads) {
  testing::RandomBib libraries(20);
  for (int run = 0; run < RandomRuns(300); ++run) {
    const std::string library = libraries.Next();
    for (const bool keep_all : {false, true}) {
      ASSERT_EQ(JudgePrepared(library, {keep_all}), "") << "run " << run << "\n" << library;
    }
  }
}

TEST(PrepareRandom, KeepsWhatStandsBeforeTheFirstFaultOfAHostileLibrary) {
  testing::HostileLibraries libraries(21);
  for (int run = 0; run < RandomRuns(300); ++run) {
    const std::string library = run % 2 == 0 ? libraries.Next() : libraries.NextNested();
    ASSERT_EQ(JudgePrepared(library, {}), "") << "run " << run << "\n" << library;
  }
}

// All that the reader of libraries knows, in a small space.
constexpr std::string_view kRichLibrary =
    "text @ @x @comment{c} @string{s = \"a\" # {b}}@STRING(t=s#1)@preamble{\"p\"#s}@preamble(q)\n"
    "@article{k, author=\"A {\"}B\" and {C, D}, title = {{a} {\\b{c}} pages.}, year=2001#s, "
    "month=jan,"
    "\n  date={2001-02-03}, journaltitle={{J. {P}}}, url={http://x/@y{}}, pages = 1, x@y={1},}\n"
    "@book(l,title={\\verb|pages| \\emph[x]{year?}},crossref=K,institution={i}, title={again})\n"
    "@misc{ m , note={journal = @book{z, year}}, title={{A}.}, a=, }@phdthesis{n,title={{x}!}\n"
    "@misc{o, title = {{}x{y}}}@misc{p@q,}@misc{}}@misc{r\n@misc{v,title={\\relax{A}{b}@}}@s";

TEST(PrepareRandom, KeepsWhatStandsInEveryBeginningOfALibrary) {
  for (std::size_t from = 0; from < kRichLibrary.size(); from += 101) {
    for (std::size_t size = 0; size <= kRichLibrary.size() - from; ++size) {
      const std::string library(kRichLibrary.substr(from, size));
      ASSERT_EQ(JudgePrepared(library, {size % 2 == 0}), "") << library;
    }
  }
}

}  // namespace
}  // namespace tarvel
