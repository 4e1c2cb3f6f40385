#!/bin/sh
# SPDX-License-Identifier: MIT
# Reads all sources without running them: tools/static-checks.sh [BUILD-DIRECTORY]
#
#   clang-tidy   the checks of .clang-tidy, which also names what is left out and why
#   cppcheck     warnings, performance and portability
#   g++          stricter warnings than the build's. Its -fanalyzer is not used: in version 12 it
#                does not know C++ and says so.
#
# The build directory (build/dev by default) must hold a compile_commands.json. Takes some minutes.
set -eu
cd "$(dirname "$0")/.."
build=${1:-build/dev}
[ -f "$build/compile_commands.json" ] || {
  echo "$build holds no compile_commands.json: run cmake --preset dev first" >&2
  exit 2
}
jobs=$(nproc)
status=0

# The dialog's sources are in the list only if the build has the toolkit.
sources=$(git ls-files 'app/*.cpp' 'batch/*.cpp' 'core/*.cpp' 'gui/*.cpp' 'ops/*.cpp' \
  'warnings/*.cpp' |
  while read -r file; do
    if grep -q "/$file\"" "$build/compile_commands.json"; then echo "$file"; fi
  done)

echo "clang-tidy"
echo "$sources" | xargs -P "$jobs" -n 1 clang-tidy --quiet -p "$build" 2>/dev/null || status=1

# Left out:
#   useStlAlgorithm           a loop that says what it does is as good as an algorithm
#   passedByValue, unusedFunction and the information messages are not asked for
#   normalCheckLevel...       not in this version
echo "cppcheck"
# shellcheck disable=SC2086
cppcheck --quiet --language=c++ --std=c++20 --enable=warning,performance,portability \
  --inline-suppr --error-exitcode=1 -j "$jobs" -I . \
  --suppress=useStlAlgorithm $sources || status=1

echo "g++"
for file in $(echo "$sources" | grep -v '^gui/.*/\|^gui/\(tarvel\|wx\|picker\)\|^app/\(main\|app\)'); do
  case $file in
    batch/options.cpp) continue ;; # CLI11 in it, a header that is not ours
  esac
  g++ -std=c++20 -I . -fsyntax-only -O1 -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow \
    -Wcast-qual -Wcast-align -Wformat=2 -Wunused-result -Wnull-dereference -Wduplicated-cond \
    -Wduplicated-branches -Wlogical-op -Wnon-virtual-dtor -Woverloaded-virtual -Werror "$file" ||
    status=1
done
exit $status
