// SPDX-License-Identifier: MIT
#include "gui/base/gui_pref_extract.h"

namespace tarvel {

GUI_Pref_Extract::GUI_Pref_Extract(wxWindow* parent, wxWindowID id, const wxString& title,
                                   const wxPoint& position, const wxSize& size, long style)
    : PrefDialog(parent, id, title, position, size, style, kExtractSections) {
  AddButtons({});
}

}  // namespace tarvel
