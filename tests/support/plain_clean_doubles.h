// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvel::testing {

/// What a run of Clean doubles leaves after.
struct DoublesOutcome {
  int result = 0;
  std::string log;
  std::string library;
  std::vector<std::string> warnings;
  bool operator==(const DoublesOutcome&) const = default;
};

/// Clean doubles in its plainest form: for every entry the new library is rewound and read again
/// line by line, and a kept entry is written where the reading stopped, over what stands there.
/// The judge of the indexed version. `input_path` and `library_path` only appear in the summary.
DoublesOutcome PlainCleanDoubles(std::string_view input, const std::string& input_path,
                                 const std::string& library_path);

}  // namespace tarvel::testing
