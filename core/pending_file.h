// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <csignal>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "core/descriptor.h"
#include "core/output_file.h"

namespace tarvel {

/// Creates a file that stands under no name, or a temporary one, until it is published; `path` and
/// what is there stay as they are until then. Null exactly when `path` could not be created or
/// emptied in its place.
///
/// The file has the mode and the owner of the one that it replaces; a new one has the mode that the
/// umask and the directory give it. Access control lists and other extended attributes of the old
/// file are lost. Where a rename would change still more, the file is created and emptied in its
/// place instead: `path` is a link, no regular file or a mount point, or the file has several links
/// or an owner who cannot be given to a new one, or the directory takes no new files. Where only
/// the room for a new file lacks, what exists stays and the writes fail.
[[nodiscard]] std::unique_ptr<ByteSink> CreatePendingFile(const std::string& path, CreateMode mode);

/// Whether the file has the name of a temporary file, which a later run may remove.
bool HasTemporaryName(const std::string& path);

/// Removes the files that have a temporary name at the moment. A signal handler may call it.
void RemoveTemporaryFiles();

/// Keeps SIGHUP, SIGINT and SIGTERM of this thread waiting for as long as it lives. Keeps other
/// runs from publishing into the same directories meanwhile, as far as locks can: one that is not
/// free within a fifth of a second is not waited for, and a directory that cannot be read has none.
class PublishGuard {
 public:
  explicit PublishGuard(const std::set<std::string>& directories);
  PublishGuard(const PublishGuard&) = delete;
  PublishGuard& operator=(const PublishGuard&) = delete;
  ~PublishGuard();

 private:
  /// Only keeps the signals waiting.
  PublishGuard();

  /// The directories, by device and number: all runs lock them in one order.
  std::map<std::pair<dev_t, ino_t>, Descriptor> locked_;
  sigset_t signals_{};
};

}  // namespace tarvel
