// SPDX-License-Identifier: MIT
#include "core/line_stream.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/large_pages.h"

namespace tarvel {

namespace {

// Reads begin small, as a check needs only the first line, and grow, as each call costs time.
constexpr std::size_t kFirstChunk = std::size_t{1} << 16;
constexpr std::size_t kChunk = std::size_t{1} << 20;
constexpr std::size_t kReportDistance = std::size_t{1} << 18;

}  // namespace

LineStream::LineStream(std::string_view bytes) {
  Grow(bytes.size());
  std::copy(bytes.begin(), bytes.end(), bytes_.get());
  loaded_ = bytes.size();
}

LineStream::LineStream(std::unique_ptr<ByteSource> source) : source_(std::move(source)) {
  // Views into the buffer must stay valid, so it is made as large as the file at once. The system
  // gives the pages only when they are written. A file of unknown size is read now instead.
  const std::size_t size = source_->Size();
  Grow(size);
  if (size == 0) (void)LoadAll();  // `ReadFailed` keeps the answer
}

void LineStream::Grow(std::size_t capacity) {
  LargeMemory larger = TakeLargeMemory(capacity);
  std::copy_n(bytes_.get(), loaded_, larger.get());
  bytes_ = std::move(larger);
  capacity_ = capacity;
}

void LineStream::Fill(std::size_t wanted_end) {
  while (source_ && loaded_ < wanted_end) {
    if (loaded_ == capacity_) {
      // A file that grew while it was read is taken as long as it was when it was opened.
      if (source_->Size() != 0) {
        source_.reset();
        return;
      }
      Grow(capacity_ + std::max(capacity_, kChunk));
    }
    const std::size_t room =
        std::min(capacity_ - loaded_, std::clamp(loaded_, kFirstChunk, kChunk));
    const std::ptrdiff_t got = source_->Read(bytes_.get() + loaded_, room);
    if (got <= 0) {
      read_failed_ = got < 0;
      source_.reset();
      return;
    }
    loaded_ += static_cast<std::size_t>(got);
  }
}

bool LineStream::LoadAll() {
  Fill(static_cast<std::size_t>(-1));
  return !read_failed_;
}

std::optional<std::string_view> LineStream::ReadLine(std::size_t limit) {
  const std::size_t room = limit - 1;
  if (source_ && loaded_ - position_ < room) Fill(position_ + room);
  const std::size_t left = std::min(loaded_ - position_, room);
  if (left == 0) {
    at_end_ = true;
    return std::nullopt;
  }
  const char* start = bytes_.get() + position_;
  const void* newline = std::memchr(start, '\n', left);
  const std::size_t size =
      newline ? static_cast<std::size_t>(static_cast<const char*>(newline) - start) + 1 : left;
  at_end_ = !newline && left < room;
  position_ += size;
  if (position_ >= next_report_) ReportPosition();
  return std::string_view(start, size);
}

void LineStream::Observe(ReadingObserver& observer) {
  observer_ = &observer;
  next_report_ = 0;
}

void LineStream::ReportPosition() {
  observer_->OnRead(position_, loaded_);
  next_report_ = position_ + kReportDistance;
}

/// The offset of the next `byte`, or the end of the file.
std::size_t LineStream::FindAhead(char byte) {
  std::size_t searched = position_;
  for (;;) {
    const std::size_t found = Bytes().find(byte, searched);
    if (found != std::string_view::npos) return found;
    searched = loaded_;
    Fill(loaded_ + kChunk);
    if (loaded_ == searched) return loaded_;
  }
}

std::optional<std::string_view> LineStream::ReadLineWith(char byte, std::size_t limit) {
  return ReadLineHolding(FindAhead(byte), limit);
}

std::optional<std::string_view> LineStream::ReadLineHolding(std::size_t found, std::size_t limit) {
  const std::string_view passed = Bytes().substr(position_, found - position_);
  const std::size_t line_start = position_ + (passed.rfind('\n') + 1);  // npos + 1 is 0
  // A line longer than the limit comes in pieces; the one with the byte is asked for.
  const std::size_t pieces = (found - line_start) / (limit - 1);
  position_ = found == loaded_ ? loaded_ : line_start + pieces * (limit - 1);
  return ReadLine(limit);
}

void LineStream::SetPosition(std::size_t position) {
  position_ = std::min(position, loaded_);
  at_end_ = false;
  if (position_ >= next_report_) ReportPosition();
}

std::string& Line::Edit() {
  if (!is_copy_) {
    copy_.assign(view_);
    is_copy_ = true;
  }
  return copy_;
}

bool ReadLine(LineStream& stream, std::size_t limit, Line& line) {
  const auto text = stream.ReadLine(limit);
  if (!text) return false;
  line.Set(*text);
  return true;
}

bool ReadLineWith(LineStream& stream, char byte, std::size_t limit, Line& line) {
  const auto text = stream.ReadLineWith(byte, limit);
  if (!text) return false;
  line.Set(*text);
  return true;
}

}  // namespace tarvel
