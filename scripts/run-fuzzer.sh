#!/usr/bin/env bash
# Runs one libFuzzer target on a copy of its seed corpus: run-fuzzer.sh <binary> <seed dir> <seconds>
set -euo pipefail
bin=$1 seeds=$2 secs=${ORBEL_FUZZ_SECONDS:-$3}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/corpus"
cp -r "$seeds"/. "$work/corpus/" 2>/dev/null || true
cd "$work"
"$bin" -max_total_time="$secs" -rss_limit_mb=2048 -timeout=10 -print_final_stats=1 corpus 2>&1 | tail -n 12
