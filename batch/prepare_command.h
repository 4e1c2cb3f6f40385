// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "batch/options.h"
#include "ops/prepare/prepare.h"

namespace tarvel {

/// What the words after "prepare" ask for.
struct PrepareRequest {
  std::string library;  // empty: print `text` and stop with `exit_status`
  PrepareOptions options;
  bool quiet = false;
  std::string warnings_file;  // empty: none
  std::string text;           // the help, or the reason of a wrong usage
  int exit_status = 0;
};

/// Reads the words after "prepare". A wrong usage gives `kWrongUsage` and a reason of one line.
PrepareRequest ParsePrepareLine(const std::vector<std::string>& words);

/// Prepares the library of a request and says "Done!", or what failed; gives 1 on success.
int RunPrepareRequest(const PrepareRequest& request, const WarningOutputs& outputs);

/// The files of a request that are libraries, by their places in `request.files`.
std::vector<std::size_t> LibrariesOf(const BatchRequest& request);

/// Prepares the libraries of a request and puts the paths of the copies into `files`, the
/// request's. A library that is named twice is prepared once. False after a failure, which was
/// reported.
bool PrepareLibraries(const BatchRequest& request, const WarningOutputs& outputs,
                      std::vector<std::string>& files);

}  // namespace tarvel
