// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarvel {

struct BatchRequest;

/// "tarvel-batch prepare LIBRARY": writes the library anew in the form that all operations read.
/// Returns the exit status.
int RunPrepareCommand(const BatchRequest& request);

/// The files of an operation's request that are libraries, by their indexes in `request.files`.
std::vector<std::size_t> LibrariesOf(const BatchRequest& request);

/// Prepares the libraries of a request and puts the paths of the copies into `files`, the
/// request's. A library that is named twice is prepared once. False after a failure, which was
/// reported.
bool PrepareLibraries(const BatchRequest& request, std::vector<std::string>& files);

}  // namespace tarvel
