// SPDX-License-Identifier: MIT
#include "ops/operations.h"

namespace tarvel {

int RunCleanCharacters(const RunContext& /*run*/) {
  return Fail("Clean characters is not built yet.");
}

}  // namespace tarvel
