// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/hash_index.h"
#include "core/line_stream.h"
#include "warnings/library_scan.h"

namespace tarvel {

/// Where the entries of the cited keys begin in a library.
class CitedEntries {
 public:
  /// `keys` must outlive this. Of a key that comes twice only the first is searched for.
  explicit CitedEntries(const std::vector<std::string>& keys);

  /// Reads the library, with at most 999 bytes a line, until all keys are found, or to its end.
  /// `on_range` is called, in the order of the library, with the ranges that matter for the keys:
  /// each entry of a key up to the next head, and each line that holds a key as a head does but is
  /// no head, also up to the next one.
  void Find(LineStream& library, const std::function<void(const LibraryRange&)>& on_range = {});
  /// The offset of the head of key number `i`; nothing when the library has none.
  std::optional<std::size_t> Head(std::size_t i) const { return heads_[i]; }

 private:
  bool FindOnLine(std::string_view text, std::size_t position);

  const std::vector<std::string>& keys_;
  HashIndex index_;
  std::vector<std::optional<std::size_t>> heads_;
  std::vector<std::size_t> on_line_;
  std::size_t longest_ = 0;
  std::size_t found_ = 0;
};

}  // namespace tarvel
