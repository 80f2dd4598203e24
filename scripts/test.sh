#!/usr/bin/env bash
# Sets everything up, builds Orbel Player and runs every test:
#   1. the source format check, the check that Qt's widgets stay in platform/, and the
#      test-to-program line ratio,
#   2. the whole suite in the normal build,
#   3. the whole suite again with AddressSanitizer and UndefinedBehaviorSanitizer,
#   4. each fuzz target for a short while on its seed corpus.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
"$root/scripts/setup.sh"

jobs=$(nproc)
summary=()
total_pass=0
total_fail=0

run_ctest() {
  local name=$1 dir=$2
  shift 2
  local log="$dir/ctest.log" rc=0
  (cd "$dir" && ctest --output-on-failure -j"$jobs" "$@") 2>&1 | tee "$log" || rc=$?
  local line
  line=$(grep -E '[0-9]+% tests passed' "$log" | tail -n 1 || true)
  local failed total
  failed=$(sed -nE 's/.*tests passed, ([0-9]+) tests failed out of ([0-9]+).*/\1/p' <<<"$line")
  total=$(sed -nE 's/.*tests passed, ([0-9]+) tests failed out of ([0-9]+).*/\2/p' <<<"$line")
  if [ -z "$line" ] && grep -q 'No tests were found' "$log"; then
    failed=0 total=0
  fi
  failed=${failed:-1}
  total=${total:-1}
  total_pass=$((total_pass + total - failed))
  total_fail=$((total_fail + failed))
  summary+=("$name: $((total - failed)) of $total passed")
  [ "$rc" -eq 0 ] && [ "$failed" -eq 0 ]
}

status=0
echo "== format and line count"
"$root/scripts/format.sh" --check || status=1
"$root/scripts/check-widgets.sh" || status=1
"$root/scripts/test-ratio.sh" || status=1

echo "== build and test"
"$root/scripts/build.sh" build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORBEL_WERROR=ON -DORBEL_BENCH=ON
run_ctest "normal build" build || status=1

echo "== sanitizer build and test"
"$root/scripts/build.sh" build-asan -DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=ON -DORBEL_WERROR=ON
run_ctest "sanitizer build" build-asan || status=1

echo "== fuzz targets, a short run each"
CC=clang CXX=clang++ ORBEL_BUILD_TARGET=orbel_fuzzers "$root/scripts/build.sh" build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORBEL_FUZZ=ON
run_ctest "fuzz" build-fuzz -L fuzz -j1 || status=1

echo "== summary"
printf '%s\n' "${summary[@]}"
echo "tests: $total_pass passed, $total_fail failed"
exit $status
