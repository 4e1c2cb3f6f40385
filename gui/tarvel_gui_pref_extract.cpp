// SPDX-License-Identifier: MIT
#include "gui/tarvel_gui_pref_extract.h"

#include "gui/wx_text.h"

namespace tarvel {

Tarvel_GUI_Pref_Extract::Tarvel_GUI_Pref_Extract(wxWindow* parent)
    : FlagHandlers(parent, wxID_ANY, ToWx("Preferences for 'Extract'")) {}

}  // namespace tarvel
