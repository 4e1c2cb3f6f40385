// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <string>

namespace tarvel {

/// Texts that are made up while an entry is worked on. Their memory is used again for the next.
class TextPool {
 public:
  /// An empty text, which stays where it is until `Clear`.
  std::string& Next() {
    if (used_ == texts_.size()) texts_.emplace_back();
    std::string& text = texts_[used_++];
    text.clear();
    return text;
  }
  /// Ends all texts that were given.
  void Clear() { used_ = 0; }

 private:
  std::deque<std::string> texts_;
  std::size_t used_ = 0;
};

}  // namespace tarvel
