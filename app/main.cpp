// SPDX-License-Identifier: MIT
// tarvel: the dialog.
#include <glib.h>

#include "app/process.h"
#include "app/tarvel_app.h"

using tarvel::Tarvel_App;

wxIMPLEMENT_APP_NO_MAIN(Tarvel_App);

int main(int argc, char** argv) {
  tarvel::PrepareProcess();
  // A desktop finds the icon and the name of a window by the name of the desktop file. The toolkit
  // would take that of the executable.
  g_set_prgname("org.tarvel.Tarvel");
  return wxEntry(argc, argv);
}
