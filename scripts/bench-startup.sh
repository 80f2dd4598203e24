#!/usr/bin/env bash
# Measures the whole player beside mpv and VLC: time to first picture, time to close, memory
# and CPU while playing (see bench/README.md). Installs what it needs, builds the player and
# the benchmark in build-bench (Release) and runs it under an X server of its own.
#
#   scripts/bench-startup.sh [bench_startup options, e.g. --runs 10 --play-runs 5]
#
# ORBEL_BENCH_DIR names another build folder; ORBEL_JOBS sets the parallel build jobs (2).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh

# VLC is only a peer to measure against, so it is not in the project's own package list.
sudo=()
if [ "$(id -u)" -ne 0 ]; then
  sudo=(sudo)
fi
if ! command -v vlc >/dev/null; then
  echo "Installing vlc to measure beside it"
  export DEBIAN_FRONTEND=noninteractive
  if ! { "${sudo[@]}" apt-get update -qq && "${sudo[@]}" apt-get install -y -qq --no-install-recommends vlc >/dev/null; }; then
    echo "vlc could not be installed; measuring without it" >&2
  fi
fi

dir=${ORBEL_BENCH_DIR:-build-bench}
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DORBEL_BENCH=ON -DORBEL_TESTS=OFF >/dev/null
# The benchmark depends on the player, its engine and the skin folder, so this builds them too.
ninja -C "$dir" -j"${ORBEL_JOBS:-2}" bench_startup

echo "Machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2- | sed 's/^ //'), load: $(cut -d' ' -f1-3 /proc/loadavg)"
dpkg-query -W -f='${Package} ${Version}\n' mpv libmpv2 vlc-bin libqt6core6 2>/dev/null || true

# One X server for the whole run, 1920x1080 as a common desktop, and one session bus, as a
# desktop session has.
exec xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" \
  dbus-run-session -- "$dir/bin/bench_startup" "$@"
