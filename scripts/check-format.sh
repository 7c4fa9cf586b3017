#!/usr/bin/env bash
# Fails when a C++ file of the repository differs from what clang-format
# (.clang-format at the top) makes of it, naming each file. With --fix it
# rewrites them instead.
set -euo pipefail
cd "$(dirname "$0")/.."

formatter=${CLANG_FORMAT:-clang-format}
mapfile -t files < <(git ls-files -- '*.cpp' '*.h')
if [ "${1:-}" = "--fix" ]; then
  "$formatter" -i "${files[@]}"
  exit 0
fi
differ=()
for f in "${files[@]}"; do
  if ! "$formatter" --dry-run --Werror "$f" >/dev/null 2>&1; then
    differ+=("$f")
  fi
done
if [ ${#differ[@]} -gt 0 ]; then
  echo "format: ${#differ[@]} file(s) differ from clang-format; run scripts/check-format.sh --fix:" >&2
  printf '  %s\n' "${differ[@]}" >&2
  exit 1
fi
echo "format: ${#files[@]} files as clang-format makes them" >&2
