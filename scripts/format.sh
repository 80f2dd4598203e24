#!/usr/bin/env bash
# Formats the C++ sources with the committed .clang-format; with --check it only reports
# files that differ and fails if there are any.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files -co --exclude-standard -- '*.cpp' '*.h' | while read -r f; do [ -f "$f" ] && echo "$f"; done)
[ ${#files[@]} -eq 0 ] && exit 0
if [ "${1:-}" = "--check" ]; then
  bad=()
  for f in "${files[@]}"; do
    if ! clang-format-14 --dry-run --Werror "$f" >/dev/null 2>&1; then bad+=("$f"); fi
  done
  if [ ${#bad[@]} -gt 0 ]; then
    echo "These files are not formatted (run scripts/format.sh):"
    printf '  %s\n' "${bad[@]}"
    exit 1
  fi
  echo "format: ${#files[@]} files formatted"
else
  clang-format-14 -i "${files[@]}"
fi
