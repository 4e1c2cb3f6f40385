// SPDX-License-Identifier: MIT
// Writes the completions of a shell to standard output: tarvel-completions bash|zsh|fish. Run by
// the build, not installed.
#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "batch/completions.h"

namespace {

struct Shell {
  std::string_view name;
  std::string (*completions)();
};

constexpr std::array<Shell, 3> kShells{{{"bash", tarvel::BashCompletions},
                                        {"zsh", tarvel::ZshCompletions},
                                        {"fish", tarvel::FishCompletions}}};

}  // namespace

int main(int argc, char** argv) {
  for (const Shell& shell : kShells) {
    if (argc != 2 || shell.name != argv[1]) continue;
    const std::string text = shell.completions();
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
                   std::fflush(stdout) == 0
               ? 0
               : 1;
  }
  std::fputs("usage: tarvel-completions bash|zsh|fish\n", stderr);
  return 2;
}
