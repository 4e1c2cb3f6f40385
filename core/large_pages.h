// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace tarvel {

/// Asks the system for large pages for memory that is not yet written to, with which that of a
/// library of 50 MB takes 20 ms less: 12 % of Clean tags, 19 % of Extract. Without them small pages
/// do.
void AdviseLargePages(char* bytes, std::size_t size);

struct FreeMemory {
  void operator()(char* bytes) const { std::free(bytes); }
};
/// Bytes that are not set to anything.
using LargeMemory = std::unique_ptr<char[], FreeMemory>;

/// Memory for `size` bytes, in large pages as far as it fills them: it begins with one. Throws
/// `std::bad_alloc`.
LargeMemory TakeLargeMemory(std::size_t size);

}  // namespace tarvel
