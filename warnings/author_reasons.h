// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tarvel {

/// Says in words why Clean authors knows no form for a list of names; empty for an empty list and
/// for one that is in the normal form already.
std::string WhyNoKnownForm(std::string_view list);

/// Says in words which names of a list may have become wrong when it was brought into its new form;
/// empty when there is none.
std::string WhyDoubtful(std::string_view old_list, std::string_view new_list);

}  // namespace tarvel
