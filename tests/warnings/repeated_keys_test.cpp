// SPDX-License-Identifier: MIT
#include "warnings/repeated_keys.h"

#include <gtest/gtest.h>

#include <map>

#include "core/text_primitives.h"
#include "tests/support/hostile_library.h"
#include "tests/support/recording_warnings.h"

namespace tarvel::testing {
namespace {

using Lines = std::vector<std::string>;

Lines Repeated(std::string_view library) {
  RecordingWarnings to;
  FileWarnings warnings(&to, "l", library);
  RepeatedKeys keys(library, warnings);
  ScanRules rules{.line_limit = limits::kPairLine};
  rules.on_entry = [&](const EntryHead& head) { keys.Check(head); };
  ScanLibrary(library, rules, warnings);
  return to.Of(WarningKind::kKeyTwice);
}

TEST(RepeatedKeys, AreReportedWithTheLineOfTheFirst) {
  EXPECT_EQ(Repeated("@misc{a,\n}\n@misc{b,\n}\n"), Lines());
  EXPECT_EQ(Repeated("@misc{a,\n}\n@misc{b,\n}\n@book{A,\n}\n@misc{a,\n}\n"),
            (Lines{"key-twice l:5 [A] the entry in line 1 has the same key",
                   "key-twice l:7 [a] the entry in line 1 has the same key"}))
      << "letter case aside, and always the first";
}

TEST(RepeatedKeys, AreComparedToTheLastByte) {
  EXPECT_EQ(Repeated("@misc{ab,\n}\n@misc{a,\n}\n@misc{abc,\n}\n@misc{a ,\n}\n"), Lines());
  EXPECT_EQ(Repeated("@misc{\xC4,\n}\n@misc{\xE4,\n}\n"), Lines()) << "no letters but ASCII's";
  EXPECT_EQ(Repeated("@misc{[,\n}\n@misc{{,\n}\n"), Lines()) << "a bit apart, but no letters";
  EXPECT_EQ(Repeated("@misc{,\n}\n@misc{,\n}\n"),
            Lines{"key-twice l:3 [] the entry has no key, nor has the one in line 1"});
  EXPECT_EQ(Repeated("@misc{k\n}\n@misc{k,\n}\n").size(), 1U) << "a key may end with its line";
}

TEST(RepeatedKeys, AreThoseThatAMapFinds) {
  HostileLibraries libraries(20252);
  std::size_t found = 0;
  const int runs = RandomRuns(1000);
  for (int i = runs; i > 0; --i) {
    const std::string library = libraries.Next() + libraries.Next();
    Lines expected;
    std::map<std::string, std::size_t> first;
    RecordingWarnings to;
    FileWarnings warnings(&to, "l", library);
    ScanRules rules{.line_limit = limits::kPairLine};
    rules.on_entry = [&](const EntryHead& head) {
      std::string upper(head.key);
      StringToUpper(upper);
      const auto offset = static_cast<std::size_t>(head.key.data() - library.data());
      const auto [known, is_new] = first.try_emplace(upper, warnings.LineOf(offset));
      if (is_new) return;
      const std::string line = std::to_string(known->second);
      expected.push_back("key-twice l:" + std::to_string(warnings.LineOf(head.offset)) + " [" +
                         std::string(head.key) + "] " +
                         (upper.empty() ? "the entry has no key, nor has the one in line " + line
                                        : "the entry in line " + line + " has the same key"));
    };
    ScanLibrary(library, rules, warnings);
    ASSERT_EQ(Repeated(library), expected) << library;
    found += expected.size();
  }
  EXPECT_GT(found, static_cast<std::size_t>(runs));
}

}  // namespace
}  // namespace tarvel::testing
