// SPDX-License-Identifier: MIT
#pragma once

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>

#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

#include "gui/base/widgets.h"
#include "gui/preference_rows.h"

namespace tarvel {

/// What the four preference dialogs have in common: controls built from rows, and a handler that
/// does nothing for each kind of control, which gets the control's row.
class PrefDialog : public wxDialog {
 public:
  /// Sets every control from its flag in the global settings. Sends no events.
  void ShowFlags();

 protected:
  PrefDialog(wxWindow* parent, wxWindowID id, const wxString& title, const wxPoint& position,
             const wxSize& size, long style, std::span<const PreferenceSection> sections);

  virtual void OnClose(wxCloseEvent& /*event*/) {}
  virtual void OnRadio(const RadioRow& /*row*/) {}
  virtual void OnCheckBox(const CheckRow& /*row*/, bool /*checked*/) {}
  virtual void OnDone(wxCommandEvent& /*event*/) {}

  /// Adds the line of buttons at the bottom, "Done" last, and fits the dialog to its controls.
  void AddButtons(std::initializer_list<wxButton*> buttons);

  wxButton* done_button_ = nullptr;

 private:
  void AddSection(const PreferenceSection& section);
  void AddRadios(std::span<const RadioRow> rows);
  void AddCheckBoxes(const PreferenceSection& section);

  const int gap_ = Gap(*this);
  wxBoxSizer* lines_;
  std::vector<std::pair<wxRadioButton*, FlagName>> radios_;
  std::vector<std::pair<wxCheckBox*, FlagName>> check_boxes_;
};

}  // namespace tarvel
