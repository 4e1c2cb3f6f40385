// SPDX-License-Identifier: MIT
#pragma once

#include "gui/base/pref_dialog.h"

namespace tarvel {

/// The controls for those of Extract, which share their flags, and two more.
class GUI_Pref_Text : public PrefDialog {
 public:
  GUI_Pref_Text(wxWindow* parent, wxWindowID id, const wxString& title,
                const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                long style = wxDEFAULT_DIALOG_STYLE);
};

}  // namespace tarvel
