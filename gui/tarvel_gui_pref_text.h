// SPDX-License-Identifier: MIT
#pragma once

#include "gui/base/gui_pref_text.h"
#include "gui/flag_handlers.h"

namespace tarvel {

/// The preference dialog titled "Preferences for 'Text'".
class Tarvel_GUI_Pref_Text : public FlagHandlers<GUI_Pref_Text> {
 public:
  explicit Tarvel_GUI_Pref_Text(wxWindow* parent);
};

}  // namespace tarvel
