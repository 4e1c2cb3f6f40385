// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/operations.h"
#include "app/settings.h"
#include "ops/run_context.h"

namespace tarvel {

struct VerbRow;

/// What a command line asks for.
struct BatchRequest {
  const VerbRow* verb = nullptr;         // null: print `text` and stop with `exit_status`
  const Operation* operation = nullptr;  // null for a command, too
  std::vector<std::string> files;        // in the order of the file pickers
  Settings settings;
  CitationRules citations;
  std::vector<std::string> only, ignore;  // kinds of warnings
  bool quiet = false;
  bool strict = false;
  bool prepare = false;          // prepare the libraries first, and work on the copies
  bool keep_all = false;         // prepare: keep the tags that operations misread
  std::string output_directory;  // empty: beside the library
  std::string warnings_file;  // empty: none; `kAllOnTerminal`: no file, but all on standard error
  std::string key_map_file;   // empty: none
  std::string text;  // for standard output, or the reason of a wrong usage for standard error
  int exit_status = 0;
};

inline constexpr int kWrongUsage = 2;
inline constexpr int kLosses = 3;
/// What --warnings takes in place of a file's name.
inline constexpr std::string_view kAllOnTerminal = "-";

}  // namespace tarvel
