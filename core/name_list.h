// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace tarvel {

/// Cuts a list of names into its names: at every " and", whatever follows. Blanks around a name are
/// dropped and empty names left out.
class NameParts {
 public:
  /// `list` must outlive this.
  explicit NameParts(std::string_view list) : rest_(list) {}
  /// The next name, or nothing at the end of the list.
  std::optional<std::string_view> Next();

 private:
  std::string_view rest_;
  bool at_end_ = false;
};

}  // namespace tarvel
