// SPDX-License-Identifier: MIT
#pragma once

#include "ops/run_context.h"

namespace tarvel {

// The operations. Each sees its context and nothing global. All return 1 on success; 0, or 2999 for
// a library that could not be opened, on failure.

int RunExtract(const RunContext& run);
int RunCompare(const RunContext& run);
int RunText(const RunContext& run);
int RunJournals(const RunContext& run);
int RunCleanDoubles(const RunContext& run);
int RunCleanAuthors(const RunContext& run);
int RunCleanCharacters(const RunContext& run);
int RunCleanTags(const RunContext& run);

}  // namespace tarvel
