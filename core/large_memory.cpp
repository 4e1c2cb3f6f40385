// SPDX-License-Identifier: MIT
#include "core/large_memory.h"

#include <sys/mman.h>

#include <memory>

namespace tarvel {

void AskForLargePages(void* begin, std::size_t size) {
  // Only whole large pages: what stands around the memory belongs to others.
  if (!std::align(kLargePage, kLargePage, begin, size)) return;
  madvise(begin, size / kLargePage * kLargePage, MADV_HUGEPAGE);
}

}  // namespace tarvel
