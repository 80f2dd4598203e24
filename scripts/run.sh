#!/usr/bin/env bash
# Sets everything up, builds Orbel Player and starts it on the files given, or on a short
# sample clip when none is given.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo
if [ $# -eq 0 ]; then
  "$root/scripts/make-sample.sh" "$root/build/sample/orbel-sample.mp4"
  set -- "$root/build/sample/orbel-sample.mp4"
fi
exec "$root/build/bin/orbel-player" "$@"
