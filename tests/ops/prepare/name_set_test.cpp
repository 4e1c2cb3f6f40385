// SPDX-License-Identifier: MIT
#include "ops/prepare/name_set.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvel {
namespace {

TEST(NameSet, KnowsFewNamesAndMany) {
  std::vector<std::string> names;
  for (int i = 0; i < 100; ++i) names.push_back("tag" + std::to_string(i));
  NameSet set;
  for (int round = 0; round < 2; ++round) {
    for (const std::string& name : names) EXPECT_TRUE(set.Insert(name)) << name;
    for (const std::string& name : names) EXPECT_FALSE(set.Insert(name)) << name;
    set.Clear();
  }
}

}  // namespace
}  // namespace tarvel
