#!/bin/sh
# SPDX-License-Identifier: MIT
# One sitting with the real program, by keyboard alone: every step waits for the window that must
# come, and fails after a while when it does not.
#
#   with_display.sh click_through.sh PROGRAM
set -u
program=$1
seconds=20 # the longest wait for one window

for tool in openbox prlimit xdotool xprop; do
  if ! command -v $tool >/dev/null; then
    echo "skipped: no $tool" >&2
    exit 77
  fi
done

work=$(mktemp -d)
process=
stop() {
  [ -n "$process" ] && kill "$process" 2>/dev/null
  rm -rf "$work"
}
trap stop EXIT

fail() {
  echo "FAILED: $*" >&2
  echo "open windows:" >&2
  titles >&2
  exit 1
}

# The titles of all windows of the program that are shown, a line each. Without --all xdotool takes
# the windows that fit any of the conditions.
titles() {
  for id in $(xdotool search --all --onlyvisible --pid "$process" --name '.*' 2>/dev/null); do
    xprop -id "$id" _NET_WM_NAME 2>/dev/null | sed -n 's/^[^"]*"\(.*\)"$/\1/p'
  done
}

# Waits until a window with this very title is shown and is the active one.
expect_window() {
  tries=$((seconds * 20))
  until [ "$(xdotool getactivewindow getwindowname 2>/dev/null)" = "$1" ]; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || fail "no window '$1'"
    sleep 0.05
  done
  sleep 0.2
}

expect_no_window() {
  tries=$((seconds * 20))
  while titles | grep -Fqx "$1"; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || fail "the window '$1' stays"
    sleep 0.05
  done
}

press() { xdotool key --delay 30 "$@"; }

# Makes the main window the active one. The window manager may be busy with the one that has just
# opened and lose the request, so it is asked until it has done it.
raise_main() {
  tries=$((seconds * 4))
  until [ "$(xdotool getactivewindow getwindowname 2>/dev/null)" = "$main" ]; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || fail "the main window cannot be raised"
    xdotool search --all --onlyvisible --pid "$process" --name '^Tarvel 3.81' \
      windowactivate 2>/dev/null
    sleep 0.25
  done
}

start() {
  # A low soft limit, to see that the program raises it.
  prlimit --stack=8388608: "$program" "$@" >"$work/out" 2>"$work/err" &
  process=$!
  expect_window "$main"
}

# Waits for the end of the program and checks its exit status.
expect_end() {
  tries=$((seconds * 20))
  while kill -0 "$process" 2>/dev/null; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || fail "the program goes on"
    sleep 0.05
  done
  wait "$process"
  status=$?
  process=
  [ "$status" -eq 0 ] || fail "exit status $status"
}

main='Tarvel 3.81 - Veldo Marsk, 2014'
printf '@ARTICLE{a,\r\n  author = {A},\r\n  doi = {1}\r\n}\r\n' >"$work/lit.bib"

# The command line is not looked at: neither an option nor a file.
start --help --version --no-such-option no-such-file
grep -Eq '^Max stack size +83886080 ' "/proc/$process/limits" ||
  fail "the stack limit is not raised"

# The title bar and the task switcher have an icon.
xprop -id "$(xdotool getactivewindow)" _NET_WM_ICON | grep -q 'Icon (48 x 48)' ||
  fail "the window has no icon"

# No file picked: "Clean tags" (the fourth control from the end) shows the check's box only.
press shift+Tab shift+Tab shift+Tab shift+Tab
press space
expect_window 'Load BibTeX file'
press Return
expect_no_window 'Load BibTeX file'
expect_window "$main"

# Back to the first picker, and a Windows file picked by its path.
press shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab
press shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab
press shift+Tab shift+Tab shift+Tab shift+Tab
press space
expect_window 'Select a file'
xdotool type --delay 20 "$work/lit.bib"
sleep 0.5
press Return
expect_window 'File conversion'
press Return
expect_no_window 'File conversion'
expect_no_window 'Select a file'
expect_window "$main"
[ -s "$work/lit_linux.bib" ] || fail "no converted copy"

# "Clean tags" with the picked file.
press shift+Tab shift+Tab shift+Tab shift+Tab
press space
expect_window 'Done!'
press Return
expect_no_window 'Done!'
grep -q 'author = {A}' "$work/lit_linux_tag.bib" || fail "the author is gone"
grep -q doi "$work/lit_linux_tag.bib" && fail "the doi is still there"

# "Quit" by its letter ends the program although a preference dialog is open.
expect_window "$main"
press Tab space
expect_window "Preferences for Clean tags'"
raise_main
expect_window "$main"
press alt+q
expect_end
# GTK's own remarks on the desktop around it may stand there; one of them has a second line.
grep -v -e Gtk- -e '^This may indicate that pixbuf loaders' "$work/err" | grep -q . &&
  fail "$(cat "$work/err")"

# The close button does the same.
start
press alt+a
expect_window 'Tarvel v3.81 - Veldo Marsk'
press Return
expect_no_window 'Tarvel v3.81 - Veldo Marsk'
expect_window "$main"
press alt+F4
expect_end
echo "passed"
