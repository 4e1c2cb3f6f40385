// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace tarvel
