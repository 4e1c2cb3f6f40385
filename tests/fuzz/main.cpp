// SPDX-License-Identifier: MIT
// What the fuzzer calls. Compiled once for each target, which TARVEL_FUZZ_TARGET names.
#include <cstddef>
#include <cstdint>

#include "tests/fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tarvel::fuzz::RunTarget(TARVEL_FUZZ_TARGET, {reinterpret_cast<const char*>(data), size});
  return 0;
}
