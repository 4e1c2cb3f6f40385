#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the packages twice and compares them: packaging/test-reproducible.sh
#
# The two builds differ in directory, time, time zone, umask and language, and only one runs the
# tests. What is built is the last commit.
set -eu
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

build() { # build DIRECTORY [tests]
  directory=$work/$1
  shift
  git clone -q . "$directory"
  "$directory/packaging/build-package.sh" "$@" >"$work/log" 2>&1 || {
    tail -n 40 "$work/log"
    exit 1
  }
}
(umask 022 && export TZ=UTC LC_ALL=C && build one tests)
(umask 077 && export TZ=Asia/Kathmandu LC_ALL=C.UTF-8 && build another/place)

status=0
for file in "$work"/one/build/package/*.deb "$work"/one/build/package/*.tar.xz \
  "$work"/one/build/package/*.dsc; do
  name=$(basename "$file")
  if cmp "$file" "$work/another/place/build/package/$name"; then
    echo "the same twice: $name $(sha256sum <"$file" | cut -c 1-16)"
  else
    status=1
  fi
done
exit $status
