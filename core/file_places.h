// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tarvel {

/// The absolute path of a file, or of the one that writing to `path` would make, links followed.
std::string PlaceOfFile(const std::string& path);

/// Whether both paths name one file, so that writing one would change the other: the same file on
/// disk, or one that either path would make, links followed. Not so for devices and pipes, into
/// which several may write.
bool AreOneFile(const std::string& one, const std::string& other);

/// The directory that a path's last component stands in, with its "/"; "." when the path has one
/// component.
std::string DirectoryOfFile(const std::string& path);

}  // namespace tarvel
