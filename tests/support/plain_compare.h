// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tarvel::testing {

/// The three files that Compare writes.
struct ComparedFiles {
  std::string log;
  std::string missing;
  std::string equal;
  bool operator==(const ComparedFiles&) const = default;
};

/// Compare in its plainest form: every entry of the second library is held against the first
/// library, which is read again from its first entry each time; entries are copied by reading them
/// again from saved positions. Shares no code with the program but the header texts.
///
/// `first` and `second` are the libraries' bytes; the paths are what the log shows. `first_path`
/// must hold a ".".
ComparedFiles PlainCompare(const std::string& first_path, const std::string& first,
                           const std::string& second_path, const std::string& second);

}  // namespace tarvel::testing
