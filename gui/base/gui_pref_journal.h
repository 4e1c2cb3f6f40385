// SPDX-License-Identifier: MIT
#pragma once

#include "gui/base/pref_dialog.h"

namespace tarvel {

/// The controls for full names or abbreviations, and whose list.
class GUI_Pref_Journal : public PrefDialog {
 public:
  GUI_Pref_Journal(wxWindow* parent, wxWindowID id, const wxString& title,
                   const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                   long style = wxDEFAULT_DIALOG_STYLE);

 protected:
  virtual void OnHelp(wxCommandEvent& /*event*/) {}

  wxButton* help_button_ = nullptr;
};

}  // namespace tarvel
