// SPDX-License-Identifier: MIT
#pragma once

#include "tests/fuzz/fuzz_input.h"

namespace tarvel::fuzz {

/// Checks the first file, and holds what is printed to what the operations warn of, and a library
/// of which nothing is printed to what BibTeX reads of it.
void FuzzCheck(const FuzzInput& input);

/// Gives the second file, a document, the keys of the first one, a key map.
void FuzzRekey(const FuzzInput& input);

}  // namespace tarvel::fuzz
