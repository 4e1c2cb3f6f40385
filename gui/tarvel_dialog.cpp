// SPDX-License-Identifier: MIT
#include "gui/tarvel_dialog.h"

#include <wx/app.h>
#include <wx/filename.h>
#include <wx/stdpaths.h>
#include <wx/utils.h>

#include "app/globals.h"
#include "app/reporter.h"
#include "app/run_operation.h"
#include "app/texts.h"
#include "gui/picker_drop_target.h"
#include "gui/tarvel_gui_pref_clean.h"
#include "gui/tarvel_gui_pref_extract.h"
#include "gui/tarvel_gui_pref_journal.h"
#include "gui/tarvel_gui_pref_text.h"
#include "gui/window_icons.h"
#include "gui/wx_text.h"

namespace tarvel {

namespace {

using enum OperationCode;

const Operation& RowOf(OperationCode code) { return *FindOperation(static_cast<int>(code)); }

void RunRow(OperationCode code) {
  const wxBusyCursor busy;
  RunOperation(RowOf(code));
}

void ShowHelp(OperationCode code) { ShowBox(RowOf(code).help, TitleText); }

/// Opens a further preference dialog of this kind: modeless, without a parent, showing the flags as
/// they are now. It takes the icons of `main`, as a parent's would be.
template <class Dialog>
Dialog* OpenPreferences(const Tarvel_Dialog& main) {
  auto* dialog = new Dialog(nullptr);
  dialog->SetIcons(main.GetIcons());
  dialog->ShowFlags();
  dialog->Show(true);
  return dialog;
}

}  // namespace

Tarvel_Dialog::Tarvel_Dialog(wxWindow* parent) : GUIDialog(parent, wxID_ANY, ToWx(DialogTitle)) {
  SetIcons(WindowIcons(wxFileName(wxStandardPaths::Get().GetExecutablePath()).GetPath()));
  AcceptDroppedFile(*first_file_picker_);
  AcceptDroppedFile(*second_file_picker_);
}

void Tarvel_Dialog::EndProgram() {
  Destroy();
  // The loop would go on for the sake of an open preference dialog.
  wxTheApp->ExitMainLoop();
}

void Tarvel_Dialog::OnClose(wxCloseEvent&) { EndProgram(); }

void Tarvel_Dialog::OnFirstFileChanged(wxFileDirPickerEvent&) {
  PickFile(FirstFilePath, PathBytes(first_file_picker_->GetPath()));
}
void Tarvel_Dialog::OnSecondFileChanged(wxFileDirPickerEvent&) {
  PickFile(SecondFilePath, PathBytes(second_file_picker_->GetPath()));
}

void Tarvel_Dialog::OnHelpExtract(wxCommandEvent&) { ShowHelp(kExtract); }
void Tarvel_Dialog::OnHelpCompare(wxCommandEvent&) { ShowHelp(kCompare); }
void Tarvel_Dialog::OnHelpText(wxCommandEvent&) { ShowHelp(kText); }
void Tarvel_Dialog::OnHelpJournals(wxCommandEvent&) { ShowHelp(kJournals); }
void Tarvel_Dialog::OnHelpCleanDoubles(wxCommandEvent&) { ShowHelp(kCleanDoubles); }
void Tarvel_Dialog::OnHelpCleanAuthors(wxCommandEvent&) { ShowHelp(kCleanAuthors); }
void Tarvel_Dialog::OnHelpCleanCharacters(wxCommandEvent&) { ShowHelp(kCleanCharacters); }
void Tarvel_Dialog::OnHelpCleanTags(wxCommandEvent&) { ShowHelp(kCleanTags); }

void Tarvel_Dialog::OnExtract(wxCommandEvent&) { RunRow(kExtract); }
void Tarvel_Dialog::OnCompare(wxCommandEvent&) { RunRow(kCompare); }
void Tarvel_Dialog::OnText(wxCommandEvent&) { RunRow(kText); }
void Tarvel_Dialog::OnJournals(wxCommandEvent&) { RunRow(kJournals); }
void Tarvel_Dialog::OnCleanDoubles(wxCommandEvent&) { RunRow(kCleanDoubles); }
void Tarvel_Dialog::OnCleanAuthors(wxCommandEvent&) { RunRow(kCleanAuthors); }
void Tarvel_Dialog::OnCleanCharacters(wxCommandEvent&) { RunRow(kCleanCharacters); }
void Tarvel_Dialog::OnCleanTags(wxCommandEvent&) { RunRow(kCleanTags); }

void Tarvel_Dialog::OnPreferencesExtract(wxCommandEvent&) {
  OpenPreferences<Tarvel_GUI_Pref_Extract>(*this);
}
void Tarvel_Dialog::OnPreferencesText(wxCommandEvent&) {
  OpenPreferences<Tarvel_GUI_Pref_Text>(*this);
}
void Tarvel_Dialog::OnPreferencesJournals(wxCommandEvent&) {
  OpenPreferences<Tarvel_GUI_Pref_Journal>(*this);
}
void Tarvel_Dialog::OnPreferencesCleanTags(wxCommandEvent&) {
  CleanPrefDialog = OpenPreferences<Tarvel_GUI_Pref_Clean>(*this);
}

void Tarvel_Dialog::OnAbout(wxCommandEvent&) { ShowBox(AboutText, TitleText); }
void Tarvel_Dialog::OnQuit(wxCommandEvent&) { EndProgram(); }

}  // namespace tarvel
