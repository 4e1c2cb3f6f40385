// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace tarvel {

/// Asks the system to back memory with large pages, before it is written to. A request that is
/// refused does no harm. A library of 50 MB takes 20 ms less with them: 12 % of Clean tags, 19 %
/// of Extract.
void AdviseLargePages(char* bytes, std::size_t size);

struct FreeMemory {
  void operator()(char* bytes) const { std::free(bytes); }
};
/// Uninitialised bytes.
using LargeMemory = std::unique_ptr<char[], FreeMemory>;

/// Memory for `size` bytes. If they fill a large page (2 MiB), the memory begins with one. Throws
/// `std::bad_alloc`.
LargeMemory TakeLargeMemory(std::size_t size);

}  // namespace tarvel
