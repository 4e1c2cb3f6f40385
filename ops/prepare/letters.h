// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "core/text_primitives.h"

namespace tarvel {

constexpr bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

/// The text with its ASCII letters in lower case.
inline std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), ToLower);
  return lower;
}

}  // namespace tarvel
