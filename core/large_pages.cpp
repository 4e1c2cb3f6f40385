// SPDX-License-Identifier: MIT
#include "core/large_pages.h"

#include <sys/mman.h>

#include <memory>

namespace tarvel {

namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;

}  // namespace

void AdviseLargePages(char* bytes, std::size_t size) {
  void* start = bytes;
  if (std::align(kLargePage, kLargePage, start, size)) {
    (void)madvise(start, size / kLargePage * kLargePage, MADV_HUGEPAGE);
  }
}

}  // namespace tarvel
