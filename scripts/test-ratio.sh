#!/usr/bin/env bash
# Reports test lines against program lines (blank and comment lines excluded).
set -euo pipefail
cd "$(dirname "$0")/.."
count() {
  find "$@" -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) 2>/dev/null \
    | xargs -r cat | grep -vE '^\s*$|^\s*//|^\s*/?\*' | wc -l
}
p=$(count engine platform services toolkit controls player)
t=$(count tests)
awk -v t="$t" -v p="$p" 'BEGIN { if (p == 0) p = 1; printf "test lines / program lines: %d / %d = %.2f (aim: 0.25 to 0.33)\n", t, p, t / p }'
