// SPDX-License-Identifier: MIT
#include "gui/wx_text.h"

namespace tarvel {

wxString ToWx(std::string_view bytes) {
  // The conversion of the toolkit gives an empty text when a single byte is out of place.
  const wxString text = wxString::FromUTF8(bytes.data(), bytes.size());
  if (text.empty() && !bytes.empty()) return wxString::From8BitData(bytes.data(), bytes.size());
  return text;
}

std::string ToBytes(const wxString& text) {
  const auto bytes = text.utf8_str();
  return {bytes.data(), bytes.length()};
}

}  // namespace tarvel
