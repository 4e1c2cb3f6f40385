// SPDX-License-Identifier: MIT
#pragma once

#include <wx/string.h>

#include <string>
#include <string_view>

namespace tarvel {

/// UTF-8 bytes as a text of the toolkit. Bytes that are not UTF-8, which a path may hold, are taken
/// one by one as Latin-1, so that no text is ever lost.
wxString ToWx(std::string_view bytes);

/// A path of the toolkit as the bytes that name the file: UTF-8, and any byte of the file's name
/// that is not UTF-8 as it was.
std::string PathBytes(const wxString& path);

}  // namespace tarvel
