#!/usr/bin/env bash
# Builds and runs every test twice: the normal build and the Debug build under
# AddressSanitizer and UndefinedBehaviorSanitizer. Exits non-zero on any failure.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh

jobs=$(nproc)
status=0
for preset in default asan; do
  echo "=== ${preset}: configure and build" >&2
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs"
  echo "=== ${preset}: test" >&2
  if ! ctest --preset "$preset" -j "$jobs"; then
    status=1
  fi
done
exit $status
