// SPDX-License-Identifier: MIT
// tarvel: the dialog.
#include "app/process.h"
#include "app/tarvel_app.h"

using tarvel::Tarvel_App;

wxIMPLEMENT_APP_NO_MAIN(Tarvel_App);

int main(int argc, char** argv) {
  tarvel::PrepareProcess();
  return wxEntry(argc, argv);
}
