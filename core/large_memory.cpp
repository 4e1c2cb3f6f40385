// SPDX-License-Identifier: MIT
#include "core/large_memory.h"

#include <sys/mman.h>

#include <cstdlib>
#include <memory>
#include <new>

namespace tarvel {

namespace {

class LargeMemoryResource final : public std::pmr::memory_resource {
  // Both ways of `AllocateLarge` align for every type that does not ask for more than usual.
  void* do_allocate(std::size_t size, std::size_t /*alignment*/) override {
    return AllocateLarge(size);
  }
  void do_deallocate(void* memory, std::size_t /*size*/, std::size_t /*alignment*/) override {
    std::free(memory);
  }
  bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
    return this == &other;
  }
};

}  // namespace

void AskForLargePages(void* begin, std::size_t size) {
  // Only whole large pages: what stands around the memory belongs to others.
  if (!std::align(kLargePage, kLargePage, begin, size)) return;
  madvise(begin, size / kLargePage * kLargePage, MADV_HUGEPAGE);
}

void* AllocateLarge(std::size_t size) {
  const std::size_t pages = (size + kLargePage - 1) / kLargePage * kLargePage;
  const bool large = size >= 2 * kLargePage && pages >= size;
  void* memory = large ? std::aligned_alloc(kLargePage, pages) : std::malloc(size);
  if (!memory) throw std::bad_alloc();
  if (large) AskForLargePages(memory, pages);
  return memory;
}

std::pmr::memory_resource* LargeMemory() {
  static LargeMemoryResource memory;
  return &memory;
}

}  // namespace tarvel
