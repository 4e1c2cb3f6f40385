// SPDX-License-Identifier: MIT
#include "app/tarvel_app.h"

#include <new>

#include "app/process.h"
#include "app/reporter.h"
#include "gui/tarvel_dialog.h"

namespace tarvel {

bool Tarvel_App::OnInit() {
  // wxApp::OnInit is not called: it would parse the command line and refuse what it does not know.
  InstallReporter(reporter_);
  RaiseStackLimit();
  auto* dialog = new Tarvel_Dialog(nullptr);
  SetTopWindow(dialog);
  dialog->Show(true);
  return true;
}

bool Tarvel_App::OnExceptionInMainLoop() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    PrintError("Not enough memory!");
    return true;
  }
}

}  // namespace tarvel
