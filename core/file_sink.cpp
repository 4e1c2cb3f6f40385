// SPDX-License-Identifier: MIT
#include "core/file_sink.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tarvel {

std::string FileSink::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(Number(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return std::strerror(written < 0 ? errno : EIO);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

std::string FileSink::Close() {
  // Some file systems report a full disk only here.
  return descriptor_.Close() == 0 || errno == EINTR ? std::string() : std::strerror(errno);
}

}  // namespace tarvel
