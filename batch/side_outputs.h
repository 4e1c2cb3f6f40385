// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "batch/request.h"

namespace tarvel {

/// Calls `run`, which says whether it succeeded, with the side files of the request as the outputs
/// of warnings and keys. Returns the exit status.
int RunWithSideFiles(const BatchRequest& request, const std::function<bool()>& run);

}  // namespace tarvel
