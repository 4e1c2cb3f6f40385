// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dnd.h>

#include <functional>
#include <string>

namespace tarvel {

/// Takes a file that is dropped on a window. Of several files the first counts; what is no regular
/// file of this machine is refused.
class FilesDropTarget final : public wxDropTarget {
 public:
  /// Whether a file may be dropped now.
  using IsWelcome = std::function<bool()>;
  /// Takes a file dropped at a place of the window, by the bytes of its path; false refuses it. The
  /// other program waits for the answer: what takes time, or shows a box, has to come afterwards.
  using Take = std::function<bool(wxPoint, const std::string&)>;

  FilesDropTarget(IsWelcome is_welcome, Take take);

  wxDragResult OnEnter(wxCoord x, wxCoord y, wxDragResult suggested) override;
  wxDragResult OnDragOver(wxCoord x, wxCoord y, wxDragResult suggested) override;
  bool OnDrop(wxCoord x, wxCoord y) override;
  wxDragResult OnData(wxCoord x, wxCoord y, wxDragResult suggested) override;

 private:
  IsWelcome is_welcome_;
  Take take_;
};

}  // namespace tarvel
