// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "app/settings.h"

namespace tarvel::testing {

struct PlainCleanTagsResult {
  int result = 0;
  std::string library;
  std::string log;
};

/// Clean tags as its rules read, with one re-read after the other: the judge of the fast one.
PlainCleanTagsResult PlainCleanTags(const std::string& input, const std::string& input_path,
                                    const std::string& library_path, const Settings& settings);

}  // namespace tarvel::testing
