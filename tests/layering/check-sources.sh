#!/usr/bin/env bash
# Every C++ source and header in the repository is named by a CMake file: the
# lists are written out by hand, so a file added without its line would
# otherwise be left out of the build (or a test file left out of its program)
# without a word. A file counts as named when its path relative to some
# CMakeLists.txt above it (or, for programs, its stem, with or without its folder) appears in that file.
set -euo pipefail
source_dir=${ZAVREL_SOURCE_DIR:-$(cd "$(dirname "$0")/../.." && pwd)}
cd "$source_dir"

status=0
while IFS= read -r file; do
  dir=$(dirname "$file")
  found=no
  while :; do
    if [ -f "$dir/CMakeLists.txt" ]; then
      rel=${file#"$dir"/}
      stem=${rel%.*}
      base=${stem##*/}
      if grep -qE "(^|[[:space:]/(])(${rel//./\\.}|${stem}|${base})([[:space:])]|$)" "$dir/CMakeLists.txt"; then
        found=yes
        break
      fi
    fi
    [ "$dir" = "." ] && break
    dir=$(dirname "$dir")
  done
  if [ $found = no ]; then
    echo "not named by any CMakeLists.txt: $file" >&2
    status=1
  fi
done < <(git ls-files -- 'lib/*.cpp' 'lib/*.h' 'platform/*.cpp' 'platform/*.h' 'protocols/*.cpp' \
           'protocols/*.h' 'emulator/*.cpp' 'emulator/*.h' 'stackapi/*.h' 'app/*.cpp' 'bench/*.cpp' \
           'fuzz/*.cpp' 'fuzz/*.h' 'tools/*.cpp' 'tools/*.h' 'tests/*.cpp' | grep -v '^tests/packaging/consumer/')
exit $status
