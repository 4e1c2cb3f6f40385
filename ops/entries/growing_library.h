// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarvel {

/// A new library that is read back while it is written. It is held in memory, and written to its
/// file at the end. Writing at an offset before the end overwrites the bytes there; those after
/// them stay.
class GrowingLibrary {
 public:
  /// A library that begins with `header`; memory for `expected_size` bytes is taken at once.
  GrowingLibrary(std::string_view header, std::size_t expected_size);

  /// The line that begins at `position`: at most `limit - 1` bytes, up to and including a line
  /// feed. Nothing at the end. The view lives until the next `Write`.
  std::optional<std::string_view> ReadLine(std::size_t position, std::size_t limit) const;
  /// Writes at `position`, which is not after the end; what goes beyond the end is appended.
  void Write(std::size_t position, std::string_view bytes);

  std::size_t Size() const { return bytes_.size(); }
  std::string_view Bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace tarvel
