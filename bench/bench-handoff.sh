#!/usr/bin/env bash
# Time of a second start that hands its file to the running player and ends: from the command
# to the end of that process, for one or more builds side by side (runs alternate between
# them). Needs an X display (DISPLAY) and ffmpeg; each build runs in a home of its own.
#
#   bench/bench-handoff.sh <runs> <folder with orbel-player> [<another such folder> ...]
set -euo pipefail
runs=$1
shift
work=$(mktemp -d)
trap 'pkill -f "$work" 2>/dev/null || true; rm -rf "$work"' EXIT
ffmpeg -nostdin -v error -f lavfi -i testsrc2=size=640x360:rate=30 -t 5 -pix_fmt yuv420p "$work/clip.mp4"
declare -a pids
n=0
for app in "$@"; do
  home="$work/home$n"
  mkdir -p "$home/.config" "$home/run"
  chmod 700 "$home/run"
  HOME=$home XDG_CONFIG_HOME=$home/.config XDG_RUNTIME_DIR=$home/run "$app/orbel-player" "$work/clip.mp4" >/dev/null 2>&1 &
  pids[$n]=$!
  n=$((n + 1))
done
sleep 3
declare -a times
for ((r = 0; r < runs; r++)); do
  n=0
  for app in "$@"; do
    home="$work/home$n"
    start=$(date +%s%N)
    HOME=$home XDG_CONFIG_HOME=$home/.config XDG_RUNTIME_DIR=$home/run "$app/orbel-player" "$work/clip.mp4" >/dev/null 2>&1
    end=$(date +%s%N)
    times[$n]="${times[$n]:-} $(((end - start) / 1000000))"
    n=$((n + 1))
    sleep 0.3
  done
done
n=0
for app in "$@"; do
  sorted=$(tr ' ' '\n' <<<"${times[$n]}" | grep . | sort -n)
  count=$(wc -l <<<"$sorted")
  echo "$app: median $(sed -n "$(((count + 1) / 2))p" <<<"$sorted") ms ($(head -1 <<<"$sorted")–$(tail -1 <<<"$sorted")), $count runs"
  kill "${pids[$n]}" 2>/dev/null || true
  n=$((n + 1))
done
