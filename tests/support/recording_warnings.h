// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "warnings/warnings.h"

namespace tarvel::testing {

/// Keeps the warnings of a run.
class RecordingWarnings final : public Warnings {
 public:
  void Report(const Warning& warning) override {
    lines.push_back(std::string(RowOf(warning.kind).name) + " " + std::string(warning.file) + ":" +
                    std::to_string(warning.line) + " [" + std::string(warning.key) + "] " +
                    std::string(warning.text));
    kinds.push_back(warning.kind);
    texts.emplace_back(warning.text);
  }
  void MapKey(std::string_view old_key, std::string_view new_key) override {
    keys.emplace_back(old_key, new_key);
  }

  /// The lines of one kind: "name file:line [key] text".
  std::vector<std::string> Of(WarningKind kind) const { return Only(lines, kind); }
  /// The texts of one kind.
  std::vector<std::string> TextsOf(WarningKind kind) const { return Only(texts, kind); }

  std::vector<std::string> lines;
  std::vector<std::string> texts;
  std::vector<WarningKind> kinds;
  std::vector<std::pair<std::string, std::string>> keys;

 private:
  std::vector<std::string> Only(const std::vector<std::string>& from, WarningKind kind) const {
    std::vector<std::string> found;
    for (std::size_t i = 0; i < from.size(); ++i) {
      if (kinds[i] == kind) found.push_back(from[i]);
    }
    return found;
  }
};

}  // namespace tarvel::testing
