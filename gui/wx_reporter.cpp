// SPDX-License-Identifier: MIT
#include "gui/wx_reporter.h"

#include <wx/app.h>

#include <string>

#include "gui/message_box.h"
#include "gui/messages_window.h"

namespace tarvel {

int WxReporter::Print(std::string_view text) {
  const bool failure = text.starts_with("Attention, an error occured!");  // sic
  KeepMessage(failure ? MessageRank::kFailure : MessageRank::kRemark, text);
  return TerminalReporter::Print(text);
}

void WxReporter::Box(std::string_view message, std::string_view caption) {
  ShowMessageBox(wxTheApp->GetTopWindow(), message, caption);
}

void WxReporter::Warn(std::string_view text) {
  KeepMessage(MessageRank::kWarning, std::string(text).append("\n"));
  TerminalReporter::Warn(text);
}

}  // namespace tarvel
