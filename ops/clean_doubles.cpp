// SPDX-License-Identifier: MIT
#include "ops/operations.h"

namespace tarvel {

int RunCleanDoubles(const RunContext& /*run*/) { return Fail("Clean doubles is not built yet."); }

}  // namespace tarvel
