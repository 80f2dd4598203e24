#!/usr/bin/env bash
# Checks that libqkplay.so exports exactly the functions that qkplay.h declares: the player
# finds them by name, and nothing of the library's inside may leak out to clash with other
# libraries. The media libraries are not among its dependencies: it loads them at run time,
# so that they do not hold up the start of every program that uses it.
# Usage: check-exports.sh <libqkplay.so> <qkplay.h>
set -euo pipefail
lib=$1
header=$2
exported=$(nm -D --defined-only "$lib" | awk '$2 ~ /^[TWiuDVB]$/ { print $3 }' \
  | grep -vxE '_edata|_end|__bss_start' | sort)
declared=$(grep -v '#define' "$header" | grep -oE 'QKPLAY_API [^(]*\(' | sed -E 's/.*[ *]([A-Za-z_0-9]+)\($/\1/' | sort)
if [ -z "$declared" ]; then
  echo "no QKPLAY_API declarations found in $header"
  exit 1
fi
if [ "$exported" != "$declared" ]; then
  echo "exported (>) and declared (<) functions differ:"
  diff <(echo "$declared") <(echo "$exported") || true
  exit 1
fi
if readelf -d "$lib" | grep NEEDED | grep -E 'libmpv|libav'; then
  echo "the media libraries above are loaded with the program, not at run time"
  exit 1
fi
echo "$(echo "$declared" | wc -l) functions exported, as declared; no media library linked"
