// SPDX-License-Identifier: MIT
#include "gui/tarvel_gui_pref_clean.h"

#include <vector>

#include "app/globals.h"
#include "gui/wx_text.h"

namespace tarvel {

Tarvel_GUI_Pref_Clean* CleanPrefDialog = nullptr;

namespace {

std::vector<Tarvel_GUI_Pref_Clean*> open_dialogs;  // the oldest first

/// Sets all flags of the dialog, the options too, and refreshes the dialog opened last.
void SetAll(Flag value) {
  for (const PreferenceSection& section : kCleanSections) {
    for (const CheckRow& row : section.check_boxes) row.flag.In(GlobalSettings) = value;
  }
  if (CleanPrefDialog) CleanPrefDialog->ShowFlags();
}

void Forget(Tarvel_GUI_Pref_Clean* dialog) {
  std::erase(open_dialogs, dialog);
  if (CleanPrefDialog == dialog) {
    CleanPrefDialog = open_dialogs.empty() ? nullptr : open_dialogs.back();
  }
}

}  // namespace

Tarvel_GUI_Pref_Clean::Tarvel_GUI_Pref_Clean(wxWindow* parent)
    : FlagHandlers(parent, wxID_ANY, ToWx("Preferences for Clean tags'")) {  // one quote: sic
  open_dialogs.push_back(this);
}

Tarvel_GUI_Pref_Clean::~Tarvel_GUI_Pref_Clean() { Forget(this); }

bool Tarvel_GUI_Pref_Clean::Destroy() {
  Forget(this);  // now: the object itself lives until the toolkit has nothing else to do
  return FlagHandlers::Destroy();
}

void Tarvel_GUI_Pref_Clean::OnSelectAll(wxCommandEvent&) { SetAll(1); }
void Tarvel_GUI_Pref_Clean::OnUnselectAll(wxCommandEvent&) { SetAll(0); }

}  // namespace tarvel
