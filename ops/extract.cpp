// SPDX-License-Identifier: MIT
#include "ops/operations.h"

namespace tarvel {

int RunExtract(const RunContext& /*run*/) { return Fail("Extract is not built yet."); }

}  // namespace tarvel
