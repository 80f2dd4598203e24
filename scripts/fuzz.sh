#!/usr/bin/env bash
# Longer fuzzing of the file readers: scripts/fuzz.sh [seconds per target, default 600]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
secs=${1:-600}
"$root/scripts/setup.sh"
CC=clang CXX=clang++ ORBEL_BUILD_TARGET=orbel_fuzzers "$root/scripts/build.sh" "$root/build-fuzz" -DORBEL_FUZZ=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo
cd "$root/build-fuzz"
ORBEL_FUZZ_SECONDS=$secs ctest -L fuzz --output-on-failure -j1 --timeout $((secs + 60))
