#!/usr/bin/env bash
# Configures and builds one build tree: scripts/build.sh <dir> [cmake options...]
# ORBEL_BUILD_TARGET names one target to build instead of everything.
set -euo pipefail
cd "$(dirname "$0")/.."
dir=$1
shift
if [ ! -f "$dir/build.ninja" ]; then
  cmake -S . -B "$dir" -G Ninja "$@" >/dev/null
else
  cmake "$dir" "$@" >/dev/null
fi
cmake --build "$dir" ${ORBEL_BUILD_TARGET:+--target "$ORBEL_BUILD_TARGET"} -- -j"$(nproc)"
