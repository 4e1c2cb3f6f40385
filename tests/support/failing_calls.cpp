// SPDX-License-Identifier: MIT
// Where the tests' program calls a function of the system, the linker has it call the one here
// (--wrap, see CMakeLists.txt), which calls the real one unless it is to fail.
#include "tests/support/failing_calls.h"

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

namespace {
bool Fails(const char* function) { return tarvel::testing::FailingCall::Fails(function); }
}  // namespace

extern "C" {

int __real_open(const char* path, int flags, ...);
ssize_t __real_read(int descriptor, void* buffer, size_t size);
ssize_t __real_write(int descriptor, const void* bytes, size_t size);
int __real_close(int descriptor);
int __real_dup(int descriptor);
int __real_stat(const char* path, struct stat* status);
int __real_lstat(const char* path, struct stat* status);
int __real_fstat(int descriptor, struct stat* status);
int __real_statx(int directory, const char* path, int flags, unsigned mask, struct statx* status);
int __real_flock(int descriptor, int operation);
int __real_unlink(const char* path);
int __real_rename(const char* from, const char* to);
int __real_linkat(int from_directory, const char* from, int to_directory, const char* to,
                  int flags);
int __real_fchown(int descriptor, uid_t user, gid_t group);
int __real_fchmod(int descriptor, mode_t mode);
int __real_access(const char* path, int mode);
ssize_t __real_readlink(const char* path, char* buffer, size_t size);
int __real_getrlimit(__rlimit_resource_t resource, struct rlimit* limit);
uid_t __real_geteuid();

int __wrap_open(const char* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE) {
    va_list rest;
    va_start(rest, flags);
    mode = va_arg(rest, mode_t);
    va_end(rest);
  }
  return Fails("open") ? -1 : __real_open(path, flags, mode);
}
int __wrap___open_2(const char* path, int flags) { return __wrap_open(path, flags, mode_t{0}); }

ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
  return Fails("read") ? -1 : __real_read(descriptor, buffer, size);
}
ssize_t __wrap_write(int descriptor, const void* bytes, size_t size) {
  if (Fails("write")) return errno == 0 ? 0 : -1;
  return __real_write(descriptor, bytes, size);
}
int __wrap_close(int descriptor) {
  const int error = errno;
  const int result = __real_close(descriptor);  // a failing one closes it, too
  if (result == 0) errno = error;
  return Fails("close") ? -1 : result;
}
int __wrap_dup(int descriptor) { return Fails("dup") ? -1 : __real_dup(descriptor); }
int __wrap_stat(const char* path, struct stat* status) {
  return Fails("stat") ? -1 : __real_stat(path, status);
}
int __wrap_lstat(const char* path, struct stat* status) {
  if (Fails("lstat")) {
    *status = {};
    return errno == 0 ? 0 : -1;
  }
  return __real_lstat(path, status);
}
int __wrap_fstat(int descriptor, struct stat* status) {
  if (Fails("fstat")) {
    *status = {};
    return errno == 0 ? 0 : -1;
  }
  return __real_fstat(descriptor, status);
}
int __wrap_statx(int directory, const char* path, int flags, unsigned mask, struct statx* status) {
  if (Fails("statx")) {
    status->stx_attributes = STATX_ATTR_MOUNT_ROOT;
    return errno == 0 ? 0 : -1;
  }
  return __real_statx(directory, path, flags, mask, status);
}
int __wrap_flock(int descriptor, int operation) {
  return Fails("flock") ? -1 : __real_flock(descriptor, operation);
}
int __wrap_unlink(const char* path) { return Fails("unlink") ? -1 : __real_unlink(path); }
int __wrap_rename(const char* from, const char* to) {
  return Fails("rename") ? -1 : __real_rename(from, to);
}
int __wrap_linkat(int from_directory, const char* from, int to_directory, const char* to,
                  int flags) {
  return Fails("linkat") ? -1 : __real_linkat(from_directory, from, to_directory, to, flags);
}
int __wrap_fchown(int descriptor, uid_t user, gid_t group) {
  return Fails("fchown") ? -1 : __real_fchown(descriptor, user, group);
}
int __wrap_fchmod(int descriptor, mode_t mode) {
  return Fails("fchmod") ? -1 : __real_fchmod(descriptor, mode);
}
int __wrap_access(const char* path, int mode) {
  return Fails("access") ? -1 : __real_access(path, mode);
}
ssize_t __wrap_readlink(const char* path, char* buffer, size_t size) {
  return Fails("readlink") ? -1 : __real_readlink(path, buffer, size);
}

int __wrap_getrlimit(__rlimit_resource_t resource, struct rlimit* limit) {
  return Fails("getrlimit") ? -1 : __real_getrlimit(resource, limit);
}
uid_t __wrap_geteuid() {
  constexpr uid_t kNobodyHere = 54321;
  return Fails("geteuid") ? kNobodyHere : __real_geteuid();
}

}  // extern "C"
