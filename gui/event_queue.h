// SPDX-License-Identifier: MIT
#pragma once

#include <wx/window.h>

namespace tarvel {

/// Whether a message box or a file dialog of this program waits for its user.
bool IsModalWindowOpen();

/// Disables `window` and paints it so at once, for a handler that is about to keep the event loop
/// waiting. No input gets through meanwhile. Gives up painting after a fifth of a second: a
/// window that cannot be seen is never painted.
void DisableAndPaint(wxWindow& window);

/// Forgets all keys and mouse buttons pressed up to now that nobody has handled yet. What the user
/// typed while a handler ran is meant for no box that is shown afterwards.
void DiscardInput();

}  // namespace tarvel
