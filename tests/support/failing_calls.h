// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tarvel::testing {

/// Lets a call of a function of the system fail while it lives: the n-th from now on, counted from
/// 1, of those that failing_calls.cpp puts itself in front of. Without an error a "write" takes no
/// byte, an "lstat" or "fstat" finds another file, and "statx" finds what something is mounted on;
/// a "geteuid" that fails is that of another user.
class FailingCall {
 public:
  FailingCall(std::string_view function, int error, int n = 1);
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;
  ~FailingCall();
  /// Whether that many calls were made.
  bool Failed() const { return failed_; }

  /// Whether a call of the function that is made now fails; errno is then the error.
  static bool Fails(std::string_view function);

 protected:
  bool for_good_ = false;

 private:
  std::string_view function_;
  int error_;
  int calls_before_;  // that still work
  bool failed_ = false;
  FailingCall* const outer_;
};

/// The same for all calls from the n-th on.
class FailingCalls : public FailingCall {
 public:
  FailingCalls(std::string_view function, int error, int n = 1);
};

}  // namespace tarvel::testing
