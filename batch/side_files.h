// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "batch/options.h"
#include "batch/prepare_command.h"

namespace tarvel {

/// Why a command line's side files, those of --warnings and --key-map, must not be written: the
/// operation itself reads or writes one of them, or both are the same file. Empty when they may be
/// written. Opens no file. Links are followed; of a file that does not exist yet the path counts.
std::string WhyRefused(const BatchRequest& request);
/// The same for the command "prepare".
std::string WhyRefused(const PrepareRequest& request);

}  // namespace tarvel
