// SPDX-License-Identifier: MIT
#include "warnings/byte_lanes.h"

#include <algorithm>

namespace tarvel {

namespace {

template <typename L>
[[gnu::always_inline]] inline std::size_t CountInSteps(std::string_view text, char byte) {
  const auto searched = static_cast<signed char>(byte);
  std::size_t count = 0;
  while (text.size() >= sizeof(L)) {
    const std::size_t steps = std::min(text.size() / sizeof(L), kMostLaneSteps);
    L found{};
    for (std::size_t i = 0; i < steps; ++i) {
      L bytes;
      LoadLanes(text.data() + i * sizeof(L), bytes);
      found -= bytes == searched;
    }
    count += static_cast<std::size_t>(SumOfLanes(found));
    text.remove_prefix(steps * sizeof(L));
  }
  return count + static_cast<std::size_t>(std::count(text.begin(), text.end(), byte));
}

TARVEL_FOR_WIDE_LANES std::size_t CountWide(std::string_view text, char byte) {
  return CountInSteps<WideLanes>(text, byte);
}

}  // namespace

bool HasWideLanes() {
#if defined(__x86_64__)
  static const bool has = __builtin_cpu_supports("avx2") != 0;
  return has;
#else
  return false;
#endif
}

std::size_t CountByte(std::string_view text, char byte) {
  return HasWideLanes() ? CountWide(text, byte) : CountInSteps<Lanes>(text, byte);
}

}  // namespace tarvel
