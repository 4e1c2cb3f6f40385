// SPDX-License-Identifier: MIT
#include "ops/operations.h"

namespace tarvel {

int RunCompare(const RunContext& /*run*/) { return Fail("Compare is not built yet."); }

}  // namespace tarvel
