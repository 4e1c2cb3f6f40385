// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/large_pages.h"

namespace tarvel {

/// Line limits, as `fgets` takes them: one read gives at most `limit - 1` bytes.
namespace limits {
inline constexpr std::size_t kShortLine = 1000;      // Extract and Text, counting, checks
inline constexpr std::size_t kPairLine = 5000;       // Compare, Clean doubles, Journals
inline constexpr std::size_t kLongLine = 50000;      // Clean authors, characters and tags
inline constexpr std::size_t kTagLine = 500000;      // the lines of an entry in Clean tags
inline constexpr std::size_t kContinuation = 25000;  // a line that continues a value
}  // namespace limits

/// What distinguishes a file from others, and from itself before it was changed: the device, the
/// number there, the size in bytes, and when its bytes and when anything of it were changed.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::int64_t size = 0;
  std::int64_t written_s = 0;
  std::int64_t written_ns = 0;
  std::int64_t changed_s = 0;
  std::int64_t changed_ns = 0;

  bool operator==(const FileState&) const = default;
};

/// Where the bytes of a file come from. One of these per open file; closed by its destructor.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  /// Reads up to `size` bytes into `buffer`; returns their number, 0 at the end, -1 on an error.
  [[nodiscard]] virtual std::ptrdiff_t Read(char* buffer, std::size_t size) = 0;
  /// The file's size in bytes when it was opened; 0 when it is not known.
  virtual std::size_t Size() const = 0;
  /// The file's state when it was opened; nothing where files cannot change.
  virtual std::optional<FileState> State() const { return std::nullopt; }
};

/// Follows how far the reading of a file has come.
class ReadingObserver {
 public:
  virtual ~ReadingObserver() = default;
  /// Called about every 256 KiB with the offset that was reached and the size of the file.
  virtual void OnRead(std::size_t position, std::size_t size) = 0;
};

/// A file held in memory that serves its lines exactly as stdio's `fgets` would: at most
/// `limit - 1` bytes, up to and including a line feed. A longer line comes in pieces. All line
/// reading of the program goes through this class.
class LineStream {
 public:
  /// A stream over a copy of `bytes`.
  explicit LineStream(std::string_view bytes);
  /// A stream that reads `source` as its lines are asked for. A read error ends the lines; ask
  /// `ReadFailed` for it.
  explicit LineStream(std::unique_ptr<ByteSource> source);

  /// The next line, or nothing at the end. The view lives as long as the stream.
  std::optional<std::string_view> ReadLine(std::size_t limit);

  /// The next line that holds `byte`, or nothing when none does: what reading line after line with
  /// this limit would meet, without the cost of looking at each line.
  std::optional<std::string_view> ReadLineWith(char byte, std::size_t limit);

  /// The same for the line that holds the byte at an offset in memory, which is not before the next
  /// byte to be read; at the end of the file nothing.
  std::optional<std::string_view> ReadLineHolding(std::size_t offset, std::size_t limit);

  /// Offset of the next byte to be read.
  std::size_t Position() const { return position_; }
  /// Goes to an offset that `Position` gave before; clears the end-of-file indicator.
  void SetPosition(std::size_t position);
  /// The end-of-file indicator: set by a read that met the end, not by one that merely took the
  /// last byte.
  bool AtEnd() const { return at_end_; }

  /// Reports how far the lines have been read to `observer`, which must outlive this.
  void Observe(ReadingObserver& observer);

  /// Reads all that is not in memory yet; false on a read error.
  [[nodiscard]] bool LoadAll();
  /// Whether reading the file failed at some point.
  bool ReadFailed() const { return read_failed_; }
  /// All bytes in memory so far: the whole file after `LoadAll`.
  std::string_view Bytes() const { return {bytes_.get(), loaded_}; }

 private:
  std::size_t FindAhead(char byte);
  void Fill(std::size_t wanted_end);
  void Grow(std::size_t capacity);
  void ReportPosition();

  std::unique_ptr<ByteSource> source_;  // while there is more to read
  LargeMemory bytes_;
  std::size_t capacity_ = 0;
  std::size_t loaded_ = 0;
  std::size_t position_ = 0;
  ReadingObserver* observer_ = nullptr;
  std::size_t next_report_ = static_cast<std::size_t>(-1);
  bool at_end_ = false;
  bool read_failed_ = false;
};

/// An operation's line buffer: a view into the file for as long as nothing changes the line, a
/// copy of its own from then on. The stream that served the line must outlive it.
class Line {
 public:
  Line() = default;
  explicit Line(std::string_view text) : view_(text) {}

  void Set(std::string_view text) {
    view_ = text;
    is_copy_ = false;
  }
  std::string_view Text() const { return is_copy_ ? std::string_view(copy_) : view_; }
  /// The line as a string that may be changed; copies the bytes at the first call.
  std::string& Edit();

 private:
  std::string_view view_;
  std::string copy_;
  bool is_copy_ = false;
};

/// Reads the next line into `line`; at the end of the file `line` stays and the result is false.
bool ReadLine(LineStream& stream, std::size_t limit, Line& line);
/// The same for the next line that holds `byte`.
bool ReadLineWith(LineStream& stream, char byte, std::size_t limit, Line& line);

}  // namespace tarvel
