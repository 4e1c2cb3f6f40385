// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "batch/options.h"

namespace tarvel {

/// Why the files of warnings and keys that a command line asks for must not be written: one is read
/// or written by the operation itself, or both are the same. Empty when nothing speaks against
/// them. Opens no file. Links are followed; of a file that does not exist yet the place counts.
std::string WhyNotAsked(const BatchRequest& request);

}  // namespace tarvel
