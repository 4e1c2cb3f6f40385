// SPDX-License-Identifier: MIT
#pragma once

#include <wx/string.h>

#include <string_view>

namespace tarvel {

/// UTF-8 bytes as a text of the toolkit. Bytes that are not UTF-8, which a path may hold, are taken
/// one by one as Latin-1, so that no text is ever lost.
wxString ToWx(std::string_view bytes);

}  // namespace tarvel
