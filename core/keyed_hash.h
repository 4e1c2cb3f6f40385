// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace tarvel {

/// A hash of the bytes for tables in memory: SipHash-1-3 under a random key that is drawn once per
/// process. A library cannot be written so that its keys or values collide. Results must not depend
/// on the hash, which differs from run to run.
std::size_t KeyedHash(std::string_view bytes);

/// The same as a function object, for containers of strings that are searched by views.
struct KeyedStringHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view bytes) const { return KeyedHash(bytes); }
};

}  // namespace tarvel
