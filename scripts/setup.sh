#!/usr/bin/env bash
# Installs every Debian package that Orbel Player needs to build, run, test and benchmark.
# Idempotent and quiet: when everything is there it prints nothing and touches nothing.
set -euo pipefail

packages=(
  # build
  cmake ninja-build pkg-config g++ clang libclang-rt-14-dev clang-format-14
  qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev libgl-dev
  libmpv-dev libavformat-dev libavcodec-dev libavutil-dev libtinyxml2-dev
  # tests and benchmarks
  libgtest-dev libgmock-dev libbenchmark-dev libpugixml-dev libx11-dev libxfixes-dev
  xvfb xauth x11-utils xdotool openbox imagemagick dbus dbus-x11 ffmpeg mpv
  # the desktop entry and metainfo validators; the icon drawing (tools/make-app-icons.sh)
  desktop-file-utils appstream librsvg2-bin
  # run time
  fonts-liberation2 libqt6dbus6 libqt6network6 libqt6openglwidgets6 qt6-qpa-plugins
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing ${#missing[@]} Debian package(s): ${missing[*]}"
sudo=()
if [ "$(id -u)" -ne 0 ]; then
  sudo=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
