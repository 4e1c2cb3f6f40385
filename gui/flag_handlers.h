// SPDX-License-Identifier: MIT
#pragma once

#include "app/globals.h"
#include "gui/base/pref_dialog.h"

namespace tarvel {

/// The handlers that all preference dialogs share, over one of the base classes: a click writes its
/// flag at once; "Done" and the close button destroy the dialog.
template <class Base>
class FlagHandlers : public Base {
 protected:
  using Base::Base;

  void OnClose(wxCloseEvent&) override { this->Destroy(); }
  void OnRadio(const RadioRow& row) override { row.choose(GlobalSettings, row.flag); }
  void OnCheckBox(const CheckRow& row, bool checked) override {
    row.flag.In(GlobalSettings) = checked ? 1 : 0;
  }
  void OnDone(wxCommandEvent&) override { this->Destroy(); }
};

}  // namespace tarvel
