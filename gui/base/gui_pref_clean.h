// SPDX-License-Identifier: MIT
#pragma once

#include "gui/base/pref_dialog.h"

namespace tarvel {

/// The controls for what Clean tags removes.
class GUI_Pref_Clean : public PrefDialog {
 public:
  GUI_Pref_Clean(wxWindow* parent, wxWindowID id, const wxString& title,
                 const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                 long style = wxDEFAULT_DIALOG_STYLE);

 protected:
  virtual void OnSelectAll(wxCommandEvent& /*event*/) {}
  virtual void OnUnselectAll(wxCommandEvent& /*event*/) {}

  wxButton* select_all_button_ = nullptr;
  wxButton* unselect_all_button_ = nullptr;
};

}  // namespace tarvel
