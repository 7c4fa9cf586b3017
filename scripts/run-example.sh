#!/usr/bin/env bash
# Builds the host application and runs the example site on the virtual clock.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" --target zavrel-router
exec build/default/app/zavrel-router --virtual-time --script examples/site.script "$@" </dev/null
