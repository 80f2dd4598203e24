#!/usr/bin/env bash
# Draws the application icon's PNG sizes (packaging/icons/orbel-player-<size>.png) from
# packaging/icons/orbel-player.svg. The PNGs are committed, so that a build needs no SVG
# renderer; run this after changing the SVG.
# Usage: tools/make-app-icons.sh   (needs rsvg-convert, from librsvg2-bin)
set -euo pipefail
icons="$(cd "$(dirname "$0")/../packaging/icons" && pwd)"
for size in 16 32 48 64 128 256; do
  rsvg-convert -w "$size" -h "$size" "$icons/orbel-player.svg" -o "$icons/orbel-player-$size.png"
done
