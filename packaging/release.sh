#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes the files of a release from the last commit, in build/package: the archive of the sources,
# the Debian packages and their checksums. packaging/release.sh
#
# First give the new version and its date to all the files that CONTRIBUTING.md names, commit, and
# see ./check pass. Nothing is published: the last lines say what remains to be done.
set -eu
cd "$(dirname "$0")/.."
fail() {
  echo "No release: $1" >&2
  exit 1
}

packaging/setup.sh release
changes=$(git status --porcelain)
[ -z "$changes" ] || fail "there are changes that are not committed"
unreleased=$(sed -n '/^## Unreleased/,/^## [0-9]/{/^## /!{/./p}}' CHANGELOG.md)
[ -z "$unreleased" ] || fail "CHANGELOG.md has changes that are not released"
packaging/validate.sh || fail "see above"
version=$(sed -n 's/^project(tarvel VERSION \([^ ]*\).*/\1/p' CMakeLists.txt)
tag=v$version
tagged=$(git rev-parse --quiet --verify "refs/tags/$tag^{commit}" || true)
[ -z "$tagged" ] || [ "$tagged" = "$(git rev-parse HEAD)" ] || fail "$tag is another commit"

packaging/build-package.sh tests
packaging/validate.sh build/package/tarvel_*.changes || fail "see above"
cd build/package
cp "tarvel_$version.orig.tar.xz" "tarvel-$version.tar.xz"
sha256sum -- *.tar.xz *.dsc *.deb >SHA256SUMS

echo
cat SHA256SUMS
echo
echo "To publish it: git tag -a $tag -m 'Tarvel $version', push the tag, and upload these files and"
echo "SHA256SUMS from build/package."
