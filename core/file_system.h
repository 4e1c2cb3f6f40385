// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "core/line_stream.h"
#include "core/output_file.h"

namespace tarvel {

/// stdio's modes for files that exist: "r" and "r+". "r+" means that the file must be writable,
/// although nothing is ever written to it.
enum class ReadMode { kRead, kUpdate };

/// The program's only door to the disk, so that a test can make any part of it fail.
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  /// Opens an existing file; null when that fails.
  [[nodiscard]] virtual std::unique_ptr<ByteSource> OpenSource(const std::string& path,
                                                               ReadMode mode) = 0;
  /// Creates a file or empties an existing one; null when that fails.
  [[nodiscard]] virtual std::unique_ptr<ByteSink> CreateSink(const std::string& path,
                                                             CreateMode mode) = 0;
  /// The same for a file whose bytes get their name when it is published, where the file system can
  /// do that; see `ByteSink`.
  [[nodiscard]] virtual std::unique_ptr<ByteSink> CreatePending(const std::string& path,
                                                                CreateMode mode) {
    return CreateSink(path, mode);
  }
  /// What distinguishes the file at `path` as it is now from another, and from itself before a
  /// change; nothing when there is no such file.
  virtual std::optional<FileState> StateAt(const std::string& /*path*/) { return std::nullopt; }
  /// Keeps the run from writing to the file at `path`; true when it was about to.
  virtual bool Protect(const std::string& /*path*/) { return false; }
  /// Whether both paths lead to the same file on disk, links followed. False when either does not
  /// exist.
  virtual bool IsSameFile(const std::string& one, const std::string& other) = 0;
  /// The same, and whether creating both paths would make one file.
  virtual bool IsSamePlace(const std::string& one, const std::string& other) {
    return IsSameFile(one, other);
  }

  /// The size in bytes up to which a file's lines are kept; 0 where none are.
  virtual std::size_t MostKept() const { return 0; }
  /// Keeps the lines of a file that was read whole while it was in `state`, so that `OpenLines`
  /// need not read it again.
  virtual void KeepLines(const std::string& /*path*/, const FileState& /*state*/,
                         LineStream /*lines*/) {}
  /// Gives up the lines that are kept of the file, if it is still in this state.
  virtual std::optional<LineStream> TakeLines(const std::string& /*path*/,
                                              const FileState& /*state*/) {
    return std::nullopt;
  }

  /// Who follows how far the reading of a file has come; null for nobody.
  virtual ReadingObserver* Observer() { return nullptr; }

  /// Reads a file whole of which nothing of the run's results depends: the run may write to it, and
  /// it may change. Nothing when that fails.
  [[nodiscard]] virtual std::optional<LineStream> Peek(const std::string& path) {
    return OpenLines(path, ReadMode::kRead);
  }

  /// Opens a file and reads it whole; nothing when either fails.
  [[nodiscard]] std::optional<LineStream> OpenLines(const std::string& path, ReadMode mode);
};

/// Why the file at `path` cannot be read, after a ": " and in the system's words; empty when that
/// is not known.
std::string ReasonNotRead(const std::string& path);

/// The file system of the machine. Only regular files can be opened, links followed.
FileSystem& RealFileSystem();

}  // namespace tarvel
