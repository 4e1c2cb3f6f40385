#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs cases under valgrind's memcheck: under_valgrind.sh TARVEL-BATCH [CASE-DIRECTORY]...
#
# Without a directory it takes all cases. A case fails when its files or streams differ, as in
# run_case.sh, or when memcheck finds an error or a leak.
set -u
program=$(realpath "$1")
shift
here=$(dirname "$(realpath "$0")")
[ $# -gt 0 ] || set -- "$here"/*/*/

reports=$(mktemp -d) || exit 1
trap 'rm -rf "$reports"' EXIT
cat >"$reports/tarvel-batch" <<WRAPPER
#!/bin/sh
exec valgrind --quiet --leak-check=full --log-file="$reports/%p.log" "$program" "\$@"
WRAPPER
chmod +x "$reports/tarvel-batch"
# One case names a file beside the program.
ln -s "$(dirname "$program")/JournalStrings" "$reports/JournalStrings"

runs=0
failures=0
for case; do
  case=$(realpath "$case")
  runs=$((runs + 1))
  sh "$here/run_case.sh" "$reports/tarvel-batch" "$case" >"$reports/output" 2>&1
  status=$?
  if [ "$status" -ne 0 ] || [ -s "$(find "$reports" -name '*.log' -size +0 | head -n 1)" ]; then
    failures=$((failures + 1))
    echo "FAILED: $case"
    cat "$reports/output" "$reports"/*.log 2>/dev/null
  fi
  rm -f "$reports"/*.log
done
echo "$runs cases under memcheck, $failures failed"
[ "$failures" -eq 0 ]
