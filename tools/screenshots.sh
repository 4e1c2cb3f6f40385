#!/bin/sh
# SPDX-License-Identifier: MIT
# Takes pictures of the dialogs, from the program itself on a display of its own. GDK_SCALE=2 and
# GTK_THEME=Adwaita:dark in the environment show how they look on other screens.
#
#   tools/screenshots.sh PROGRAM [DIRECTORY]      (build/dev/bin/tarvel, docs/images)
#
# Needs xvfb, openbox, xdotool and imagemagick.
set -eu
here=$(cd "$(dirname "$0")" && pwd)

if [ "${1:-}" != --on-this-display ]; then
  program=${1:-$here/../build/dev/bin/tarvel}
  directory=${2:-$here/../docs/images}
  mkdir -p "$directory"
  TARVEL_SCREEN=2560x2048x24 exec sh "$here/../tests/gui/with_display.sh" \
    sh "$0" --on-this-display "$program" "$directory"
fi

program=$2
directory=$3
main='Tarvel 3.81 - Veldo Marsk, 2014'

xdotool mousemove 0 0 # no tooltip, no button under the pointer
"$program" &
process=$!
trap 'kill $process 2>/dev/null || true' EXIT

wait_for() {
  tries=100
  until [ "$(xdotool getactivewindow getwindowname 2>/dev/null)" = "$1" ]; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || { echo "no window '$1'" >&2; exit 1; }
    sleep 0.1
  done
  sleep 0.5
}

take() {
  wait_for "$1"
  import -window "$(xdotool getactivewindow)" -frame -strip -depth 8 "$directory/$2.png"
}

# Opens the preferences that stand this many steps of the keyboard further on.
take_preferences() {
  xdotool key --delay 30 --repeat "$1" --repeat-delay 30 Tab
  xdotool key space
  take "$2" "$3"
  xdotool search --onlyvisible --name '^Tarvel 3.81' windowactivate
  wait_for "$main"
}

take "$main" main-dialog
take_preferences 4 "Preferences for 'Extract'" preferences-extract
take_preferences 5 "Preferences for 'Text'" preferences-text
take_preferences 3 "Preferences for 'Journals'" preferences-journals
take_preferences 9 "Preferences for Clean tags'" preferences-clean-tags
