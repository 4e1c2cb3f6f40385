// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "batch/request.h"

namespace tarvel {

/// Why a command line must not be run: there is no such output directory, or one of the side files,
/// those of --warnings and --key-map, must not be written, as the operation itself reads or writes
/// it, or both are the same file. Empty when it may be run. Opens no file. Links are followed; of a
/// file that does not exist yet the path counts.
std::string WhyRefused(const BatchRequest& request);

}  // namespace tarvel
