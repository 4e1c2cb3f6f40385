// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/hash_index.h"
#include "warnings/library_scan.h"
#include "warnings/warnings.h"

namespace tarvel {

/// Reports keys that occur again in one library, letter case aside.
class RepeatedKeys {
 public:
  /// `library`, its bytes, and `warnings` must outlive this.
  RepeatedKeys(std::string_view library, FileWarnings& warnings)
      : library_(library), warnings_(warnings) {}

  /// Reports the entry if an earlier one has its key. Takes the entries of `library` in their
  /// order.
  void Check(const EntryHead& head);

 private:
  std::string_view KeyAt(std::size_t offset) const;

  std::string_view library_;
  FileWarnings& warnings_;
  HashIndex offsets_;  // of the keys
  std::string upper_;
};

}  // namespace tarvel
