#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the packages twice, in two directories, and compares them: packaging/test-reproducible.sh
#
# What is built is the last commit.
set -eu
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for directory in one another/place; do
  mkdir -p "$work/$directory"
  git archive HEAD | tar -x -C "$work/$directory"
  (
    cd "$work/$directory"
    cmake --preset release -DTARVEL_TESTS=OFF >/dev/null
    cmake --build --preset release --target package >/dev/null
  )
done
status=0
for package in "$work"/one/build/release/tarvel*.deb "$work"/one/build/release/tarvel*.tar.gz; do
  name=$(basename "$package")
  if cmp "$package" "$work/another/place/build/release/$name"; then
    echo "the same twice: $name $(sha256sum <"$package" | cut -c 1-16)"
  else
    status=1
  fi
done
exit $status
