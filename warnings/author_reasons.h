// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tarvel {

/// Says in words why Clean authors knows no form for a list of names; empty for an empty list and
/// for one that is in the normal form already.
std::string WhyNoKnownForm(std::string_view list);

}  // namespace tarvel
