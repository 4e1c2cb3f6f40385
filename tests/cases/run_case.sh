#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs one case: run_case.sh TARVEL-BATCH CASE-DIRECTORY [--accept]
#
# A case directory holds
#   command          a shell script; "$TARVEL" is the batch program, the directory is a fresh copy
#                    of input/
#   input/           the files that are there before
#   expected/        the files that are there afterwards and were not before, byte for byte
#   expected.stdout  standard output (absent: empty)
#   expected.stderr  standard error (absent: empty)
#   expected.exit    the exit status (absent: 0)
# The files of input/ must be unchanged afterwards, unless expected/ holds one of the same name.
# --accept writes what the program gives as what is expected: read it before you commit it.
set -u
program=$1
case_directory=$2
accept=${3:-}

work=$(mktemp -d) || exit 1
trap 'chmod -R u+rwx "$work"; rm -rf "$work"' EXIT
mkdir "$work/run"
[ -d "$case_directory/input" ] && cp -R "$case_directory/input/." "$work/run"
(cd "$work/run" && TARVEL=$program sh "$case_directory/command") \
  >"$work/stdout" 2>"$work/stderr" </dev/null
status=$?

if [ "$accept" = --accept ]; then
  rm -rf "$case_directory/expected" "$case_directory"/expected.*
  (cd "$work/run" && find . -type f) | while read -r file; do
    cmp -s "$work/run/$file" "$case_directory/input/$file" && continue
    mkdir -p "$case_directory/expected/$(dirname "$file")"
    cp "$work/run/$file" "$case_directory/expected/$file"
  done
  [ -s "$work/stdout" ] && cp "$work/stdout" "$case_directory/expected.stdout"
  [ -s "$work/stderr" ] && cp "$work/stderr" "$case_directory/expected.stderr"
  [ "$status" -ne 0 ] && echo "$status" >"$case_directory/expected.exit"
  exit 0
fi

failures=0
fail() {
  echo "FAILED: $1"
  failures=$((failures + 1))
}
same() { # same WHAT EXPECTED GOT
  cmp -s "$2" "$3" && return
  fail "$1 differs (- expected, + got)"
  diff -a -u "$2" "$3" | sed -n '3,60p' | cat -v
}

[ "$(cat "$case_directory/expected.exit" 2>/dev/null || echo 0)" = "$status" ] ||
  fail "exit status $status"
for stream in stdout stderr; do
  expected=$case_directory/expected.$stream
  [ -f "$expected" ] || expected=/dev/null
  same "$stream" "$expected" "$work/$stream"
done

[ -d "$case_directory/expected" ] && cp -R "$case_directory/expected" "$work/expected"
mkdir -p "$work/expected"
[ -d "$case_directory/input" ] && (cd "$case_directory/input" && find . -type f) |
  while read -r file; do
    [ -f "$work/expected/$file" ] && continue
    mkdir -p "$work/expected/$(dirname "$file")"
    cp "$case_directory/input/$file" "$work/expected/$file"
  done
(cd "$work/expected" && find . -type f | sort) >"$work/names.expected"
(cd "$work/run" && find . -type f | sort) >"$work/names.got"
same "the list of files" "$work/names.expected" "$work/names.got"
while read -r file; do
  [ -f "$work/run/$file" ] && same "$file" "$work/expected/$file" "$work/run/$file"
done <"$work/names.expected"
[ "$failures" -eq 0 ]
