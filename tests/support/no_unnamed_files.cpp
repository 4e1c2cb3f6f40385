// SPDX-License-Identifier: MIT
#include "tests/support/no_unnamed_files.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace tarvel::testing {

void RefuseUnnamedFiles() {
  // The filter loads 32 bits at a time; the flags are in the lower half of the third argument.
  constexpr unsigned kFlags = offsetof(seccomp_data, args) + 2 * sizeof(__u64) +
                              (std::endian::native == std::endian::big ? sizeof(__u32) : 0);
  std::array<sock_filter, 6> filter = {{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kFlags),
      BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_TMPFILE & ~O_DIRECTORY, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  }};
  const sock_fprog program{filter.size(), filter.data()};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0) {
    return;
  }
  std::perror("seccomp");
  std::abort();
}

}  // namespace tarvel::testing
