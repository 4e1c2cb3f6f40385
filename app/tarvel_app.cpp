// SPDX-License-Identifier: MIT
#include "app/tarvel_app.h"

#include <atk/atk.h>

#include <new>

#include "app/process.h"
#include "app/reporter.h"
#include "gui/tarvel_dialog.h"

namespace tarvel {

namespace {

/// GTK calls the program by the name of its desktop file.
void NameForScreenReaders() {
  if (AtkObject* root = atk_get_root()) {
    ATK_OBJECT_GET_CLASS(root)->get_name = [](AtkObject*) { return "tarvel"; };
  }
}

}  // namespace

bool Tarvel_App::OnInit() {
  // wxApp::OnInit is not called: it would parse the command line and refuse what it does not know.
  InstallReporter(reporter_);
  RaiseStackLimit();
  NameForScreenReaders();
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
