// SPDX-License-Identifier: MIT
#include "ops/operations.h"

namespace tarvel {

int RunCleanAuthors(const RunContext& /*run*/) { return Fail("Clean authors is not built yet."); }

}  // namespace tarvel
