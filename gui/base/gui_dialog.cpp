// SPDX-License-Identifier: MIT
#include "gui/base/gui_dialog.h"

#include <wx/sizer.h>

#include <algorithm>
#include <array>

#include "gui/base/widgets.h"
#include "gui/wx_text.h"

namespace tarvel {

namespace {

constexpr int kGap = 6;            // between widgets
constexpr int kMargin = 12;        // around the dialog's panels
constexpr int kGroupGap = 14;      // between the fourth row and the fifth
constexpr int kSpacerHeight = 20;  // above "About" and "Quit"
constexpr std::size_t kFirstGroup = 4;

wxFilePickerCtrl* NewPicker(wxWindow* parent, std::string_view purpose) {
  auto* picker =
      new wxFilePickerCtrl(parent, wxID_ANY, wxString(), ToWx("Select a file"), ToWx("*.*"),
                           wxDefaultPosition, wxDefaultSize, wxFLP_OPEN | wxFLP_FILE_MUST_EXIST);
  Describe(*picker, purpose);
  return picker;
}

}  // namespace

GUIDialog::GUIDialog(wxWindow* parent, wxWindowID id, const wxString& title,
                     const wxPoint& position, const wxSize& size, long style)
    : wxDialog(parent, id, title, position, size, style) {
  auto* parts = new wxBoxSizer(wxVERTICAL);
  parts->Add(BuildFiles(), 0, wxEXPAND | wxALL, kMargin);
  parts->Add(BuildOperations(), 1, wxEXPAND | wxLEFT | wxRIGHT, kMargin);
  parts->AddSpacer(kSpacerHeight);
  parts->Add(BuildButtons(), 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, kMargin);
  SetSizerAndFit(parts);
  ConnectEvents();
}

wxStaticText* GUIDialog::NewLabel(wxWindow* parent, std::string_view text) {
  auto* label = new wxStaticText(parent, wxID_ANY, ToWx(text));
  label->SetFont(GetFont().Bold());
  return label;
}

wxPanel* GUIDialog::BuildFiles() {
  files_panel_ = new wxPanel(this);
  first_file_label_ = NewLabel(files_panel_, "Load first file");
  first_file_picker_ = NewPicker(files_panel_, "Load first file");
  second_file_label_ = NewLabel(files_panel_, "Load second file");
  second_file_picker_ = NewPicker(files_panel_, "Load second file");

  auto* grid = new wxFlexGridSizer(2, kGap, kMargin);
  grid->AddGrowableCol(1);
  grid->Add(first_file_label_, 0, wxALIGN_CENTRE_VERTICAL);
  grid->Add(first_file_picker_, 0, wxEXPAND);
  grid->Add(second_file_label_, 0, wxALIGN_CENTRE_VERTICAL);
  grid->Add(second_file_picker_, 0, wxEXPAND);
  files_panel_->SetSizer(grid);
  return files_panel_;
}

GUIDialog::Row GUIDialog::BuildRow(const Operation& operation, wxSizer& grid) {
  Row row;
  row.description = NewLabel(operations_panel_, operation.description);
  row.help = NewButton(operations_panel_, "Help", "Help for ", operation.button);
  row.operation = NewButton(operations_panel_, operation.button, {}, operation.button);
  grid.Add(row.description, 0, wxALIGN_CENTRE_VERTICAL);
  grid.Add(row.help, 0, wxEXPAND);
  grid.Add(row.operation, 0, wxEXPAND);
  if (!operation.has_preferences) {
    grid.AddStretchSpacer();
    return row;
  }
  row.preferences =
      NewButton(operations_panel_, "Preferences", "Preferences for ", operation.button);
  grid.Add(row.preferences, 0, wxEXPAND);
  return row;
}

wxPanel* GUIDialog::BuildOperations() {
  constexpr int kColumns = 4;
  operations_panel_ = new wxPanel(this);
  auto* grid = new wxFlexGridSizer(kColumns, kGap, kGap);
  grid->AddGrowableCol(0);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (i == kFirstGroup) {
      for (int column = 0; column < kColumns; ++column) grid->AddSpacer(kGroupGap);
    }
    rows_[i] = BuildRow(kOperations[i], *grid);
  }
  operations_panel_->SetSizer(grid);
  return operations_panel_;
}

wxPanel* GUIDialog::BuildButtons() {
  buttons_panel_ = new wxPanel(this);
  about_button_ = NewButton(buttons_panel_, "&About", {}, "About");
  quit_button_ = NewButton(buttons_panel_, "&Quit", {}, "Quit");
  auto* line = new wxBoxSizer(wxHORIZONTAL);
  line->AddStretchSpacer();
  line->Add(about_button_, 0, wxRIGHT, kGap);
  line->Add(quit_button_);
  buttons_panel_->SetSizer(line);
  return buttons_panel_;
}

void GUIDialog::ConnectEvents() {
  using G = GUIDialog;
  using enum OperationCode;
  struct RowHandlers {
    OperationCode code;
    void (G::*help)(wxCommandEvent&);
    void (G::*operation)(wxCommandEvent&);
    void (G::*preferences)(wxCommandEvent&);  // null in rows without preferences
  };
  // ORDER: kOperations
  static constexpr auto kHandlers = std::to_array<RowHandlers>({
      {kExtract, &G::OnHelpExtract, &G::OnExtract, &G::OnPreferencesExtract},
      {kCompare, &G::OnHelpCompare, &G::OnCompare, nullptr},
      {kText, &G::OnHelpText, &G::OnText, &G::OnPreferencesText},
      {kJournals, &G::OnHelpJournals, &G::OnJournals, &G::OnPreferencesJournals},
      {kCleanDoubles, &G::OnHelpCleanDoubles, &G::OnCleanDoubles, nullptr},
      {kCleanAuthors, &G::OnHelpCleanAuthors, &G::OnCleanAuthors, nullptr},
      {kCleanCharacters, &G::OnHelpCleanCharacters, &G::OnCleanCharacters, nullptr},
      {kCleanTags, &G::OnHelpCleanTags, &G::OnCleanTags, &G::OnPreferencesCleanTags},
  });
  static_assert(
      std::equal(kHandlers.begin(), kHandlers.end(), kOperations.begin(), kOperations.end(),
                 [](const RowHandlers& handlers, const Operation& row) {
                   return handlers.code == row.code && handlers.help && handlers.operation &&
                          (handlers.preferences != nullptr) == row.has_preferences;
                 }),
      "each row of kOperations needs its handlers here, in the same order: for the help, for the "
      "operation and, where the row has preferences, for those");
  Bind(wxEVT_CLOSE_WINDOW, &G::OnClose, this);
  Bind(wxEVT_INIT_DIALOG, &G::OnInitialise, this);
  first_file_picker_->Bind(wxEVT_FILEPICKER_CHANGED, &G::OnFirstFileChanged, this);
  second_file_picker_->Bind(wxEVT_FILEPICKER_CHANGED, &G::OnSecondFileChanged, this);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    rows_[i].help->Bind(wxEVT_BUTTON, kHandlers[i].help, this);
    rows_[i].operation->Bind(wxEVT_BUTTON, kHandlers[i].operation, this);
    if (rows_[i].preferences) {
      rows_[i].preferences->Bind(wxEVT_BUTTON, kHandlers[i].preferences, this);
    }
  }
  about_button_->Bind(wxEVT_BUTTON, &G::OnAbout, this);
  quit_button_->Bind(wxEVT_BUTTON, &G::OnQuit, this);
}

}  // namespace tarvel
