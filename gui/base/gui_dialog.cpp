// SPDX-License-Identifier: MIT
#include "gui/base/gui_dialog.h"

#include <algorithm>
#include <array>
#include <vector>

#include "gui/base/widgets.h"
#include "gui/wx_text.h"

namespace tarvel {

namespace {

constexpr int kSpacerHeight = 20;       // above "About" and "Quit"
constexpr std::size_t kFirstGroup = 4;  // rows above the space in the middle

}  // namespace

GUIDialog::GUIDialog(wxWindow* parent, wxWindowID id, const wxString& title,
                     const wxPoint& position, const wxSize& size, long style)
    : wxDialog(parent, id, title, position, size, style) {
  const int border = 2 * gap_;
  auto* parts = new wxBoxSizer(wxVERTICAL);
  parts->Add(BuildFiles(), wxSizerFlags().Expand().Border(wxALL, border));
  parts->Add(BuildOperations(), wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, border));
  parts->AddSpacer(FromDIP(kSpacerHeight));
  parts->Add(BuildButtons(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, border));
  AlignColumns();
  SetSizerAndFit(parts);
  StandAlone(*this);
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
  first_file_picker_ = new FilePicker(files_panel_, "Load first file");
  second_file_label_ = NewLabel(files_panel_, "Load second file");
  second_file_picker_ = new FilePicker(files_panel_, "Load second file");

  auto* grid = new wxFlexGridSizer(2, gap_, gap_);
  grid->AddGrowableCol(1);
  grid->Add(first_file_label_, wxSizerFlags().CentreVertical());
  grid->Add(first_file_picker_, wxSizerFlags().Expand());
  grid->Add(second_file_label_, wxSizerFlags().CentreVertical());
  grid->Add(second_file_picker_, wxSizerFlags().Expand());
  files_panel_->SetSizer(grid);
  return files_panel_;
}

GUIDialog::Row GUIDialog::BuildRow(const Operation& operation, wxSizer& grid) {
  Row row;
  row.description = NewLabel(operations_panel_, operation.description);
  row.help = NewButton(operations_panel_, "Help", "Help for ", operation.button);
  row.operation = NewButton(operations_panel_, operation.button, {}, operation.button);
  grid.Add(row.description, wxSizerFlags().CentreVertical());
  grid.Add(row.help, wxSizerFlags().Expand());
  grid.Add(row.operation, wxSizerFlags().Expand());
  if (!operation.has_preferences) {
    grid.AddStretchSpacer();
    return row;
  }
  row.preferences =
      NewButton(operations_panel_, "Preferences", "Preferences for ", operation.button);
  grid.Add(row.preferences, wxSizerFlags().Expand());
  return row;
}

wxPanel* GUIDialog::BuildOperations() {
  constexpr int kColumns = 4;
  operations_panel_ = new wxPanel(this);
  auto* grid = new wxFlexGridSizer(kColumns, gap_, gap_);
  grid->AddGrowableCol(0);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (i == kFirstGroup) {
      for (int column = 0; column < kColumns; ++column) grid->AddSpacer(2 * gap_);
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
  buttons_indent_ = line->AddSpacer(0);
  line->Add(about_button_, wxSizerFlags().Border(wxRIGHT, gap_));
  line->Add(quit_button_);
  buttons_panel_->SetSizer(line);
  return buttons_panel_;
}

void GUIDialog::AlignColumns() {
  std::vector<wxStaticText*> labels{first_file_label_, second_file_label_};
  for (const Row& row : rows_) labels.push_back(row.description);
  int width = 0;
  for (const wxStaticText* label : labels) {
    // The best size of a bold label is that of a plain one as long as the dialog is not shown.
    width = std::max(width, label->GetTextExtent(label->GetLabel()).x);
  }
  width += gap_;  // the label itself may be a little wider
  first_file_label_->SetMinSize(wxSize(width, -1));
  rows_[0].description->SetMinSize(wxSize(width, -1));
  buttons_indent_->AssignSpacer(width + gap_, 0);
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
