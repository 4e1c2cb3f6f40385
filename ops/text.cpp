// SPDX-License-Identifier: MIT
#include "ops/operations.h"

namespace tarvel {

int RunText(const RunContext& /*run*/) { return Fail("Text is not built yet."); }

}  // namespace tarvel
