// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "batch/request.h"

namespace tarvel {

/// Reads the command line (without the program's name). A wrong one gives `kWrongUsage` and a
/// reason of one line without control bytes in `text`. Looks at no file.
BatchRequest ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace tarvel
