// SPDX-License-Identifier: MIT
#include "gui/wx_reporter.h"

#include <wx/cursor.h>
#include <wx/msgdlg.h>
#include <wx/translation.h>
#include <wx/utils.h>

#include "gui/wx_text.h"

namespace tarvel {

namespace {

/// Puts the busy cursor away while a box waits for its user, and back afterwards.
class BusyCursorPause {
 public:
  BusyCursorPause() {
    for (; wxIsBusy(); ++depth_) wxEndBusyCursor();
  }
  BusyCursorPause(const BusyCursorPause&) = delete;
  BusyCursorPause& operator=(const BusyCursorPause&) = delete;
  ~BusyCursorPause() {
    for (; depth_ > 0; --depth_) wxBeginBusyCursor();
  }

 private:
  int depth_ = 0;
};

}  // namespace

void WxReporter::Box(std::string_view message, std::string_view caption) {
  const BusyCursorPause pause;
  wxMessageBox(ToWx(message), wxGetTranslation(ToWx(caption)), wxOK | wxCENTRE);
}

}  // namespace tarvel
