// SPDX-License-Identifier: MIT
#pragma once

#include "gui/base/gui_pref_journal.h"
#include "gui/flag_handlers.h"

namespace tarvel {

/// The preference dialog titled "Preferences for 'Journals'".
class Tarvel_GUI_Pref_Journal : public FlagHandlers<GUI_Pref_Journal> {
 public:
  explicit Tarvel_GUI_Pref_Journal(wxWindow* parent);

 protected:
  void OnHelp(wxCommandEvent& event) override;
};

}  // namespace tarvel
