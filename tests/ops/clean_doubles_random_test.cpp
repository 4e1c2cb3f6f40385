// SPDX-License-Identifier: MIT
// The indexed Clean doubles gives what the plain one gives, which rewinds the new library and reads
// it again for every entry.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "ops/operations.h"
#include "tests/support/hostile_library.h"
#include "tests/support/memory_files.h"
#include "tests/support/plain_clean_doubles.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using namespace tarvel::testing;
using std::string_view_literals::operator""sv;

DoublesOutcome Indexed(const std::string& input) {
  RecordingReporter reporter;
  MemoryFiles files;
  files.files["/d/lit.bib"] = input;
  DoublesOutcome outcome;
  RecordingWarnings warnings;
  RunContext run = MemoryRun(files, "/d/lit.bib");
  run.warnings = &warnings;
  outcome.result = RunCleanDoubles(run);
  outcome.log = files.files["/d/lit_double.log"];
  outcome.library = files.files["/d/lit_double.bib"];
  outcome.warnings = warnings.TextsOf(WarningKind::kOverwritten);
  EXPECT_EQ(reporter.printed, "");
  EXPECT_TRUE(reporter.boxes.empty());
  return outcome;
}

/// What two texts hold where they differ for the first time; empty when they are the same.
std::string Difference(const std::string& plain, const std::string& indexed) {
  if (plain == indexed) return {};
  const auto ends = std::mismatch(plain.begin(), plain.end(), indexed.begin(), indexed.end());
  const auto at = static_cast<std::size_t>(ends.first - plain.begin());
  const std::size_t from = at - std::min<std::size_t>(at, 100);
  return "at " + std::to_string(at) + "\n--- plain:\n" + plain.substr(from, 300) +
         "\n--- indexed:\n" + indexed.substr(from, 300);
}

bool Differs(const std::string& input) {
  return PlainCleanDoubles(input, "/d/lit.bib", "/d/lit_double.bib") != Indexed(input);
}

/// A library without the lines that do not matter for the difference.
std::string Smallest(std::string input) {
  for (std::size_t size = 64; size > 0; size /= 2) {
    for (std::size_t at = 0; at < input.size();) {
      std::size_t end = at;
      for (std::size_t i = 0; i < size && end < input.size(); ++i) {
        end = std::min(input.find('\n', end), input.size() - 1) + 1;
      }
      const std::string shorter = input.substr(0, at) + input.substr(end);
      if (Differs(shorter)) {
        input = shorter;
      } else {
        at = std::min(input.find('\n', at), input.size() - 1) + 1;
      }
    }
  }
  return input;
}

void ExpectSame(const std::string& input) {
  if (!Differs(input)) return;
  const std::string smallest = Smallest(input);
  const DoublesOutcome plain = PlainCleanDoubles(smallest, "/d/lit.bib", "/d/lit_double.bib");
  const DoublesOutcome indexed = Indexed(smallest);
  EXPECT_EQ(plain.result, indexed.result);
  EXPECT_EQ(Difference(plain.log, indexed.log), "");
  EXPECT_EQ(Difference(plain.library, indexed.library), "");
  EXPECT_EQ(plain.warnings, indexed.warnings);
  ADD_FAILURE() << "for the library\n" << smallest << "<end>";
}

/// Makes libraries of short entries that meet each other all the time: few keys, types with one
/// compared tag, values of any length that may hold whole entries. So entries are written over each
/// other and what is left of them is read as something else.
class CrowdedLibraries {
 public:
  explicit CrowdedLibraries(std::uint64_t seed) : random_(seed) {}

  std::string Next() {
    std::string library;
    for (std::size_t left = 2 + Below(20); left > 0; --left) library += Entry();
    if (Below(4) == 0) library.pop_back();
    return library;
  }

 private:
  std::size_t Below(std::size_t end) { return static_cast<std::size_t>(random_() % end); }
  template <typename Pool>
  std::string_view OneOf(const Pool& pool) {
    return pool[Below(pool.size())];
  }

  std::string Value() {
    static constexpr std::array kValues{"x"sv,
                                        "x"sv,
                                        "x"sv,
                                        "y"sv,
                                        "zz"sv,
                                        ""sv,
                                        "x\ny"sv,
                                        "{x"sv,
                                        "x}"sv,
                                        "x\n\n \nlong"sv,
                                        "x\n}\n@misc{k,\nnote = {x}\n}\n"sv,
                                        "w\n@booklet{k_a,\ntitle = {x}\n}\n@misc{,\n"sv,
                                        "\n@other{K,\n"sv,
                                        "\n}\n}\n"sv,
                                        "\xc3\xa4\n\xc3\xa4"sv,
                                        "{}"sv};
    std::string value(OneOf(kValues));
    if (Below(5) == 0) value.append(Below(90), 'v');
    if (Below(300) == 0) value.append(4970 + Below(40), ' ').append(Below(2), '\n').append("}v");
    if (Below(500) == 0) value.append("\n\n").append(980 + Below(30), 'b');
    return value;
  }

