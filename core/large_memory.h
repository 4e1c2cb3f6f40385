// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace tarvel {

inline constexpr std::size_t kLargePage = std::size_t{1} << 21;

/// Asks the system for large pages behind memory that is yet to be written: one page fault then
/// does for 512, and reading here and there finds its pages faster. Advice only: nothing changes
/// where the system has none or where no large page fits in.
void AskForLargePages(void* begin, std::size_t size);

}  // namespace tarvel
