// SPDX-License-Identifier: MIT
#pragma once

#include "ops/run_context.h"

namespace tarvel {

// The operations. Each sees its context and nothing global. All return 1 on success and another
// number on failure: 2999 where Journals, Clean authors or Clean characters cannot open the
// library, or where Clean characters has none; otherwise 0.

int RunExtract(const RunContext& run);
int RunCompare(const RunContext& run);
int RunText(const RunContext& run);
int RunJournals(const RunContext& run);
int RunCleanDoubles(const RunContext& run);
int RunCleanAuthors(const RunContext& run);
int RunCleanCharacters(const RunContext& run);
int RunCleanTags(const RunContext& run);

}  // namespace tarvel
