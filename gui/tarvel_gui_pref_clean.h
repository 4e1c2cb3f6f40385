// SPDX-License-Identifier: MIT
#pragma once

#include "gui/base/gui_pref_clean.h"
#include "gui/flag_handlers.h"

namespace tarvel {

/// The preference dialog titled "Preferences for Clean tags'".
class Tarvel_GUI_Pref_Clean : public FlagHandlers<GUI_Pref_Clean> {
 public:
  explicit Tarvel_GUI_Pref_Clean(wxWindow* parent);
  ~Tarvel_GUI_Pref_Clean() override;
  bool Destroy() override;

 protected:
  void OnSelectAll(wxCommandEvent& event) override;
  void OnUnselectAll(wxCommandEvent& event) override;
};

/// The dialog of this kind that was opened last, of those that are still open; null when none is.
/// It is the one that "Select all" and "Unselect all" refresh, whichever dialog they are pressed
/// in.
extern Tarvel_GUI_Pref_Clean* CleanPrefDialog;

}  // namespace tarvel
