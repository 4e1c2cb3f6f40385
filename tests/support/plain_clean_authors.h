// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tarvel::testing {

struct PlainAuthorFiles {
  std::string library;
  std::string log;
};

/// What Clean authors writes for a library of these bytes, step after step with one buffer per
/// variable: the judge of the faster walk. The recognisers and the single-name functions are the
/// product's own.
PlainAuthorFiles PlainCleanAuthors(const std::string& bytes, const std::string& path,
                                   const std::string& library_path);

}  // namespace tarvel::testing
