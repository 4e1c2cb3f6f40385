#!/bin/sh
# SPDX-License-Identifier: MIT
# Checks what the desktop and the packaging tools read, and that every file names the same version:
# validate.sh [PACKAGE]
#
# PACKAGE is a .deb or a .changes. Exit status 77: a tool is missing. They are in the packages
# desktop-file-utils, appstream, shared-mime-info, man-db, mandoc and lintian.
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

# The version that the build knows is the one that the program and its pages say, and that of the
# newest entry of each list of changes; the two lists for users have the same date.
versions() {
  version=$(sed -n 's/^project(tarvel VERSION \([^ ]*\).*/\1/p' ../CMakeLists.txt)
  texts=$(grep -Eoh 'Tarvel v?[0-9.]+[0-9]' ../app/texts.* man/* | sed 's/Tarvel v\?//' | sort -u)
  changes=$(sed -n 's/^## \([0-9].*\)/\1/p' ../CHANGELOG.md | head -n 1)
  metainfo=$(sed -n 's/.*<release version="\(.*\)" date="\(.*\)">.*/\1 - \2/p' \
    org.tarvel.Tarvel.metainfo.xml | head -n 1)
  debian=$version  # the archive of the sources has no debian/
  [ ! -e ../debian ] || debian=$(sed -n '1s/^tarvel (\(.*\)-[^-]*) .*/\1/p' ../debian/changelog)
  [ "$texts" = "$version" ] && [ "${changes% - *}" = "$version" ] &&
    [ "$metainfo" = "$changes" ] && [ "$debian" = "$version" ] && return
  echo "CMakeLists.txt: $version; app/texts and man/:" $texts
  echo "CHANGELOG.md: $changes; metainfo: $metainfo; debian/changelog: $debian"
  false
}

scratch=$(mktemp -d) || exit 1
trap 'rm -rf "$scratch"' EXIT
mime() {
  mkdir -p "$scratch/mime/packages" &&
    cp org.tarvel.Tarvel.mime.xml "$scratch/mime/packages/org.tarvel.Tarvel.xml" &&
    says_nothing env XDG_DATA_HOME="$scratch" update-mime-database "$scratch/mime" &&
    grep -q 'text/x-tarvel-list:\*\.tvl' "$scratch/mime/globs2"
}

check "versions" versions
check "desktop entry" says_nothing desktop-file-validate org.tarvel.Tarvel.desktop
check "metainfo" appstreamcli validate --no-net org.tarvel.Tarvel.metainfo.xml
check "MIME type" mime
for page in man/*.[15]; do
  check "$page (man)" is_silent man --warnings -l "$page"
  check "$page (mandoc)" says_nothing mandoc -T lint -W warning "$page"
done
if [ -n "$package" ]; then
  check "lintian" lintian --allow-root --fail-on error,warning "$package"
  lintian --allow-root --display-info --pedantic "$package"
fi
[ "$failures" -eq 0 ]
