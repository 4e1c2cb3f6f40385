// SPDX-License-Identifier: MIT
#include "gui/window_icons.h"

#include <wx/bitmap.h>
#include <wx/icon.h>
#include <wx/image.h>
#include <wx/imagpng.h>
#include <wx/log.h>
#include <wx/wfstream.h>

#include <array>
#include <string>

#include "gui/wx_text.h"

namespace tarvel {

namespace {

// Seen from lib/tarvel of an installation, and from bin of the build tree.
constexpr std::array kShareDirectories{"/../../share", "/../share"};

// From small to large: the toolkit drops the end of what is too much for the display.
constexpr std::array kSizes{16, 24, 32, 48, 64, 128, 256};

wxImage ReadPng(const wxString& path) {
  wxImage image;
  wxFFileInputStream file(path);
  if (file.IsOk()) wxPNGHandler().LoadFile(&image, file, /*verbose=*/false);
  return image;
}

}  // namespace

wxIconBundle WindowIcons(const wxString& program_directory) {
  const wxLogNull no_boxes;
  wxIconBundle icons;
  for (const char* share : kShareDirectories) {
    for (const int size : kSizes) {
      const std::string pixels = std::to_string(size);
      const wxImage image =
          ReadPng(program_directory + ToWx(std::string(share) + "/icons/hicolor/" + pixels + "x" +
                                           pixels + "/apps/org.tarvel.Tarvel.png"));
      if (!image.IsOk()) continue;
      wxIcon icon;
      icon.CopyFromBitmap(wxBitmap(image));
      icons.AddIcon(icon);
    }
    if (!icons.IsEmpty()) break;
  }
  return icons;
}

}  // namespace tarvel
