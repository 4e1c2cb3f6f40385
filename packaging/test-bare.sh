#!/bin/sh
# SPDX-License-Identifier: MIT
# Does what the README tells a newcomer to do, in empty Debian 12 systems and as an ordinary user,
# and ends with what it measured:
#
#   1. without sudo, the set-up says what is missing;
#   2. ./run without a display, then with one; the programs are installed without rights, and the
#      package is built and installed;
#   3. ./check;
#   4. the package is installed, used and removed (test-package.sh).
#
#   packaging/test-bare.sh [run|check|package]...      (all of them)
#
# What is tried is the last commit. Needs root, git, debootstrap, Xvfb, xdotool and a Debian mirror;
# see bare_root.sh for TARVEL_BASE. Takes about an hour on two processors.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
. "$here/bare_root.sh"
own_namespaces "$0" "$@"
[ $# -gt 0 ] || set -- run package check

work=$(mktemp -d)
root=$work/root
trap 'remove_root "$root"; rm -rf --one-file-system "$work"' EXIT
figures=$work/figures
: >"$figures"
measured() { printf '%-44s %s\n' "$1" "$2" | tee -a "$figures"; }

# Makes an empty system whose user has a clone of the last commit.
fresh_root() {
  remove_root "$root"
  mkdir "$root"
  make_root "$root"
  git clone -q "$here/.." "$root/home/user/tarvel"
  in_root "$root" chown -R user: /home/user/tarvel
  in_root "$root" apt-get clean
  size_before=$(used)
  packages_before=$(packages)
}
give_sudo() {
  in_root "$root" sh -c 'apt-get update -q && apt-get install -q -y sudo' >/dev/null 2>&1
  # The password is the user's affair; here none is asked.
  echo 'user ALL=(ALL) NOPASSWD: ALL' >"$root/etc/sudoers.d/user"
  # To measure them, what is downloaded stays.
  rm -f "$root"/etc/apt/apt.conf.d/docker-*
  echo 'APT::Keep-Downloaded-Packages "true";' >"$root/etc/apt/apt.conf.d/keep"
  size_before=$(used)
  packages_before=$(packages)
}
used() { du -smx "$root" | cut -f 1; }
packages() { in_root "$root" dpkg-query -f '.\n' -W | wc -l; }
downloads() { du -sm "$root/var/cache/apt/archives" | cut -f 1; }

# timed WHAT SCRIPT: runs it as the user in the clone; its output goes to the end of a log.
timed() {
  start=$(date +%s)
  if ! as_user "$root" "cd ~/tarvel && $2" >"$work/log" 2>&1; then
    tail -n 40 "$work/log"
    fail "$1"
  fi
  seconds=$(($(date +%s) - start))
  measured "$1" "$((seconds / 60)) min $((seconds % 60)) s"
}
report_set_up() { # report_set_up WHAT
  measured "$1: packages installed" $(($(packages) - packages_before))
  measured "$1: downloaded" "$(downloads) MB"
  measured "$1: disk, build tree included" "$(($(used) - size_before)) MB"
}
nothing_untracked() {
  left=$(git -c safe.directory='*' -C "$root/home/user/tarvel" status --porcelain)
  [ -z "$left" ] || fail "$1 left in the tree: $left"
}

try_without_sudo() {
  say "the set-up without sudo"
  if as_user "$root" 'cd ~/tarvel && ./run' >"$work/log" 2>&1; then
    fail "./run without sudo succeeded"
  fi
  [ "$(wc -l <"$work/log")" -eq 1 ] && grep -q '^Packages are missing. Ask an admin' "$work/log" ||
    fail "without sudo: $(cat "$work/log")"
  cat "$work/log"
}

# Opens the dialog on a display of this machine, which the empty system sees through its socket.
try_dialog() {
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$work/display" 2>/dev/null &
  server=$!
  for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
  number=$(cat "$work/display")
  mkdir -p "$root/tmp/.X11-unix"
  mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"
  as_user "$root" "cd ~/tarvel && DISPLAY=:$number ./run" >"$work/log" 2>&1 &
  program=$!
  found=
  for _ in $(seq 600); do
    found=$(DISPLAY=:$number xdotool search --onlyvisible --name '^Tarvel 3.81' 2>/dev/null) && break
    sleep 0.2
  done
  [ -n "$found" ] || fail "no dialog: $(cat "$work/log")"
  sleep 1
  DISPLAY=:$number xdotool windowfocus --sync "$found" key alt+q
  wait $program || fail "the dialog ended with $?: $(cat "$work/log")"
  kill $server
  umount "$root/tmp/.X11-unix"
  grep -q -e WARNING -e CRITICAL "$work/log" && fail "the dialog: $(cat "$work/log")"
  measured "the dialog" "opened, and ended by Quit"
}

package=
try_run() {
  say "an empty system: ./run"
  fresh_root
  try_without_sudo
  give_sudo
  timed "./run, no display" ./run
  [ "$(grep -c '^\[Done!\] Done!$' "$work/log")" -eq 8 ] || fail "./run: not eight times done"
  report_set_up "./run"
  say "./run with a display"
  try_dialog
  say "installed without rights"
  timed "installed below ~/.local" 'cmake --install build/release --strip --prefix ~/.local &&
    cp examples/lit.bib ~ && ~/.local/bin/tarvel-batch text ~/lit.bib && [ -s ~/lit_text.txt ]'
  nothing_untracked ./run
  say "the package"
  timed "the package is built" packaging/build-package.sh
  nothing_untracked packaging/build-package.sh
  report_set_up "the package"
  cp -r "$root/home/user/tarvel/build/package" "$work"
  package=$(ls "$work"/package/tarvel_*.deb)
  depends=$(dpkg-deb -f "$package" Depends)
  case $depends in
    *libwxgtk3.2*) measured "the package depends on" "$depends" ;;
    *) fail "the package depends on: '$depends'" ;;
  esac
  timed "the package is installed" 'sudo apt-get install -q -y ./build/package/tarvel_*.deb'
  as_user "$root" 'tarvel-batch --version' || fail "the installed program does not start"
}
try_check() {
  say "an empty system: ./check"
  fresh_root
  give_sudo
  timed ./check ./check
  grep -E '^(downloading|installing) 100|tests passed|tests failed' "$work/log" || true
  grep -A 20 'tests did not run' "$work/log" || true
  report_set_up ./check
  nothing_untracked ./check
}
try_package() {
  say "the package in an empty system"
  [ -n "$package" ] || package=$(ls -t "$here"/../build/package/tarvel_*.deb | head -n 1)
  TARVEL_OWN_NAMESPACES=yes sh "$here/test-package.sh" "$package"
  measured "the package" "installed, used and removed"
}

commit=$(git -C "$here/.." log -1 --format='%h, %s')
for part; do "try_$part"; done
say "measured ($commit)"
cat "$figures"
