// SPDX-License-Identifier: MIT
#include "gui/wx_text.h"

namespace tarvel {

wxString ToWx(std::string_view bytes) {
  // The conversion of the toolkit gives an empty text when a single byte is out of place.
  const wxString text = wxString::FromUTF8(bytes.data(), bytes.size());
  if (text.empty() && !bytes.empty()) return wxString::From8BitData(bytes.data(), bytes.size());
  return text;
}

}  // namespace tarvel
