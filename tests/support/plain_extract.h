// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/plain_references.h"

namespace tarvel::testing {

/// Extract, reading the library once for every key.
PlainOutcome PlainExtract(const PlainWorld& world, PlainStyles& styles);

}  // namespace tarvel::testing
