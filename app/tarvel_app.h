// SPDX-License-Identifier: MIT
#pragma once

#include <wx/app.h>

#include "gui/wx_reporter.h"

namespace tarvel {

/// The application object of the dialog.
class Tarvel_App : public wxApp {
 public:
  /// Raises the stack limit and shows the main dialog; returns true. The command line is not looked
  /// at.
  bool OnInit() override;
  /// Reports that memory ran out in a handler, and lets the window live on; returns true then. Any
  /// other exception goes on.
  bool OnExceptionInMainLoop() override;

 private:
  WxReporter reporter_;
};

}  // namespace tarvel
