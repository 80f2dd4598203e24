#!/usr/bin/env bash
# Draws the title icon skin/btn/gold.png (28 by 28): a gold disc with a dark rim and a play
# mark. It is drawn four times larger and scaled down, which smooths the edges. The PNG
# carries no time stamps, so that drawing it again gives the same bytes.
# Usage: tools/make-gold-icon.sh [output.png]   (needs ImageMagick's convert)
set -euo pipefail
out=${1:-"$(dirname "$0")/../skin/btn/gold.png"}
convert -size 112x112 xc:none \
  \( -size 112x112 radial-gradient:'#FFF1B8'-'#B97A16' -roll -14-16 \) \
  \( -size 112x112 xc:black -fill white -draw 'circle 56,56 56,5' \) \
  -delete 0 -alpha off -compose CopyOpacity -composite -compose Over \
  -fill none -stroke '#7A4E0E' -strokewidth 5 -draw 'circle 56,56 56,7' \
  -stroke '#FFE39A' -strokewidth 2 -draw 'circle 56,56 56,13' \
  -stroke none -fill '#3B2706' -draw 'path "M 45,33 L 45,79 Q 45,84 50,81 L 82,60 Q 86,56 82,52 L 50,31 Q 45,28 45,33 Z"' \
  -filter Lanczos -resize 28x28 \
  -strip -define png:exclude-chunks=date,time +set date:create +set date:modify \
  PNG32:"$out"
