// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tarvel::testing {

/// What Clean characters writes, found byte by byte.
struct PlainCharacters {
  std::string library;
  std::string log;
};

PlainCharacters PlainCleanCharacters(const std::string& library, const std::string& path,
                                     const std::string& new_path);

}  // namespace tarvel::testing
