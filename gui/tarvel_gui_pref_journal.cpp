// SPDX-License-Identifier: MIT
#include "gui/tarvel_gui_pref_journal.h"

#include "app/texts.h"
#include "gui/message_box.h"
#include "gui/wx_text.h"

namespace tarvel {

Tarvel_GUI_Pref_Journal::Tarvel_GUI_Pref_Journal(wxWindow* parent)
    : FlagHandlers(parent, wxID_ANY, ToWx("Preferences for 'Journals'")) {}

void Tarvel_GUI_Pref_Journal::OnHelp(wxCommandEvent&) {
  ShowMessageBox(this, JournalFileNote, TitleText);
}

}  // namespace tarvel
