#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a fuzz target: run_target.sh PROGRAM SEEDS [-corpus=DIRECTORY] LIBFUZZER-OPTION...
#
# New inputs go to the corpus, or to nowhere without one; the seeds stay as they are. An input that
# breaks a promise or the program is left beside the program, in findings/.
set -eu
program=$1
seeds=$2
shift 2

findings=$(dirname "$program")/../findings
mkdir -p "$findings"
case "${1:-}" in
  -corpus=*)
    corpus=${1#-corpus=}
    shift
    mkdir -p "$corpus"
    ;;
  *)
    corpus=$(mktemp -d)
    trap 'rm -rf "$corpus"' EXIT
    ;;
esac

# An input has at most 16 KiB, as the largest seeds have: what needs longer lines repeats bytes (see
# fuzz_input.h). One that takes 10 seconds or 2 GB has found something.
export ASAN_OPTIONS=quarantine_size_mb=16:detect_leaks=1
export UBSAN_OPTIONS=print_stacktrace=1
"$program" -max_len=16384 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -verbosity=1 \
  -artifact_prefix="$findings/$(basename "$program")-" "$@" "$corpus" "$seeds"
