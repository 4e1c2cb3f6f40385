#!/bin/sh
# SPDX-License-Identifier: MIT
# The dialog with closed standard streams: no connection or file of its may get their numbers, or
# messages would go there.
#
#   with_display.sh closed_streams.sh PROGRAM
set -u
program=$1

if ! command -v xdotool >/dev/null; then
  echo "skipped: no xdotool" >&2
  exit 77
fi

"$program" <&- >&- 2>&- &
process=$!
trap 'kill "$process" 2>/dev/null' EXIT

tries=400
until xdotool search --all --onlyvisible --pid "$process" --name '^Tarvel 3.81' >/dev/null 2>&1; do
  tries=$((tries - 1))
  if [ "$tries" -eq 0 ]; then
    echo "FAILED: no window" >&2
    exit 1
  fi
  sleep 0.05
done
for number in 0 1 2; do
  file=$(readlink "/proc/$process/fd/$number")
  if [ "$file" != /dev/null ]; then
    echo "FAILED: descriptor $number is '$file'" >&2
    exit 1
  fi
done
kill -TERM "$process"
wait "$process"
status=$?
if [ "$status" -ne 143 ]; then
  echo "FAILED: exit status $status after SIGTERM" >&2
  exit 1
fi
