// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "ops/run_context.h"

namespace tarvel::fuzz {

/// What a run must leave behind.
struct Expected {
  int result = 1;
  std::map<std::string, std::string> files;  // by path
  std::optional<std::string> printed;        // nothing: not judged
};

/// What the plain version of an operation makes of the files of a run; `inputs` holds them by path,
/// the configuration below "/program". Nothing when there is no list for Journals.
std::optional<Expected> ExpectedOf(std::string_view operation, const RunContext& run,
                                   const std::map<std::string, std::string>& inputs);

}  // namespace tarvel::fuzz
