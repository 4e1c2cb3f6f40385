// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <utility>

namespace tarvel {

/// An open file descriptor, or none. It is closed at the end.
class Descriptor {
 public:
  /// `number` is what open(2) returned; it is below 0 where that failed.
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (IsOpen()) (void)Close();
  }

  bool IsOpen() const { return number_ >= 0; }
  int Number() const { return number_; }
  /// Closes it now; returns what close(2) returns. On Linux it is closed after EINTR, too.
  int Close() { return close(std::exchange(number_, -1)); }

 private:
  int number_;
};

}  // namespace tarvel
