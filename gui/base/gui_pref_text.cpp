// SPDX-License-Identifier: MIT
#include "gui/base/gui_pref_text.h"

namespace tarvel {

GUI_Pref_Text::GUI_Pref_Text(wxWindow* parent, wxWindowID id, const wxString& title,
                             const wxPoint& position, const wxSize& size, long style)
    : PrefDialog(parent, id, title, position, size, style, kTextSections) {
  AddButtons({});
}

}  // namespace tarvel
