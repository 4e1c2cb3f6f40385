// SPDX-License-Identifier: MIT
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <array>

#include "app/operations.h"
#include "gui/base/file_picker.h"
#include "gui/base/widgets.h"

namespace tarvel {

/// The widgets of the main dialog, and a handler that does nothing for each of its events. The rows
/// come from the operation table.
class GUIDialog : public wxDialog {
 public:
  GUIDialog(wxWindow* parent, wxWindowID id, const wxString& title,
            const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
            long style = wxDEFAULT_DIALOG_STYLE);

 protected:
  struct Row {
    wxStaticText* description = nullptr;
    wxButton* help = nullptr;
    wxButton* operation = nullptr;
    wxButton* preferences = nullptr;  // null in rows without preferences
  };

  virtual void OnClose(wxCloseEvent& /*event*/) {}
  virtual void OnInitialise(wxInitDialogEvent& event) { event.Skip(); }
  virtual void OnFirstFileChanged(wxFileDirPickerEvent& /*event*/) {}
  virtual void OnSecondFileChanged(wxFileDirPickerEvent& /*event*/) {}

  virtual void OnHelpExtract(wxCommandEvent& /*event*/) {}
  virtual void OnHelpCompare(wxCommandEvent& /*event*/) {}
  virtual void OnHelpText(wxCommandEvent& /*event*/) {}
  virtual void OnHelpJournals(wxCommandEvent& /*event*/) {}
  virtual void OnHelpCleanDoubles(wxCommandEvent& /*event*/) {}
  virtual void OnHelpCleanAuthors(wxCommandEvent& /*event*/) {}
  virtual void OnHelpCleanCharacters(wxCommandEvent& /*event*/) {}
  virtual void OnHelpCleanTags(wxCommandEvent& /*event*/) {}

  virtual void OnExtract(wxCommandEvent& /*event*/) {}
  virtual void OnCompare(wxCommandEvent& /*event*/) {}
  virtual void OnText(wxCommandEvent& /*event*/) {}
  virtual void OnJournals(wxCommandEvent& /*event*/) {}
  virtual void OnCleanDoubles(wxCommandEvent& /*event*/) {}
  virtual void OnCleanAuthors(wxCommandEvent& /*event*/) {}
  virtual void OnCleanCharacters(wxCommandEvent& /*event*/) {}
  virtual void OnCleanTags(wxCommandEvent& /*event*/) {}

  virtual void OnPreferencesExtract(wxCommandEvent& /*event*/) {}
  virtual void OnPreferencesText(wxCommandEvent& /*event*/) {}
  virtual void OnPreferencesJournals(wxCommandEvent& /*event*/) {}
  virtual void OnPreferencesCleanTags(wxCommandEvent& /*event*/) {}

  virtual void OnAbout(wxCommandEvent& /*event*/) {}
  virtual void OnQuit(wxCommandEvent& /*event*/) {}

  wxPanel* files_panel_ = nullptr;
  wxStaticText* first_file_label_ = nullptr;
  FilePicker* first_file_picker_ = nullptr;
  wxStaticText* second_file_label_ = nullptr;
  FilePicker* second_file_picker_ = nullptr;

  wxPanel* operations_panel_ = nullptr;
  std::array<Row, kOperations.size()> rows_;  // ORDER: kOperations

  wxPanel* buttons_panel_ = nullptr;
  wxButton* about_button_ = nullptr;
  wxButton* quit_button_ = nullptr;

 private:
  wxPanel* BuildFiles();
  wxPanel* BuildOperations();
  Row BuildRow(const Operation& operation, wxSizer& grid);
  wxPanel* BuildButtons();
  /// Gives the labels of all panels one width, so that what stands beside them has one left edge.
  void AlignColumns();
  void ConnectEvents();
  wxStaticText* NewLabel(wxWindow* parent, std::string_view text);

  const int gap_ = Gap(*this);
  wxSizerItem* buttons_indent_ = nullptr;
};

}  // namespace tarvel
