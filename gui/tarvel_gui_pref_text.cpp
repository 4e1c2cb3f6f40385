// SPDX-License-Identifier: MIT
#include "gui/tarvel_gui_pref_text.h"

#include "gui/wx_text.h"

namespace tarvel {

Tarvel_GUI_Pref_Text::Tarvel_GUI_Pref_Text(wxWindow* parent)
    : FlagHandlers(parent, wxID_ANY, ToWx("Preferences for 'Text'")) {}

}  // namespace tarvel
