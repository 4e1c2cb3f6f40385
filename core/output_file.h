// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

namespace tarvel {

/// stdio's modes for new files: "w" and "w+". "w+" means that the file must be readable too.
enum class CreateMode { kWrite, kWriteRead };

/// Where the bytes of a new file go. Closed by its destructor if `Close` was not called. The bytes
/// of a pending file get their name by `MakeReady` and then `Publish`, both after `Close`, and are
/// gone with the sink otherwise; the bytes of any other sink stand under their name at once.
class ByteSink {
 public:
  virtual ~ByteSink() = default;
  /// Writes all of `bytes`; returns an empty text, or why it failed.
  [[nodiscard]] virtual std::string Write(std::string_view bytes) = 0;
  /// Closes the file; returns an empty text, or why it failed.
  [[nodiscard]] virtual std::string Close() = 0;
  /// Whether the bytes are kept anywhere; those of a run that only looks for warnings are not.
  virtual bool IsKept() const { return true; }
  /// The path under which the bytes of a pending file can be read; empty for any other.
  virtual std::string PendingPath() const { return {}; }
  /// Does all of publishing that can lack room; returns an empty text, or why it failed.
  [[nodiscard]] virtual std::string MakeReady() { return {}; }
  /// Gives the file its name; returns an empty text, or why it failed.
  [[nodiscard]] virtual std::string Publish() { return {}; }
};

/// A new file. Every write is checked: the first failure is kept and reported by `Close`, and
/// nothing is written after it.
class OutputFile {
 public:
  OutputFile(std::unique_ptr<ByteSink> sink, std::string path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Writes out and closes what `Close` has not, as a process that ends in the middle would.
  ~OutputFile();

  void Write(std::string_view bytes) {
    if (bytes.size() <= kBufferSize - used_) {
      Append(bytes);
    } else {
      WriteLarge(bytes);
    }
  }
  void Write(std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) Write(part);
  }

  /// Writes out what is still in memory and closes the file; true when every byte arrived.
  [[nodiscard]] bool Close();

  /// Whether what is written is kept; if not, it need not be composed.
  bool IsKept() const { return sink_ && sink_->IsKept(); }
  /// How many bytes were written so far, whether they arrived or not.
  std::uint64_t Written() const { return flushed_ + used_; }
  const std::string& Path() const { return path_; }
  /// Why a write or the closing failed; empty when nothing did.
  const std::string& Error() const { return error_; }

 private:
  static constexpr std::size_t kBufferSize = std::size_t{1} << 17;

  /// Calls nothing but the copy: logs are written in small parts.
  void Append(std::string_view bytes) {
    std::copy(bytes.begin(), bytes.end(), buffer_.get() + used_);
    used_ += bytes.size();
  }
  void WriteLarge(std::string_view bytes);
  void Flush();

  std::unique_ptr<ByteSink> sink_;
  std::string path_;
  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;  // bytes of the buffer
  std::uint64_t flushed_ = 0;
  std::string error_;
};

}  // namespace tarvel
