// SPDX-License-Identifier: MIT
// What shells make of these files is tested by running them: tests/completions/.
#include "batch/completions.h"

#include <gtest/gtest.h>

#include <string>

#include "batch/option_table.h"
#include "batch/verbs.h"

namespace tarvel {
namespace {

TEST(Completions, NameEveryVerbOptionAndValue) {
  for (const std::string& text : {BashCompletions(), ZshCompletions(), FishCompletions()}) {
    for (const VerbRow& verb : kVerbRows) {
      EXPECT_NE(text.find(verb.name), std::string::npos) << verb.name;
    }
    for (const OptionRow& row : OptionRows()) {
      EXPECT_NE(text.find(row.name.substr(2)), std::string::npos) << row.name;
      for (const std::string_view name : ValueNames(row)) {
        EXPECT_NE(text.find(name), std::string::npos) << name;
      }
    }
  }
}

}  // namespace
}  // namespace tarvel