  std::string Entry() {
    static constexpr std::array kTypes{"booklet"sv,    "MANUAL"sv,     "misc"sv,  "misc"sv,
                                       "electronic"sv, "periodical"sv, "other"sv, "letter"sv};
    static constexpr std::array kKeys{"k"sv, "k"sv, "k"sv, "K"sv, "l"sv, ""sv, "k_a"sv, "k_b"sv};
    static constexpr std::array kTags{"title"sv, "title"sv, "note"sv, "url"sv, "year"sv, "x"sv};
    static constexpr std::array kEnds{"}\n"sv,        "}\n"sv,  "}\n"sv,       "}\n\n"sv,
                                      "}\nstray\n"sv, "}\n"sv,  "} title\n"sv, "} {year\n"sv,
                                      "\n"sv,         "}\r\n"sv};
    std::string entry = Below(40) == 0 ? "{ @" : "@";
    entry.append(OneOf(kTypes)).append("{").append(OneOf(kKeys));
    entry.append(Below(30) == 0 ? "\n" : ",\n");
    if (Below(2) == 0) entry.append("title = {x}\nnote = {x}\nurl = {x}\nyear = {1}\n");
    for (std::size_t left = Below(3); left > 0; --left) {
      entry.append(OneOf(kTags)).append(" = {").append(Value()).append("},\n");
    }
    return entry.append(OneOf(kEnds));
  }

  std::mt19937_64 random_;
};

TEST(CleanDoublesRandom, HostileLibrariesComeOutAsFromThePlainVersion) {
  const int runs = RandomRuns(1000);
  HostileLibraries libraries(17);
  for (int run = 0; run < runs && !::testing::Test::HasFailure(); ++run) {
    std::string input = libraries.Next();
    if (run % 3 == 0) input += libraries.Related(input);
    if (run % 4 == 0) input += libraries.Related(input);
    // Reading again costs the square of the size, which is well spent on a few.
    if (input.size() < (run % 50 == 0 ? 100000 : 20000)) ExpectSame(input);
  }
}

TEST(CleanDoublesRandom, CrowdedLibrariesComeOutAsFromThePlainVersion) {
  const int runs = RandomRuns(1000);
  CrowdedLibraries libraries(4711);
  for (int run = 0; run < runs && !::testing::Test::HasFailure(); ++run) {
    ExpectSame(libraries.Next());
  }
}

/// A library whose copies open values that close after many entries, in an entry or after it, and
/// whose next copies end them sooner.
std::string FarLibrary(std::mt19937_64& random) {
  static constexpr std::array kKeys{"k"sv, "k"sv, "l"sv, "m"sv};
  const auto entry = [](std::string_view key, const std::string& value) {
    return "@misc{" + std::string(key) + ",\n note = {" + value + "},\n}\n";
  };
  const std::string line = random() % 4 == 0 ? "\r\n" : "\n";
  std::string library;
  for (std::size_t left = 5 + random() % (random() % 40 == 0 ? 300 : 50); left > 0; --left) {
    const std::size_t kind = random() % 10;
    std::string value = "filler " + std::to_string(random() % 50);
    if (kind == 0) value = "first";
    if (kind == 1) value.append(1 + random() % 12, '}');
    if (kind == 2) value = "{" + line + value + std::string(1 + random() % 9, '}') + ",\n}\n w {";
    if (kind == 3) value.append(random() % 1200, 'x').append("\n\n \n");
    library += entry(kind == 0 ? kKeys[random() % 4] : "f" + std::to_string(random() % 50), value);
  }
  for (std::size_t left = 4 + random() % 16; left > 0; --left) {
    const std::string braces(random() % 9, '{');
    const std::string value = "copy " + std::to_string(random() % 20);
    const std::string closing = "\n}\n" + std::string(braces.size(), '}');
    const bool opens = random() % 2 == 0;
    const std::string_view key = random() % 6 == 0 ? "z"sv : kKeys[random() % 4];
    library += entry(key, opens ? braces + value + closing : value);
    if (random() % 8 == 0) library += entry("e", std::string(1 + random() % 9, '}'));
  }
  return library;
}

TEST(CleanDoublesRandom, ValuesThatCloseFarAwayComeOutAsFromThePlainVersion) {
  const int runs = RandomRuns(300);
  std::mt19937_64 random(29);
  for (int run = 0; run < runs && !::testing::Test::HasFailure(); ++run) {
    ExpectSame(FarLibrary(random));
  }
}

TEST(CleanDoublesRandom, EntriesThatLieInEachOtherComeOutAsFromThePlainVersion) {
  const int runs = RandomRuns(500);
  HostileLibraries libraries(20261121);
  for (int run = 0; run < runs && !::testing::Test::HasFailure(); ++run) {
    ExpectSame(libraries.NextNested());
  }
}

}  // namespace
}  // namespace tarvel
