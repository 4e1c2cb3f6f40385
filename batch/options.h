// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "app/operations.h"
#include "app/settings.h"

namespace tarvel {

/// What a command line asks for.
struct BatchRequest {
  const Operation* operation = nullptr;  // null: print `text` and stop with `exit_status`
  std::vector<std::string> files;        // in the order of the file pickers
  Settings settings;
  bool prepare = false;  // prepare the libraries first, work on the copies
  bool quiet = false;
  std::string warnings_file;  // empty: none
  std::string key_map_file;   // empty: none
  std::string text;  // for standard output, or the reason of a wrong usage for standard error
  int exit_status = 0;
};

inline constexpr int kWrongUsage = 2;

/// Reads the command line (without the program's name). A wrong one gives `kWrongUsage` and a
/// reason of one line in `text`.
BatchRequest ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace tarvel
