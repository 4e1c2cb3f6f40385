// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "tests/support/plain_references.h"

namespace tarvel::testing {

using PlainRows = std::vector<std::pair<std::string, std::string>>;

/// The rows of a file of LaTeX commands.
PlainRows PlainReadCommands(const std::string& bytes);

/// Tries every row, one after the other.
void PlainApply(std::string& value, const PlainRows& rows);

/// Text, trying every row of the command table on every value.
PlainOutcome PlainText(const PlainWorld& world, PlainStyles& styles);

}  // namespace tarvel::testing
