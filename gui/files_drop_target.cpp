// SPDX-License-Identifier: MIT
#include "gui/files_drop_target.h"

#include <gtk/gtk.h>
#include <wx/dataobj.h>

#include <memory>
#include <utility>

namespace tarvel {

namespace {

/// The path of the first of these URIs, one a line; empty when it is of no regular file.
std::string FirstFile(const std::string& uris) {
  const std::unique_ptr<char*, void (*)(char**)> list(g_uri_list_extract_uris(uris.c_str()),
                                                      g_strfreev);
  if (!*list) return {};
  const std::unique_ptr<char, void (*)(gpointer)> path(g_filename_from_uri(*list, nullptr, nullptr),
                                                       g_free);
  const bool regular = path && g_file_test(path.get(), G_FILE_TEST_IS_REGULAR) != FALSE;
  return regular ? path.get() : "";
}

}  // namespace

// The toolkit's own target for files gives names that are not UTF-8 only roughly: this one takes
// the list of URIs as it is.
FilesDropTarget::FilesDropTarget(IsWelcome is_welcome, Take take)
    : wxDropTarget(new wxCustomDataObject(wxDF_FILENAME)),
      is_welcome_(std::move(is_welcome)),
      take_(std::move(take)) {}

wxDragResult FilesDropTarget::OnEnter(wxCoord x, wxCoord y, wxDragResult suggested) {
  return OnDragOver(x, y, suggested);
}

wxDragResult FilesDropTarget::OnDragOver(wxCoord /*x*/, wxCoord /*y*/, wxDragResult /*suggested*/) {
  return is_welcome_() ? wxDragCopy : wxDragNone;  // never moved: the file stays where it is
}

bool FilesDropTarget::OnDrop(wxCoord /*x*/, wxCoord /*y*/) { return is_welcome_(); }

wxDragResult FilesDropTarget::OnData(wxCoord x, wxCoord y, wxDragResult /*suggested*/) {
  if (!GetData()) return wxDragNone;
  const auto& uris = *static_cast<wxCustomDataObject*>(GetDataObject());
  const std::string path =
      FirstFile(std::string(static_cast<const char*>(uris.GetData()), uris.GetSize()));
  return !path.empty() && take_(wxPoint(x, y), path) ? wxDragCopy : wxDragNone;
}

}  // namespace tarvel
