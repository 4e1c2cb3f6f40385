#!/bin/sh
# SPDX-License-Identifier: MIT
# The manual page of tarvel-batch lists the options of --help, with their words and texts, and the
# operations of --list-operations: check_man_page.sh TARVEL-BATCH MAN-PAGE
set -u
program=$1
page=$2
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT

# Both as "--style {aps,acs} journal style of ...", one line an option.
"$program" --help | sed -n '/^Options:/,$p' |
  awk '/^  --/ { if (line) print line; line = $0; next } /^ +[^ ]/ { line = line " " $0 }
       END { print line }' |
  sed -e 's/ TEXT:/ /' -e 's/ \.\.\./.../' -e 's/  */ /g' -e 's/^ //' | sort >"$work/help"
awk '/^\.SH OPTIONS/ { on = 1; next } /^\.(SH|PP)/ { on = 0 }
     on && /^\.TP/ { if (line) print line; line = "" ; next }
     on { line = line " " $0 }
     END { print line }' "$page" |
  sed -e 's/\.B //' -e 's/\\f[RIBP]//g' -e 's/\\-/-/g' -e 's/  */ /g' -e 's/^ //' |
  sort >"$work/page"
"$program" --list-operations | sort >"$work/operations.help"
sed -n 's/^\.BI \([a-z-]*\) .*/\1/p' "$page" | sort >"$work/operations.page"

status=0
for list in "help page" "operations.help operations.page"; do
  set -- $list
  [ -s "$work/$1" ] && diff "$work/$1" "$work/$2" || {
    echo "FAILED: the program (<) and its manual page (>) do not agree"
    status=1
  }
done
exit $status
