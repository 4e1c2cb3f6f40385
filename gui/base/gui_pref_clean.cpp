// SPDX-License-Identifier: MIT
#include "gui/base/gui_pref_clean.h"

#include "gui/base/widgets.h"

namespace tarvel {

GUI_Pref_Clean::GUI_Pref_Clean(wxWindow* parent, wxWindowID id, const wxString& title,
                               const wxPoint& position, const wxSize& size, long style)
    : PrefDialog(parent, id, title, position, size, style, kCleanSections) {
  select_all_button_ = NewButton(this, "Select all", {}, "Select all");
  unselect_all_button_ = NewButton(this, "Unselect all", {}, "Unselect all");
  select_all_button_->Bind(wxEVT_BUTTON, &GUI_Pref_Clean::OnSelectAll, this);
  unselect_all_button_->Bind(wxEVT_BUTTON, &GUI_Pref_Clean::OnUnselectAll, this);
  AddButtons({select_all_button_, unselect_all_button_});
}

}  // namespace tarvel
