// SPDX-License-Identifier: MIT
// GoogleTest inside the toolkit: the tests run as the event loop of the application.
#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/debug.h>

#include <cstdio>

#include "tests/gui/gui_support.h"

namespace {

constexpr int kSkipped = 77;

/// A failed assertion of the toolkit would wait in a box for ever: it fails the test instead.
void FailTest(const wxString& file, int line, const wxString& function, const wxString& condition,
              const wxString& message) {
  ADD_FAILURE_AT(file.utf8_str(), line)
      << function.utf8_str() << ": " << condition.utf8_str() << " " << message.utf8_str();
}

}  // namespace

using tarvel::testing::TestApp;
wxIMPLEMENT_APP_NO_MAIN(TestApp);

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (!std::getenv("DISPLAY")) {
    std::fputs("skipped: no display\n", stderr);
    return kSkipped;
  }
  wxSetAssertHandler(FailTest);
  return wxEntry(argc, argv);
}
