#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs what is missing to build Tarvel: packaging/setup.sh [GROUP]... For Debian 12.
#
#   tests    for ./check too
#   coverage for ./coverage too, with the group tests
#   package  for packaging/build-package.sh too
#   release  for packaging/release.sh and test-package.sh too, with the groups above
#
# A package counts as missing when the file that it brings does not exist. Nothing is asked and
# nothing happens when none is missing. Otherwise root's rights are needed: as another user sudo is
# used, and where sudo cannot be used, one line says what to ask an administrator to install.
set -eu

wanted="
/usr/bin/g++                      g++
/usr/bin/cmake                    cmake
/usr/bin/ninja                    ninja-build
/usr/include/CLI/CLI.hpp          libcli11-dev
/usr/bin/wx-config                libwxgtk3.2-dev
/usr/include/gtk-3.0/gtk/gtk.h    libgtk-3-dev
/usr/bin/pkg-config               pkgconf
/usr/lib/*/gdk-pixbuf-2.0/*/loaders/libpixbufloader-svg.so librsvg2-common
"
test_wanted="
/usr/include/gtest/gtest.h        libgtest-dev
/usr/bin/vim.basic                vim
/usr/bin/Xvfb                     xvfb
/usr/bin/openbox                  openbox
/usr/bin/xdotool                  xdotool
/usr/bin/xprop                    x11-utils
/usr/bin/dbus-run-session         dbus-daemon
/usr/lib/python3/dist-packages/gi/__init__.py python3-gi
/usr/lib/*/girepository-1.0/Atspi-2.0.typelib gir1.2-atspi-2.0
/usr/lib/*/girepository-1.0/Gtk-3.0.typelib gir1.2-gtk-3.0
/usr/libexec/at-spi2-registryd    at-spi2-core
/usr/bin/python3                  python3
/usr/bin/clang++                  clang
/usr/bin/desktop-file-validate    desktop-file-utils
/usr/bin/appstreamcli             appstream
/usr/bin/update-mime-database     shared-mime-info
/usr/bin/man                      man-db
/usr/bin/mandoc                   mandoc
/usr/bin/pdflatex                 texlive-latex-base
/usr/bin/bibtex                   texlive-binaries
/usr/bin/zsh                      zsh
/usr/bin/fish                     fish
/usr/bin/git                      git
/usr/bin/make                     make
/usr/bin/vim                      vim
/usr/lib/llvm-14/lib/clang/14.0.6/include/fuzzer/FuzzedDataProvider.h libclang-rt-14-dev
"
coverage_wanted="
/usr/bin/gcov                     gcc
"
package_wanted="
/usr/share/build-essential/essential-packages-list build-essential
/usr/bin/dh                       debhelper
/usr/bin/git                      git
"
release_wanted="
/usr/bin/lintian                  lintian
/usr/bin/autopkgtest              autopkgtest
/usr/sbin/debootstrap             debootstrap
"
for group; do
  case $group in
    tests) wanted=$wanted$test_wanted ;;
    coverage) wanted=$wanted$coverage_wanted ;;
    package) wanted=$wanted$package_wanted ;;
    release) wanted=$wanted$test_wanted$package_wanted$release_wanted ;;
    *)
      echo "usage: $0 [tests] [coverage] [package] [release]" >&2
      exit 2
      ;;
  esac
done

missing=$(echo "$wanted" | while read -r file package; do
  # The name may hold a pattern; without a match it stands for itself.
  set -- $file
  [ $# -eq 0 ] || [ -e "$1" ] || echo "$package"
done)
[ -n "$missing" ] || exit 0
missing=$(echo $missing)

as_root=
if [ "$(id -u)" -ne 0 ]; then
  as_root="sudo"
  # sudo asks for its password on the terminal.
  can_ask=no
  (: </dev/tty) 2>/dev/null && can_ask=yes
  if ! command -v sudo >/dev/null || { [ $can_ask = no ] && ! sudo -n true 2>/dev/null; }; then
    echo "Packages are missing. Ask an administrator to run:" \
      "apt-get install --no-install-recommends $missing" >&2
    exit 1
  fi
fi

echo "Installing: $missing"
$as_root apt-get update -q >/dev/null
# "Need to get 1,234 kB of archives." and the line on the disk space: of all that comes along.
$as_root apt-get install --no-install-recommends --assume-no $missing 2>/dev/null |
  grep -E '^[0-9]+ upgraded|^Need to get|^After this operation' || true

# apt-get writes a line "dlstatus:..." or "pmstatus:..." for every step, with the percentage as its
# third field. A line for every tenth is enough.
log=$(mktemp)
trap 'rm -f "$log"' EXIT
{
  status=0
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
    -o APT::Status-Fd=1 $missing 2>&1 || status=$?
  echo "apt-get ended with $status"
} | awk -F: -v log_file="$log" '
  function progress(what, percent) {
    tenth = int(percent / 10)
    if (what == last_what && tenth <= last_tenth) return
    last_what = what
    last_tenth = tenth
    print what, tenth * 10 " %"
    fflush()
  }
  $1 == "dlstatus" { progress("downloading", $3); next }
  $1 == "pmstatus" { progress("installing", $3); next }
  /^apt-get ended with / { status = substr($0, 20) }
  { print >log_file }
  END { exit status }' || {
  status=$?
  tail -n 20 "$log" >&2
  echo "The packages could not be installed: $missing" >&2
  exit $status
}
