// SPDX-License-Identifier: MIT
#pragma once

#include "gui/base/gui_pref_extract.h"
#include "gui/flag_handlers.h"

namespace tarvel {

/// The preference dialog titled "Preferences for 'Extract'".
class Tarvel_GUI_Pref_Extract : public FlagHandlers<GUI_Pref_Extract> {
 public:
  explicit Tarvel_GUI_Pref_Extract(wxWindow* parent);
};

}  // namespace tarvel
