#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs what the build, or with "tests" the tests as well, need and is missing. Debian 12.
# A package is missing when the file that it brings is.
set -eu

wanted="
/usr/bin/g++                      g++
/usr/bin/cmake                    cmake
/usr/bin/ninja                    ninja-build
/usr/include/CLI/CLI.hpp          libcli11-dev
/usr/bin/wx-config                libwxgtk3.2-dev
"
test_wanted="
/usr/include/gtest/gtest.h        libgtest-dev
/usr/bin/Xvfb                     xvfb
/usr/bin/openbox                  openbox
/usr/bin/xdotool                  xdotool
/usr/bin/xprop                    x11-utils
/usr/bin/python3                  python3
/usr/bin/clang++                  clang
/usr/bin/desktop-file-validate    desktop-file-utils
/usr/bin/appstreamcli             appstream
/usr/bin/update-mime-database     shared-mime-info
/usr/bin/man                      man-db
/usr/bin/mandoc                   mandoc
/usr/bin/pdflatex                 texlive-latex-base
/usr/bin/bibtex                   texlive-binaries
/usr/lib/llvm-14/lib/clang/14.0.6/include/fuzzer/FuzzedDataProvider.h libclang-rt-14-dev
"
[ "${1:-}" = tests ] && wanted="$wanted$test_wanted"

missing=$(echo "$wanted" | while read -r file package; do
  [ -z "$file" ] || [ -e "$file" ] || echo "$package"
done)
[ -n "$missing" ] || exit 0

echo "Installing:" $missing
as_root=
[ "$(id -u)" -eq 0 ] || as_root=sudo
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -q >/dev/null
$as_root apt-get install -q -y --no-install-recommends $missing >/dev/null
