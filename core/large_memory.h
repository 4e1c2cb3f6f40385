// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory_resource>

namespace tarvel {

inline constexpr std::size_t kLargePage = std::size_t{1} << 21;

/// Asks the system for large pages behind memory that is yet to be written: one page fault then
/// does for 512, and reading here and there finds its pages faster. Advice only: nothing changes
/// where the system has none or where no large page fits in.
void AskForLargePages(void* begin, std::size_t size);

/// Memory of the C library for `size` bytes, to be freed with `std::free`; much of it comes in
/// large pages. Throws `std::bad_alloc` when there is none.
void* AllocateLarge(std::size_t size);

/// Gives the memory of `AllocateLarge` to the containers of the standard library.
std::pmr::memory_resource* LargeMemory();

}  // namespace tarvel
