// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace tarvel::testing {

/// Makes small libraries that go to the edges of how libraries are read: few keys and few values,
/// so that entries meet, in any letter case; missing tags, missing braces and missing "}" lines;
/// values over several lines; JabRef blocks; lines over every limit; line breaks of other systems,
/// bytes from 128 on, zero bytes, and files without a last line break or without an entry.
class HostileLibraries {
 public:
  /// The same seed gives the same libraries everywhere.
  explicit HostileLibraries(std::uint64_t seed) : random_(seed) {}

  /// A new library.
  std::string Next();
  /// A new library of many entries with braces too many or too few, so that their values go on over
  /// the entries after them, often to the end of the file.
  std::string NextNested();
  /// A library that shares some of `other`'s text: parts of it, in another order or changed.
  std::string Related(std::string_view other);

 private:
  std::size_t Below(std::size_t end) { return static_cast<std::size_t>(random_() % end); }
  /// True in one of `times` cases.
  bool Once(std::size_t times) { return Below(times) == 0; }
  template <typename Pool>
  std::string_view OneOf(const Pool& pool) {
    return pool[Below(pool.size())];
  }

  std::string AnyCase(std::string_view text);
  std::string Filler();
  std::string Value();
  std::string TagLine(std::string_view name);
  std::string Entry();
  std::string Between();
  std::string NestedEntry();
  void Spoil(std::string& library);

  std::mt19937_64 random_;
};

/// How many random runs a test makes: `TARVEL_RANDOM_RUNS` from the environment, else `usual`.
int RandomRuns(int usual);

}  // namespace tarvel::testing
