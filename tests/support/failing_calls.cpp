// SPDX-License-Identifier: MIT
// The functions of the system, defined once more: the linker takes those of the program itself
// first. Each calls the real one unless it is to fail.
#include "tests/support/failing_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>

namespace tarvel::testing {

namespace {

FailingCall* innermost = nullptr;

template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

FailingCall::FailingCall(std::string_view function, int error, int n)
    : function_(function), error_(error), calls_before_(n - 1), outer_(innermost) {
  innermost = this;
}
FailingCall::~FailingCall() { innermost = outer_; }

bool FailingCall::Fails(std::string_view function) {
  for (FailingCall* call = innermost; call; call = call->outer_) {
    if (call->function_ != function) continue;
    if (call->calls_before_-- > 0 || (call->failed_ && !call->for_good_)) return false;
    call->failed_ = true;
    errno = call->error_;
    return true;
  }
  return false;
}

FailingCalls::FailingCalls(std::string_view function, int error, int n)
    : FailingCall(function, error, n) {
  for_good_ = true;
}

}  // namespace tarvel::testing

using tarvel::testing::Real;

namespace {
bool Fails(const char* function) { return tarvel::testing::FailingCall::Fails(function); }
}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  static const auto real = Real<int(const char*, int, ...)>("open");
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE) {
    va_list rest;
    va_start(rest, flags);
    mode = va_arg(rest, mode_t);
    va_end(rest);
  }
  return Fails("open") ? -1 : real(path, flags, mode);
}
int __open_2(const char* path, int flags) { return open(path, flags, mode_t{0}); }

ssize_t read(int descriptor, void* buffer, size_t size) {
  static const auto real = Real<ssize_t(int, void*, size_t)>("read");
  return Fails("read") ? -1 : real(descriptor, buffer, size);
}
ssize_t write(int descriptor, const void* bytes, size_t size) {
  static const auto real = Real<ssize_t(int, const void*, size_t)>("write");
  if (Fails("write")) return errno == 0 ? 0 : -1;
  return real(descriptor, bytes, size);
}
int close(int descriptor) {
  static const auto real = Real<int(int)>("close");
  const int error = errno;
  const int result = real(descriptor);  // a failing one closes it, too
  if (result == 0) errno = error;
  return Fails("close") ? -1 : result;
}
int dup(int descriptor) noexcept {
  static const auto real = Real<int(int)>("dup");
  return Fails("dup") ? -1 : real(descriptor);
}
int stat(const char* path, struct stat* status) noexcept {
  static const auto real = Real<int(const char*, struct stat*)>("stat");
  return Fails("stat") ? -1 : real(path, status);
}
int lstat(const char* path, struct stat* status) noexcept {
  static const auto real = Real<int(const char*, struct stat*)>("lstat");
  if (Fails("lstat")) {
    *status = {};
    return errno == 0 ? 0 : -1;
  }
  return real(path, status);
}
int fstat(int descriptor, struct stat* status) noexcept {
  static const auto real = Real<int(int, struct stat*)>("fstat");
  if (Fails("fstat")) {
    *status = {};
    return errno == 0 ? 0 : -1;
  }
  return real(descriptor, status);
}
int statx(int directory, const char* path, int flags, unsigned mask,
          struct statx* status) noexcept {
  static const auto real = Real<int(int, const char*, int, unsigned, struct statx*)>("statx");
  if (Fails("statx")) {
    status->stx_attributes = STATX_ATTR_MOUNT_ROOT;
    return errno == 0 ? 0 : -1;
  }
  return real(directory, path, flags, mask, status);
}
int flock(int descriptor, int operation) noexcept {
  static const auto real = Real<int(int, int)>("flock");
  return Fails("flock") ? -1 : real(descriptor, operation);
}
int unlink(const char* path) noexcept {
  static const auto real = Real<int(const char*)>("unlink");
  return Fails("unlink") ? -1 : real(path);
}
int rename(const char* from, const char* to) noexcept {
  static const auto real = Real<int(const char*, const char*)>("rename");
  return Fails("rename") ? -1 : real(from, to);
}
int linkat(int from_directory, const char* from, int to_directory, const char* to,
           int flags) noexcept {
  static const auto real = Real<int(int, const char*, int, const char*, int)>("linkat");
  return Fails("linkat") ? -1 : real(from_directory, from, to_directory, to, flags);
}
int fchown(int descriptor, uid_t user, gid_t group) noexcept {
  static const auto real = Real<int(int, uid_t, gid_t)>("fchown");
  return Fails("fchown") ? -1 : real(descriptor, user, group);
}
int fchmod(int descriptor, mode_t mode) noexcept {
  static const auto real = Real<int(int, mode_t)>("fchmod");
  return Fails("fchmod") ? -1 : real(descriptor, mode);
}
int access(const char* path, int mode) noexcept {
  static const auto real = Real<int(const char*, int)>("access");
  return Fails("access") ? -1 : real(path, mode);
}
ssize_t readlink(const char* path, char* buffer, size_t size) noexcept {
  static const auto real = Real<ssize_t(const char*, char*, size_t)>("readlink");
  return Fails("readlink") ? -1 : real(path, buffer, size);
}

int getrlimit(__rlimit_resource_t resource, struct rlimit* limit) noexcept {
  static const auto real = Real<int(__rlimit_resource_t, struct rlimit*)>("getrlimit");
  return Fails("getrlimit") ? -1 : real(resource, limit);
}
uid_t geteuid() noexcept {
  static const auto real = Real<uid_t()>("geteuid");
  constexpr uid_t kNobodyHere = 54321;
  return Fails("geteuid") ? kNobodyHere : real();
}

}  // extern "C"
