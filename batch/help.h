// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "batch/verbs.h"

namespace tarvel {

/// The text of "--help": every verb and every option, in lines of at most 80 bytes.
std::string GeneralHelp();
/// The text of "VERB --help": at most 24 such lines.
std::string HelpOf(const VerbRow& verb);
/// A reason of a wrong usage as it is printed: controls escaped, and how to get help after it.
/// `verb` may be null.
std::string WithHelpHint(std::string_view reason, const VerbRow* verb);
/// The text of "--version".
std::string VersionText();
/// The text of "--list-operations": a name a line.
std::string OperationNames();

}  // namespace tarvel
