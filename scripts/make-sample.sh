#!/usr/bin/env bash
# Makes the small sample clip that the run command plays when no file is given:
# five seconds of a test pattern with a tone. Written once, then reused.
set -euo pipefail
out=$1
[ -s "$out" ] && exit 0
mkdir -p "$(dirname "$out")"
ffmpeg -nostdin -loglevel error -y \
  -f lavfi -i "testsrc2=size=640x360:rate=25:duration=5" \
  -f lavfi -i "sine=frequency=440:sample_rate=48000:duration=5" \
  -c:v libx264 -preset veryfast -pix_fmt yuv420p -c:a aac -b:a 96k -shortest \
  "$out.tmp.mp4"
mv "$out.tmp.mp4" "$out"
