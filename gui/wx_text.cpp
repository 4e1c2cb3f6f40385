// SPDX-License-Identifier: MIT
#include "gui/wx_text.h"

#include <wx/strconv.h>

namespace tarvel {

wxString ToWx(std::string_view bytes) {
  // The conversion of the toolkit gives an empty text when a single byte is out of place.
  const wxString text = wxString::FromUTF8(bytes.data(), bytes.size());
  if (text.empty() && !bytes.empty()) return wxString::From8BitData(bytes.data(), bytes.size());
  return text;
}

std::string PathBytes(const wxString& path) {
  // The file dialog reads names with this conversion, and only it gives back what it has read.
  const wxCharBuffer bytes = path.mb_str(*wxConvFileName);
  if (bytes.length() > 0) return {bytes.data(), bytes.length()};
  const auto utf8 = path.utf8_str();
  return utf8.data();
}

}  // namespace tarvel
