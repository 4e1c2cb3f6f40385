#!/bin/sh
# SPDX-License-Identifier: MIT
# The manual page of tarvel-batch lists what --help lists, in the same words: the operations with
# their files, and the options with what uses them: check_man_page.sh TARVEL-BATCH MAN-PAGE
set -u
program=$1
page=$2
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT

# An item of either, as "--style STYLE aps, acs ... (extract, text)".
"$program" --help | awk '
  /^Operations:/ { on = 1; verbs = 1; next }
  /^[A-Z]/ { on = /^Options, / || /^Commands/; verbs = !/^Options, /; next }
  on && /^  [^ ]/ { if (line) print line users; line = $0; users = ""; next }
  on && verbs && /^ +[^ ]/ { line = line " " $0; next }
  on && /^ +[^ ]/ { sub(/^ +/, ""); sub(/\)$/, " ", users)
                    users = (users ? users : " (") $0 ")"; next }
  END { print line users }' | sed -e 's/  */ /g' -e 's/^ //' | sort >"$work/help"
awk '
  /^\.SH/ { on = /OPERATIONS|COMMANDS|OPTIONS/; if (line) print line; line = ""; next }
  /^\.PP/ { on = 0; next }
  on && /^\.TP/ { if (line) print line; line = ""; next }
  on { line = line " " $0 }
  END { if (line) print line }' "$page" |
  sed -e 's/\.BI \([^ ]*\) "\([^"]*\)"/\1 \2/' -e 's/\.B //' -e 's/\\f[RIBP]//g' -e 's/\\-/-/g' \
    -e 's/\\e/\\/g' -e 's/  */ /g' -e 's/^ //' | sort >"$work/page"

[ "$(wc -l <"$work/help")" -gt 20 ] && diff "$work/help" "$work/page" && exit 0
echo "FAILED: the program (<) and its manual page (>) do not agree"
exit 1
