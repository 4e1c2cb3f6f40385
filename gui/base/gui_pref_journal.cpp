// SPDX-License-Identifier: MIT
#include "gui/base/gui_pref_journal.h"

#include "gui/base/widgets.h"

namespace tarvel {

GUI_Pref_Journal::GUI_Pref_Journal(wxWindow* parent, wxWindowID id, const wxString& title,
                                   const wxPoint& position, const wxSize& size, long style)
    : PrefDialog(parent, id, title, position, size, style, kJournalSections) {
  help_button_ = NewButton(this, "Help", "Help for ", "the journal-name list");
  help_button_->Bind(wxEVT_BUTTON, &GUI_Pref_Journal::OnHelp, this);
  AddButtons({help_button_});
}

}  // namespace tarvel
