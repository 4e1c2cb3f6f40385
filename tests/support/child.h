// SPDX-License-Identifier: MIT
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace tarvel::testing {

/// Runs `body` in a child process, for what cannot be undone. Returns the status that `body`
/// returned, or the negative number of the signal that ended it.
template <typename Body>
int InChild(const Body& body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace tarvel::testing
