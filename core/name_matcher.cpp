// SPDX-License-Identifier: MIT
#include "core/name_matcher.h"

#include <bit>
#include <cstddef>

#include "core/text_primitives.h"

namespace tarvel {

NameMatcher::NameMatcher(std::span<const std::string_view> names) {
  // Class 0 holds every byte that no name contains.
  std::uint8_t classes = 1;
  for (const std::string_view name : names) {
    for (const char byte : name) {
      std::uint8_t& code = class_of_[static_cast<unsigned char>(ToUpper(byte))];
      if (code == 0) code = classes++;
    }
  }
  for (std::size_t byte = 0; byte < 256; ++byte) {
    class_of_[byte] = class_of_[static_cast<unsigned char>(ToUpper(static_cast<char>(byte)))];
  }

  next_.emplace_back();
  found_.push_back(0);
  for (std::size_t i = 0; i < names.size(); ++i) {
    State state = 0;
    for (const char byte : names[i]) {
      const std::size_t code = class_of_[static_cast<unsigned char>(byte)];
      if (next_[state][code] == 0) {
        next_[state][code] = static_cast<State>(next_.size());
        next_.emplace_back();
        found_.push_back(0);
      }
      state = next_[state][code];
    }
    found_[state] |= std::uint64_t{1} << i;
  }

  // Breadth first, so that the state a mismatch falls back to is complete when it is needed.
  std::vector<State> fallback(next_.size(), 0);
  std::vector<State> queue;
  for (const State child : next_[0]) {
    if (child != 0) queue.push_back(child);
  }
  for (std::size_t head = 0; head < queue.size(); ++head) {
    const State state = queue[head];
    found_[state] |= found_[fallback[state]];
    for (std::size_t code = 0; code < kClasses; ++code) {
      State& child = next_[state][code];
      const State other = next_[fallback[state]][code];
      if (child == 0) {
        child = other;
      } else {
        fallback[child] = other;
        queue.push_back(child);
      }
    }
  }
}

std::uint64_t NameMatcher::Find(std::string_view text) const {
  std::uint64_t found = 0;
  State state = 0;
  for (const char byte : text) {
    state = next_[state][class_of_[static_cast<unsigned char>(byte)]];
    found |= found_[state];
  }
  return found;
}

bool NameMatcher::Any(std::string_view text) const {
  State state = 0;
  for (const char byte : text) {
    state = next_[state][class_of_[static_cast<unsigned char>(byte)]];
    if (found_[state] != 0) return true;
  }
  return false;
}

int NameMatcher::First(std::string_view text) const {
  const std::uint64_t found = Find(text);
  return found == 0 ? -1 : std::countr_zero(found);
}

}  // namespace tarvel
