// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace tarvel::testing {

/// Makes small libraries that BibTeX reads, in all its forms: values in braces and quotes, numbers,
/// strings and pieces joined by "#", bodies in parentheses, any white space and line breaks,
/// several entries on a line, comments and preambles between them; with names of biblatex, names
/// within names, cross-references, and values that mention other tags, hold "@", braces and
/// commands.
class RandomBib {
 public:
  /// The same seed gives the same libraries everywhere.
  explicit RandomBib(std::uint64_t seed) : random_(seed) {}

  /// A new library.
  std::string Next();

 private:
  std::size_t Below(std::size_t end) { return static_cast<std::size_t>(random_() % end); }
  bool Once(std::size_t times) { return Below(times) == 0; }
  template <typename Pool>
  std::string_view OneOf(const Pool& pool) {
    return pool[Below(pool.size())];
  }

  std::string White();
  std::string AnyCase(std::string_view text);
  std::string Text(std::size_t depth);
  std::string Piece();
  std::string Value();
  std::string Body(const std::string& inner);
  std::string Entry(std::size_t number);
  std::string Between();

  std::mt19937_64 random_;
  std::size_t entries_ = 0;
};

}  // namespace tarvel::testing
