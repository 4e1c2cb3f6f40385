#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the Debian packages, source and binary, in build/package: build-package.sh [tests]
#
# With "tests" the build runs the unit tests and the tests of whole operations. The files are those
# that git tracks, as they are in the working tree. Their time is that of the newest entry of
# debian/changelog, so that two builds of the same sources give the same bytes.
set -eu
cd "$(dirname "$0")/.."
if ! [ -d debian ] || ! [ -e .git ]; then
  echo "The package is built from a clone; the archive of the sources has no debian/." >&2
  exit 1
fi
packaging/setup.sh package "$@"
if [ "${1:-}" != tests ]; then
  export DEB_BUILD_OPTIONS="nocheck ${DEB_BUILD_OPTIONS:-}" DEB_BUILD_PROFILES=nocheck
fi

version=$(dpkg-parsechangelog --show-field Version)
version=${version%-*}
time=$(dpkg-parsechangelog --show-field Timestamp)
target=build/package
source=$target/tarvel-$version

rm -rf $target
mkdir -p $target
git ls-files -z -- . ':!debian' >$target/files
git ls-files -z -- debian >$target/debian_files
tar --create --xz --file $target/tarvel_"$version".orig.tar.xz --null --files-from $target/files \
  --transform "s,^,tarvel-$version/,S" --mtime "@$time" --mode=u=rwX,go=rX \
  --owner=0 --group=0 --numeric-owner --format=gnu
tar --extract --file $target/tarvel_"$version".orig.tar.xz --directory $target
xargs -0 cp --parents --target-directory "$source" <$target/debian_files
rm $target/files $target/debian_files
# The umask decides on the modes of some files of the source package.
(umask 022 && cd "$source" && chmod -R u=rwX,go=rX debian && dpkg-buildpackage -us -uc -sa)
rm -r "$source"

echo
echo "In $target:"
ls $target
