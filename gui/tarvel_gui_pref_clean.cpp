// SPDX-License-Identifier: MIT
#include "gui/tarvel_gui_pref_clean.h"

#include "app/globals.h"
#include "gui/wx_text.h"

namespace tarvel {

Tarvel_GUI_Pref_Clean* CleanPrefDialog = nullptr;

namespace {

/// Sets all flags of the dialog, the options too, and refreshes the dialog opened last.
void SetAll(Flag value) {
  for (const PreferenceSection& section : kCleanSections) {
    for (const CheckRow& row : section.check_boxes) row.flag.In(GlobalSettings) = value;
  }
  if (CleanPrefDialog) CleanPrefDialog->ShowFlags();
}

}  // namespace

Tarvel_GUI_Pref_Clean::Tarvel_GUI_Pref_Clean(wxWindow* parent)
    : FlagHandlers(parent, wxID_ANY, ToWx("Preferences for Clean tags'")) {
}  // no opening quote: sic

Tarvel_GUI_Pref_Clean::~Tarvel_GUI_Pref_Clean() {
  if (CleanPrefDialog == this) CleanPrefDialog = nullptr;
}

void Tarvel_GUI_Pref_Clean::OnSelectAll(wxCommandEvent&) { SetAll(1); }
void Tarvel_GUI_Pref_Clean::OnUnselectAll(wxCommandEvent&) { SetAll(0); }

}  // namespace tarvel
