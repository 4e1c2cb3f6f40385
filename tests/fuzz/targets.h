// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tarvel::fuzz {

/// Runs the target of this name on one input; a broken promise ends the process. An unknown name
/// does, too.
void RunTarget(std::string_view name, std::string_view input);

}  // namespace tarvel::fuzz
