// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <memory>
#include <string>

#include "core/output_file.h"

namespace tarvel {

/// Creates a file that stands under no name, or a temporary one, until it is published; `path` and
/// what is there stay as they are until then. Null exactly when `path` could not be created or
/// emptied in its place.
///
/// The file has the mode and the owner of the one that it replaces; a new one has the mode that the
/// umask and the directory give it. Where a rename would change more than the file's bytes, the
/// file is created and emptied in its place instead: `path` is a link, no regular file or a mount
/// point, or the file has several links or an owner who cannot be given to a new one, or the
/// directory takes no new files. Where only the room for a new file lacks, what exists stays and
/// the writes fail.
[[nodiscard]] std::unique_ptr<ByteSink> CreatePendingFile(const std::string& path, CreateMode mode);

/// Removes the files that have a temporary name at the moment. A signal handler may call it.
void RemoveTemporaryFiles();

/// Keeps SIGHUP, SIGINT and SIGTERM waiting, and other runs from publishing into the same
/// directory, for as long as it lives. What holds the directory's lock for other reasons is waited
/// for a fifth of a second.
class PublishGuard {
 public:
  explicit PublishGuard(const std::string& directory);
  PublishGuard(const PublishGuard&) = delete;
  PublishGuard& operator=(const PublishGuard&) = delete;
  ~PublishGuard();

 private:
  int directory_;
  sigset_t signals_{};
};

}  // namespace tarvel
