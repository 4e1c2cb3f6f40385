// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "app/globals.h"
#include "gui/base/gui_dialog.h"

namespace tarvel {

/// The main dialog. Destroying it ends the program, also while preference dialogs are open.
class Tarvel_Dialog : public GUIDialog {
 public:
  explicit Tarvel_Dialog(wxWindow* parent);

 protected:
  void OnClose(wxCloseEvent& event) override;
  void OnFirstFileChanged(wxFileDirPickerEvent& event) override;
  void OnSecondFileChanged(wxFileDirPickerEvent& event) override;

  void OnHelpExtract(wxCommandEvent& event) override;
  void OnHelpCompare(wxCommandEvent& event) override;
  void OnHelpText(wxCommandEvent& event) override;
  void OnHelpJournals(wxCommandEvent& event) override;
  void OnHelpCleanDoubles(wxCommandEvent& event) override;
  void OnHelpCleanAuthors(wxCommandEvent& event) override;
  void OnHelpCleanCharacters(wxCommandEvent& event) override;
  void OnHelpCleanTags(wxCommandEvent& event) override;

  void OnExtract(wxCommandEvent& event) override;
  void OnCompare(wxCommandEvent& event) override;
  void OnText(wxCommandEvent& event) override;
  void OnJournals(wxCommandEvent& event) override;
  void OnCleanDoubles(wxCommandEvent& event) override;
  void OnCleanAuthors(wxCommandEvent& event) override;
  void OnCleanCharacters(wxCommandEvent& event) override;
  void OnCleanTags(wxCommandEvent& event) override;

  void OnPreferencesExtract(wxCommandEvent& event) override;
  void OnPreferencesText(wxCommandEvent& event) override;
  void OnPreferencesJournals(wxCommandEvent& event) override;
  void OnPreferencesCleanTags(wxCommandEvent& event) override;

  void OnAbout(wxCommandEvent& event) override;
  void OnQuit(wxCommandEvent& event) override;

 private:
  class Busy;
  class Work;

  void TakePick(PathBuffer& buffer, const FilePicker& picker, FilePicker& other);
  void RunRow(OperationCode code);
  void OnKey(wxKeyEvent& event);
  void EndProgram();

  /// Whether the picked files may change: nothing works on them, and no box or file dialog is open.
  bool TakesFiles() const;
  /// The picker in whose row a file is dropped; between the rows the first that shows none, or
  /// null.
  FilePicker* PickerAt(wxPoint place) const;
  bool TakeDropped(wxPoint place, const std::string& path);

  bool works_ = false;  // in a handler, which may show boxes
};

}  // namespace tarvel
