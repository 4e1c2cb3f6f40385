#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs one of these tests with a display, a message bus and a home directory of its own. Exit status
# 77 says that something that it needs is not installed.
#
#   run.sh TEST PROGRAM
set -u
here=$(cd "$(dirname "$0")" && pwd)

for tool in dbus-run-session openbox xdotool xprop Xvfb /usr/bin/python3; do
  if ! command -v "$tool" >/dev/null; then
    echo "skipped: no $tool" >&2
    exit 77
  fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset XDG_CACHE_HOME XDG_CONFIG_HOME XDG_DATA_HOME LC_ALL
export HOME="$work" XDG_RUNTIME_DIR="$work" PYTHONDONTWRITEBYTECODE=1
sh "$here/../with_display.sh" dbus-run-session -- /usr/bin/python3 "$here/$1" "$2"
