// SPDX-License-Identifier: MIT
#include "core/large_pages.h"

#include <sys/mman.h>

#include <memory>
#include <new>

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

LargeMemory TakeLargeMemory(std::size_t size) {
  const std::size_t alignment = size < kLargePage ? alignof(std::max_align_t) : kLargePage;
  void* bytes = nullptr;
  if (posix_memalign(&bytes, alignment, size) != 0) throw std::bad_alloc();
  LargeMemory memory(static_cast<char*>(bytes));
  AdviseLargePages(memory.get(), size);
  return memory;
}

}  // namespace tarvel
