// SPDX-License-Identifier: MIT
#pragma once

#include "gui/base/pref_dialog.h"

namespace tarvel {

/// The controls for the journal style, the pages and the title of references.
class GUI_Pref_Extract : public PrefDialog {
 public:
  GUI_Pref_Extract(wxWindow* parent, wxWindowID id, const wxString& title,
                   const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                   long style = wxDEFAULT_DIALOG_STYLE);
};

}  // namespace tarvel
