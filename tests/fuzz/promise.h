// SPDX-License-Identifier: MIT
#pragma once

namespace tarvel::fuzz {

/// Ends the process with a line on standard error unless `kept`.
void Promise(bool kept, const char* what);

}  // namespace tarvel::fuzz
