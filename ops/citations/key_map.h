// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/keyed_hash.h"
#include "ops/citations/cite_commands.h"

namespace tarvel {

/// Whether LaTeX can read the key in a citation.
bool CanBeCited(std::string_view key);

/// What keys become, as a file of "--key-map" says.
class KeyMap {
 public:
  /// Reads the lines of such a file: the old key, a tab, the new key, with "\t", "\n", "\r", "\\"
  /// and "\xNN" for the bytes that cannot stand there. Returns the number, from 1, of the first
  /// line that is none of these, or whose new key cannot be cited; 0 when there is none.
  std::size_t Read(std::string_view bytes);

  /// The new key; null for a key that stays.
  const std::string* Find(const std::string& key) const;

  /// Keys that the file maps to several others; the first counts.
  const std::vector<std::string>& Ambiguous() const { return ambiguous_; }
  /// Keys that became another for a later entry only (the new key is the old one with "_" and a
  /// byte after it): the first entry still has the key.
  const std::vector<std::string>& Divided() const { return divided_; }

 private:
  bool TakeLine(std::string_view line);

  std::unordered_map<std::string, std::string, KeyedStringHash> keys_;
  std::vector<std::string> ambiguous_;
  std::vector<std::string> divided_;
};

/// A document with other keys.
struct RekeyedDocument {
  std::string text;
  std::size_t replaced = 0;
};

/// Replaces the keys in the citations of a LaTeX document, which is read as `ReadDocument` does. No
/// other byte changes. `on_other` is called with commands that look like citations and are not
/// read, and their offsets.
RekeyedDocument ReplaceKeys(
    std::string_view document, const CiteCommands& commands, const KeyMap& map,
    const std::function<void(std::string_view command, std::size_t offset)>& on_other = {});

}  // namespace tarvel
