// SPDX-License-Identifier: MIT
#include "ops/author_reasons.h"

#include <algorithm>
#include <cstddef>

namespace tarvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

std::string_view Trim(std::string_view text, std::string_view bytes) {
  text.remove_prefix(std::min(text.find_first_not_of(bytes), text.size()));
  return text.substr(0, text.find_last_not_of(bytes) + 1);
}

bool HasComma(std::string_view name) { return name.find(',') != kNone; }

/// The names of a list, cut as the recognisers cut it.
class NamesIn {
 public:
  explicit NamesIn(std::string_view list) : rest_(list) {}

  /// The next name that is not empty; empty at the end of the list.
  std::string_view Next() {
    constexpr std::string_view kSeparator = " and";
    std::string_view name;
    while (name.empty() && !at_end_) {
      const std::size_t end = rest_.find(kSeparator);
      name = Trim(rest_.substr(0, end), " ");
      at_end_ = end == kNone;
      if (!at_end_) rest_.remove_prefix(end + kSeparator.size());
    }
    return name;
  }

  /// The next name that `test` is true of; empty when there is none.
  template <typename Test>
  std::string_view NextThat(const Test& test) {
    std::string_view name = Next();
    while (!name.empty() && !test(name)) name = Next();
    return name;
  }

 private:
  std::string_view rest_;
  bool at_end_ = false;
};

std::string Quoted(std::string_view text) { return std::string("'").append(text).append("'"); }

}  // namespace

std::string WhyAsItWas(std::string_view list) {
  const auto has_no_comma = [](std::string_view name) { return !HasComma(name); };
  const std::string_view plain = NamesIn(list).NextThat(has_no_comma);
  if (plain.empty()) {
    NamesIn names(list);
    const std::string_view first = names.Next();
    const bool one_full = !first.empty() && list.find('.') == kNone && names.Next().empty();
    return one_full ? Quoted(first) + " is a single name with a comma" : std::string();
  }
  if (HasComma(list)) return Quoted(plain) + " has no comma, but other names have one";
  const std::string_view word = NamesIn(list).NextThat(
      [](std::string_view name) { return name.find_first_of(" ~") == kNone; });
  return Quoted(word.empty() ? plain : word) + " has no first names";
}

std::string_view TextBehindValue(std::string_view line) {
  std::size_t open = line.find('{');
  std::size_t depth = 0;
  for (std::size_t close = open; close != kNone;) {
    close = line.find('}', close + 1);
    for (; open < close; open = line.find('{', open + 1)) ++depth;
    if (close != kNone && --depth == 0) return Trim(line.substr(close + 1), " \t\r\n,");
  }
  return {};
}

}  // namespace tarvel
