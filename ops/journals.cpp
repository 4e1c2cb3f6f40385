// SPDX-License-Identifier: MIT
#include "ops/operations.h"

namespace tarvel {

int RunJournals(const RunContext& /*run*/) { return Fail("Journals is not built yet."); }

}  // namespace tarvel
