#!/bin/sh
# SPDX-License-Identifier: MIT
# Checks what the desktop and the packaging tools read: validate.sh [PACKAGE.deb]
#
# Exit status 77: a tool is missing. They are in the packages desktop-file-utils, appstream,
# shared-mime-info, man-db, mandoc and lintian.
set -u
package=${1:+$(realpath "$1")}
cd "$(dirname "$0")" || exit 1

tools="desktop-file-validate appstreamcli update-mime-database man mandoc"
[ -n "$package" ] && tools="$tools lintian"
for tool in $tools; do
  command -v "$tool" >/dev/null || {
    echo "skipped: no $tool" >&2
    exit 77
  }
done

failures=0
check() { # check WHAT COMMAND...
  what=$1
  shift
  if output=$("$@" 2>&1); then
    echo "passed: $what"
  else
    failures=$((failures + 1))
    echo "FAILED: $what"
    echo "$output"
  fi
}
# Neither program fails on a warning, so that there must be none.
is_silent() { output=$("$@" 2>&1 >/dev/null) && [ -z "$output" ] || { echo "$output"; false; }; }
says_nothing() { output=$("$@" 2>&1) && [ -z "$output" ] || { echo "$output"; false; }; }

scratch=$(mktemp -d) || exit 1
trap 'rm -rf "$scratch"' EXIT
mime() {
  mkdir -p "$scratch/mime/packages" &&
    cp org.tarvel.Tarvel.mime.xml "$scratch/mime/packages/org.tarvel.Tarvel.xml" &&
    says_nothing env XDG_DATA_HOME="$scratch" update-mime-database "$scratch/mime" &&
    grep -q 'text/x-tarvel-list:\*\.tvl' "$scratch/mime/globs2"
}

check "desktop entry" says_nothing desktop-file-validate org.tarvel.Tarvel.desktop
check "metainfo" appstreamcli validate --no-net org.tarvel.Tarvel.metainfo.xml
check "MIME type" mime
for page in man/*.[15]; do
  check "$page (man)" is_silent man --warnings -l "$page"
  check "$page (mandoc)" says_nothing mandoc -T lint -W warning "$page"
done
if [ -n "$package" ]; then
  check "lintian" lintian --allow-root --fail-on error "$package"
  lintian --allow-root "$package"
fi
[ "$failures" -eq 0 ]
