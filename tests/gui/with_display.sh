#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a command on a display of its own (Xvfb, with a window manager), so that tests neither need a
# desktop nor disturb one. Without Xvfb the display at hand serves; without any, exit status 77 says
# that the test was skipped.
#
#   with_display.sh COMMAND [ARGUMENT]...
set -u
: "${TARVEL_SCREEN:=1280x1024x24}"
export GSETTINGS_BACKEND=memory NO_AT_BRIDGE=1 GDK_BACKEND=x11
unset WAYLAND_DISPLAY

if ! command -v Xvfb >/dev/null; then
  [ -n "${DISPLAY:-}" ] && exec "$@"
  echo "skipped: no Xvfb and no display" >&2
  exit 77
fi

work=$(mktemp -d)
server=''
manager=''
command=''
# shellcheck disable=SC2317 # called by the traps
stop() {
  [ -n "$command" ] && kill "$command" 2>/dev/null
  [ -n "$manager" ] && kill "$manager" 2>/dev/null
  [ -n "$server" ] && kill "$server" 2>/dev/null && wait "$server" 2>/dev/null
  rm -rf "$work"
}
trap stop EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

Xvfb -displayfd 3 -screen 0 "$TARVEL_SCREEN" -nolisten tcp -noreset \
  3>"$work/display" 2>"$work/log" &
server=$!
tries=0
until [ -s "$work/display" ]; do
  tries=$((tries + 1))
  if [ "$tries" -gt 100 ] || ! kill -0 "$server" 2>/dev/null; then
    echo "skipped: Xvfb did not start" >&2
    cat "$work/log" >&2
    exit 77
  fi
  sleep 0.1
done
DISPLAY=:$(cat "$work/display")
export DISPLAY
if command -v openbox >/dev/null; then
  openbox >/dev/null 2>&1 &
  manager=$!
  # It gives the focus to windows that open after its start only.
  tries=0
  until [ "$tries" -gt 300 ] || ! command -v xprop >/dev/null ||
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; do
    tries=$((tries + 1))
    sleep 0.1
  done
fi

"$@" &
command=$!
wait "$command"
status=$?
command=''
exit "$status"
