// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace tarvel::testing {

/// Lets the n-th call of operator new from now on throw, counted from 1, while it lives.
class FailingMemory {
 public:
  explicit FailingMemory(std::size_t n);
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
  ~FailingMemory();
  /// Whether that many calls were made.
  bool Failed() const;
};

/// Calls of operator new are not counted while it lives.
class UncountedMemory {
 public:
  UncountedMemory();
  UncountedMemory(const UncountedMemory&) = delete;
  UncountedMemory& operator=(const UncountedMemory&) = delete;
  ~UncountedMemory();

 private:
  std::size_t left_;
};

}  // namespace tarvel::testing
