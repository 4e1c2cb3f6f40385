// SPDX-License-Identifier: MIT
#include "gui/tarvel_gui_pref_journal.h"

#include "app/reporter.h"
#include "app/texts.h"
#include "gui/wx_text.h"

namespace tarvel {

Tarvel_GUI_Pref_Journal::Tarvel_GUI_Pref_Journal(wxWindow* parent)
    : FlagHandlers(parent, wxID_ANY, ToWx("Preferences for 'Journals'")) {}

void Tarvel_GUI_Pref_Journal::OnHelp(wxCommandEvent&) { ShowBox(JournalFileNote, TitleText); }

}  // namespace tarvel
