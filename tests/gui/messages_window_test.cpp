// SPDX-License-Identifier: MIT
#include "gui/messages_window.h"

#include "tests/gui/gui_support.h"

namespace tarvel::testing {
namespace {

/// Waits until the window has the focus, for two seconds at most.
bool BecomesActive(wxTopLevelWindow& window) {
  for (int wait = 0; wait < 200 && !window.IsActive(); ++wait) Settle(10);
  return window.IsActive();
}

TEST_F(MainDialogTest, MessagesLeaveTheFocusWhereItIs) {
  if (!BecomesActive(*dialog)) GTEST_SKIP() << "no window manager gives the focus";
  auto* const messages = new MessagesWindow();
  messages->Add("Extract", "refs.bib:1: warning: a message\n");
  Settle(500);
  EXPECT_TRUE(messages->IsShown());
  EXPECT_TRUE(dialog->IsActive());
  EXPECT_FALSE(messages->IsActive());
  messages->Destroy();
  Settle();
}

}  // namespace
}  // namespace tarvel::testing
