// SPDX-License-Identifier: MIT
#include "app/process.h"

#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string_view>

namespace tarvel {

namespace {

constexpr rlim_t kStackLimit = 0x5000000;  // 80 MiB
constexpr std::size_t kLinkSize = 2000;

/// Only what a signal handler may do.
void EndForLostFile(int /*signal*/) {
  constexpr std::string_view kMessage =
      "A file was changed by another program, or could not be read, during the run. The new files "
      "are not complete.\n";
  (void)!write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(1);
}

}  // namespace

int RaiseStackLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_STACK, &limit) != 0) return 0;
  if (limit.rlim_cur >= kStackLimit) return 0;  // RLIM_INFINITY is the largest value
  limit.rlim_cur = kStackLimit;
  const int result = setrlimit(RLIMIT_STACK, &limit);
  if (result != 0) std::fprintf(stderr, "setrlimit returned result = %d\n", result);
  return 0;
}

void ReportLostFiles() { std::signal(SIGBUS, EndForLostFile); }

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
