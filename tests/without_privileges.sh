#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a command without root's privileges: without_privileges.sh COMMAND [ARGUMENT]...
#
# Root opens files that their permissions close to everybody else, and so hides what every user
# meets. For root the command runs with no capability left, and permissions then bind it as they
# bind any owner of its files; for other users it just runs.
set -eu
[ "$(id -u)" -eq 0 ] || exec "$@"

probe=$(mktemp)
chmod 0444 "$probe"
dropped=no
setpriv --inh-caps=-all --ambient-caps=-all --bounding-set=-all \
  sh -c '! (: >>"$1") 2>/dev/null' sh "$probe" && dropped=yes
rm -f "$probe"
if [ $dropped = no ]; then
  echo "The privileges of root cannot be dropped here. Run the tests as an ordinary user." >&2
  exit 1
fi
exec setpriv --inh-caps=-all --ambient-caps=-all --bounding-set=-all "$@"
