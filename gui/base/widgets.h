// SPDX-License-Identifier: MIT
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/window.h>

#include <string_view>

namespace tarvel {

/// Names a widget and shows the name as its tooltip, which for buttons and check boxes is also the
/// description that a screen reader reads: it distinguishes the "Help" buttons.
void Describe(wxWindow& widget, std::string_view what);

/// A button whose name for screen readers is `prefix` and `subject` together. With a prefix the
/// name is its tooltip, too; without one the label says it all.
wxButton* NewButton(wxWindow* parent, std::string_view label, std::string_view prefix,
                    std::string_view subject);

/// Makes a dialog without a parent, before it is shown, a window like any other for the desktop.
/// Otherwise some desktops keep it in front of all other windows of the program.
void StandAlone(wxDialog& dialog);

/// The gap between the controls of a window, in pixels: a small one on a low display.
int Gap(const wxWindow& window);

/// How wide a window with this title should be, for a title bar to show all of it. What else a
/// title bar holds is up to the desktop; four buttons are rarely too few.
int TitleBarWidth(const wxWindow& window, const wxString& title);

}  // namespace tarvel
