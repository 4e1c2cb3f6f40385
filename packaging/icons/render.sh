#!/bin/sh
# SPDX-License-Identifier: MIT
# Writes the sizes of the icon from its drawing. The build takes the pictures as they are here, so
# that it does not need rsvg-convert (librsvg2-bin).
set -eu
cd "$(dirname "$0")"
for size in 16 24 32 48 64 128 256; do
  rsvg-convert --width "$size" --height "$size" org.tarvel.Tarvel.svg --output "$size.png"
done
