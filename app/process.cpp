// SPDX-License-Identifier: MIT
#include "app/process.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string_view>

#include "core/pending_file.h"

namespace tarvel {

namespace {

constexpr rlim_t kStackLimit = 0x5000000;  // 80 MiB
constexpr std::size_t kLinkSize = 2000;

/// Opens the lowest descriptor that is closed. Without /dev/null it is one that takes no write.
void HoldDescriptor() {
  if (open("/dev/null", O_RDWR) < 0) (void)!open("/", O_PATH);
}

/// Only what a signal handler may do. The toolkit has threads of its own, and a signal may come to
/// any of them; the first thread is the one that names files, or keeps signals waiting for that.
void EndBySignal(int signal) {
  if (gettid() != getpid()) {
    syscall(SYS_tgkill, getpid(), getpid(), signal);
    return;
  }
  RemoveTemporaryFiles();
  std::signal(signal, SIG_DFL);
  raise(signal);
}

/// Handles a signal unless it is ignored, as the shell wants it for jobs in the background.
void HandleEnd(int signal) {
  struct sigaction action {};
  if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = EndBySignal;
  action.sa_flags = SA_NODEFER | SA_RESTART;
  sigaction(signal, &action, nullptr);
}

}  // namespace

void PrepareProcess() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) < 0) HoldDescriptor();
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) HandleEnd(signal);
}

int RaiseStackLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_STACK, &limit) != 0) return 0;
  if (limit.rlim_cur >= kStackLimit) return 0;  // RLIM_INFINITY is the largest value
  limit.rlim_cur = kStackLimit;
  const int result = setrlimit(RLIMIT_STACK, &limit);
  if (result != 0) std::fprintf(stderr, "setrlimit returned result = %d\n", result);
  return 0;
}

std::string_view DirectoryOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

int GetProgramDirectory(PathBuffer& directory, PathBuffer& executable) {
  std::array<char, kLinkSize> name{};
  std::snprintf(name.data(), name.size(), "/proc/%d/exe", getpid());
  std::array<char, kLinkSize> target{};
  const ssize_t size = readlink(name.data(), target.data(), target.size() - 1);
  const std::string_view path(target.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
  executable.Set(path);
  directory.Set(DirectoryOf(path));
  return 1;
}

}  // namespace tarvel
