// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tarvel {

// The files from which shells learn what can stand on the command line of tarvel-batch: verbs, the
// options that each of them uses, and the values of these.

std::string BashCompletions();
std::string ZshCompletions();
std::string FishCompletions();

}  // namespace tarvel
