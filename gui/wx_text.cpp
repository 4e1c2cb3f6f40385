// SPDX-License-Identifier: MIT
#include "gui/wx_text.h"

#include <algorithm>

#include "core/utf8.h"

namespace tarvel {

wxString ToWx(std::string_view bytes) {
  // The conversion of the toolkit gives an empty text when a single byte is out of place.
  wxString text;
  while (!bytes.empty()) {
    const std::size_t bad = FindBadUtf8(bytes, 0);
    text += wxString::FromUTF8(bytes.data(), bad);
    text += wxString::From8BitData(bytes.data() + bad, bad < bytes.size() ? 1 : 0);
    bytes.remove_prefix(std::min(bad + 1, bytes.size()));
  }
  return text;
}

}  // namespace tarvel
