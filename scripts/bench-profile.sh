#!/usr/bin/env bash
# Profiles one player while it plays the 1920x1080 clip of bench_startup (run
# scripts/bench-startup.sh once first, which makes the clip): where the CPU time goes, by thread
# and library, and where the memory is, by mapping.
#
#   scripts/bench-profile.sh <folder with orbel-player, libqkplay.so, skin/ | mpv-gl> <output prefix>
#
# Writes <prefix>.perf.data (perf record, 8 s, 6 s after the start), <prefix>.txt (perf report
# by thread and library) and <prefix>.smaps (the largest mappings by PSS). Needs perf
# (Debian: linux-perf) and runs under an X server of its own.
set -euo pipefail
if [ $# -ne 2 ]; then
  sed -n 5p "$0" >&2
  exit 2
fi
app=$1
out=$(realpath -m "$2")
clip=${TMPDIR:-/tmp}/orbel-bench-startup-media-$(id -u)/testsrc2-1920x1080-30s.mp4
if [ ! -r "$clip" ]; then
  echo "no clip at $clip: run scripts/bench-startup.sh first" >&2
  exit 1
fi
if [ -z "${ORBEL_PROFILE_INNER:-}" ]; then
  export ORBEL_PROFILE_INNER=1
  exec xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" dbus-run-session -- "$0" "$@"
fi

# A first start in a private folder, as in the benchmark.
box=$(mktemp -d)
trap 'rm -rf "$box"' EXIT
mkdir -p "$box/home/.config" "$box/run"
chmod 700 "$box/run"
export HOME=$box/home XDG_CONFIG_HOME=$box/home/.config XDG_RUNTIME_DIR=$box/run
if [ "$app" = mpv-gl ]; then
  mpv --no-config --gpu-sw=yes --audio-fallback-to-null=yes "$clip" >/dev/null 2>&1 &
else
  cp -r "$app/orbel-player" "$app/libqkplay.so" "$app/skin" "$box/"
  "$box/orbel-player" "$clip" >/dev/null 2>&1 &
fi
pid=$!
sleep 6
awk '/^[0-9a-f]+-/{name=$6} /^Pss:/{pss[name]+=$2} END{for(n in pss) if(pss[n]>1500) printf "%8d kB %s\n", pss[n], n}' \
  "/proc/$pid/smaps" | sort -rn >"$out.smaps"
grep '^Pss:' "/proc/$pid/smaps_rollup" >>"$out.smaps"
perf record -F 499 -g -p "$pid" -o "$out.perf.data" -- sleep 8 >/dev/null 2>&1
kill "$pid"
wait "$pid" 2>/dev/null || true
perf report -i "$out.perf.data" -n --no-children --sort comm,dso -g none --stdio 2>/dev/null | grep -v '^$' >"$out.txt"
echo "wrote $out.txt, $out.smaps and $out.perf.data"
