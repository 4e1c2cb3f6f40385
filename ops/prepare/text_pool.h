// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <string>

namespace tarvel {

/// Texts that are made while an entry is worked on. Their memory is used again for the next entry.
class TextPool {
 public:
  /// An empty text, whose address does not change until `Clear`.
  std::string& Next() {
    if (used_ == texts_.size()) texts_.emplace_back();
    std::string& text = texts_[used_++];
    text.clear();
    return text;
  }
  /// Makes all texts invalid that `Next` has returned.
  void Clear() { used_ = 0; }

 private:
  std::deque<std::string> texts_;
  std::size_t used_ = 0;
};

}  // namespace tarvel
