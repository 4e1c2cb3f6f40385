// SPDX-License-Identifier: MIT
#include "gui/base/pref_dialog.h"

#include <wx/stattext.h>

#include "app/globals.h"
#include "gui/base/widgets.h"
#include "gui/wx_text.h"

namespace tarvel {

PrefDialog::PrefDialog(wxWindow* parent, wxWindowID id, const wxString& title,
                       const wxPoint& position, const wxSize& size, long style,
                       std::span<const PreferenceSection> sections)
    : wxDialog(parent, id, title, position, size, style), lines_(new wxBoxSizer(wxVERTICAL)) {
  for (const PreferenceSection& section : sections) AddSection(section);
  auto* border = new wxBoxSizer(wxVERTICAL);
  border->Add(lines_, wxSizerFlags(1).Expand().Border(wxALL, 2 * gap_));
  SetSizer(border);
  StandAlone(*this);
  Bind(wxEVT_CLOSE_WINDOW, &PrefDialog::OnClose, this);
}

void PrefDialog::AddSection(const PreferenceSection& section) {
  auto* heading = new wxStaticText(this, wxID_ANY, ToWx(section.heading));
  heading->SetFont(GetFont().Bold());
  lines_->Add(heading, wxSizerFlags().Border(wxBOTTOM, gap_));
  if (!section.radios.empty()) AddRadios(section.radios);
  if (!section.radios.empty() && !section.check_boxes.empty()) lines_->AddSpacer(gap_);
  if (!section.check_boxes.empty()) AddCheckBoxes(section);
  lines_->AddSpacer(2 * gap_);
}

void PrefDialog::AddRadios(std::span<const RadioRow> rows) {
  // GTK keeps one button of a group on. A group whose flags are all off shows so because the button
  // that is on, this one, is not shown.
  auto* none =
      new wxRadioButton(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
  none->SetValue(true);
  none->Hide();
  for (const RadioRow& row : rows) {
    auto* radio = new wxRadioButton(this, wxID_ANY, ToWx(row.label));
    radio->SetName(ToWx(row.label));
    radio->Bind(wxEVT_RADIOBUTTON, [this, &row](wxCommandEvent&) { OnRadio(row); });
    radios_.emplace_back(radio, row.flag);
    lines_->Add(radio, wxSizerFlags().Border(wxLEFT | wxBOTTOM, gap_));
  }
}

void PrefDialog::AddCheckBoxes(const PreferenceSection& section) {
  auto* columns = new wxBoxSizer(wxHORIZONTAL);
  wxBoxSizer* column = nullptr;
  for (std::size_t i = 0; i < section.check_boxes.size(); ++i) {
    if (i % kColumnHeight == 0) {
      column = new wxBoxSizer(wxVERTICAL);
      columns->Add(column, wxSizerFlags().Border(wxRIGHT, 2 * gap_));
    }
    const CheckRow& row = section.check_boxes[i];
    auto* box = new wxCheckBox(this, wxID_ANY, ToWx(row.label));
    box->SetName(ToWx(row.label));
    if (!section.description.empty()) {
      Describe(*box, std::string(section.description).append(row.label));
    }
    box->Bind(wxEVT_CHECKBOX,
              [this, &row](wxCommandEvent& event) { OnCheckBox(row, event.IsChecked()); });
    check_boxes_.emplace_back(box, row.flag);
    column->Add(box, wxSizerFlags().Border(wxLEFT | wxBOTTOM, gap_));
  }
  lines_->Add(columns);
}

void PrefDialog::AddButtons(std::initializer_list<wxButton*> buttons) {
  done_button_ = NewButton(this, "Done", {}, "Done");
  done_button_->Bind(wxEVT_BUTTON, &PrefDialog::OnDone, this);
  auto* line = new wxBoxSizer(wxHORIZONTAL);
  line->AddStretchSpacer();
  for (wxButton* button : buttons) line->Add(button, wxSizerFlags().Border(wxRIGHT, gap_));
  line->Add(done_button_);
  lines_->Add(line, wxSizerFlags().Expand());
  lines_->SetMinSize(TitleBarWidth(*this, GetTitle()), -1);
  done_button_->SetDefault();
  SetEscapeId(done_button_->GetId());
  GetSizer()->Fit(this);
}

void PrefDialog::ShowFlags() {
  for (const auto& [radio, flag] : radios_) {
    if (flag.In(GlobalSettings) != 0) radio->SetValue(true);  // the group clears the others
  }
  for (const auto& [box, flag] : check_boxes_) box->SetValue(flag.In(GlobalSettings) != 0);
}

}  // namespace tarvel
