#!/bin/sh
# SPDX-License-Identifier: MIT
# Holds that programs are built hardened: hardening.sh PROGRAM...
set -u
failures=0
need() { # need PROGRAM WHAT TEXT PATTERN
  echo "$3" | grep -q "$4" && return
  echo "FAILED: $1: $2"
  failures=$((failures + 1))
}
for program in "$@"; do
  headers=$(readelf -hlW "$program")
  dynamic=$(readelf -dW "$program")
  symbols=$(readelf --dyn-syms -W "$program")
  need "$program" "position independent" "$headers" 'Type: *DYN'
  need "$program" "read-only relocations" "$headers" 'GNU_RELRO'
  need "$program" "all symbols bound at the start" "$dynamic" 'FLAGS_1.*NOW'
  need "$program" "a program, not a library" "$dynamic" 'FLAGS_1.*PIE'
  need "$program" "a stack that is not executable" \
    "$(echo "$headers" | grep GNU_STACK | grep -v 'RWE')" 'GNU_STACK'
  need "$program" "stack canaries" "$symbols" '__stack_chk_fail'
  need "$program" "checked library calls" "$symbols" '_chk@'
  case $(uname -m) in
    # The property note would say so too, but the start code of Debian 12 is built without, and so
    # no program has the note. The compiler's own start code has a few landing places.
    x86_64) need "$program" "guarded jumps" \
      "$(objdump -d "$program" | grep -c endbr64)" '[0-9][0-9][0-9]' ;;
  esac
  if readelf -dW "$program" | grep -Eq 'R(UN)?PATH'; then
    echo "FAILED: $program: searches a directory of the build for libraries"
    failures=$((failures + 1))
  fi
done
[ "$failures" -eq 0 ]
