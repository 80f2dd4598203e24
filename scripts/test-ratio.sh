#!/usr/bin/env bash
# Reports test lines against program lines (blank and comment lines excluded) and fails when
# the ratio is above the ceiling: ORBEL_TEST_RATIO_MAX, 0.8 unless set.
set -euo pipefail
cd "$(dirname "$0")/.."
ceiling=${ORBEL_TEST_RATIO_MAX:-0.8}
count() {
  find "$@" -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) 2>/dev/null \
    | xargs -r cat | grep -vE '^\s*$|^\s*//|^\s*/?\*' | wc -l
}
p=$(count engine platform services toolkit controls player)
t=$(count tests)
awk -v t="$t" -v p="$p" -v c="$ceiling" 'BEGIN {
  if (p == 0) p = 1
  r = t / p
  printf "test lines / program lines: %d / %d = %.2f (aim: 0.25 to 0.33, ceiling %s)\n", t, p, r, c
  if (r > c) {
    printf "the tests have grown past %s of the program: fold same-shape cases, drop what a newer test covers\n", c > "/dev/stderr"
    exit 1
  }
}'
