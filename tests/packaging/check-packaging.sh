#!/usr/bin/env bash
# The install and the files that tell the desktop about the program: the build installs into
# a fresh prefix in exactly this layout (nothing of the tests, examples, tools or benchmarks),
# with the icon in every size, and the installed desktop entry and AppStream metainfo pass the
# desktop's own validators without a warning.
# Usage: check-packaging.sh <build folder>
set -euo pipefail
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$1" --prefix "$prefix" >/dev/null

expected="bin/orbel-player
lib/orbel-player/libqkplay.so
lib/orbel-player/orbel-player
lib/orbel-player/skin/btn/gold.png
lib/orbel-player/skin/mainwnd.xml
lib/orbel-player/skin/uicolors/UIColors.uic
lib/orbel-player/skin/usebigfont.dat
share/applications/orbel-player.desktop"
for size in 128 16 256 32 48 64; do
  expected+=$'\n'"share/icons/hicolor/${size}x${size}/apps/orbel-player.png"
done
expected+="
share/icons/hicolor/scalable/apps/orbel-player.svg
share/metainfo/org.orbelplayer.OrbelPlayer.metainfo.xml"
installed=$(cd "$prefix" && find . ! -type d | sed 's|^\./||' | LC_ALL=C sort)
if [ "$installed" != "$expected" ]; then
  echo "the installed files differ from the layout (< expected, > installed):"
  diff <(echo "$expected") <(echo "$installed") || true
  exit 1
fi
# A relative link, so that the tree may be moved as a whole.
[ "$(readlink "$prefix/bin/orbel-player")" = ../lib/orbel-player/orbel-player ]
for size in 16 32 48 64 128 256; do
  got=$(identify -format '%wx%h' "$prefix/share/icons/hicolor/${size}x${size}/apps/orbel-player.png")
  [ "$got" = "${size}x${size}" ] || { echo "the ${size}x${size} icon is $got"; exit 1; }
done

out=$(desktop-file-validate "$prefix/share/applications/orbel-player.desktop" 2>&1)
if [ -n "$out" ]; then
  echo "$out"
  exit 1
fi
# The metainfo itself, and that its desktop entry and icon are installed beside it.
appstreamcli validate-tree --no-net --strict "$prefix"
