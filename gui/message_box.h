// SPDX-License-Identifier: MIT
#pragma once

#include <wx/window.h>

#include <string_view>

namespace tarvel {

/// Shows a message box of the toolkit with an OK button over `owner`, which may be null, and waits
/// for it. The caption is looked up in the toolkit's translations; without one it is shown as it
/// is. Where the text would not fit the display its letters are smaller than elsewhere.
void ShowMessageBox(wxWindow* owner, std::string_view message, std::string_view caption);

}  // namespace tarvel
