// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tarvel {

/// Says in words why `ArrangeAuthorList` knew no form for a list; empty for an empty list and for
/// one that is in the normal form already.
std::string WhyAsItWas(std::string_view list);

/// What stands behind a value on its line, blanks and its comma left
/// out. `line` is the line buffer after the value was read. A "}" that ends the entry counts.
std::string_view TextBehindValue(std::string_view line);

}  // namespace tarvel
