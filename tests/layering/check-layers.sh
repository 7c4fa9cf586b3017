#!/usr/bin/env bash
# Dependencies between the project's folders run one way:
#
#   stackapi   <- platform <- lib <- protocols <- app
#   stackapi, platform     <- emulator            <- app
#   lib, protocols, emulator <- tools <- fuzz
#
# "includes": no folder includes a header of a folder above it (or beside it,
# for lib and emulator, which know each other only through stackapi/).
# "links <build-dir>": the library's shared object needs neither the protocol
# routers nor the embedded stack.
set -euo pipefail
source_dir=${ZAVREL_SOURCE_DIR:-$(cd "$(dirname "$0")/../.." && pwd)}
lib_folders="stack|mib|cfg|rtm|routing|config|interfaces|console"

# forbid <folder> <regex of folders it must not include>
status=0
forbid() {
  local folder=$1 banned=$2 hits
  hits=$(grep -rnE "#include \"(${banned})/" "$source_dir/$folder" --include='*.h' --include='*.cpp' || true)
  if [ -n "$hits" ]; then
    echo "$folder/ reaches up or sideways:" >&2
    sed "s|^$source_dir/||" <<<"$hits" >&2
    status=1
  fi
}

case ${1:-} in
  includes)
    forbid stackapi "platform|${lib_folders}|protocols|emulator|app"
    forbid platform "${lib_folders}|protocols|emulator|app"
    forbid lib "protocols|emulator|app"
    forbid protocols "emulator|app"
    forbid emulator "${lib_folders}|protocols|app"
    forbid tools "app|fuzz"
    ;;
  links)
    build_dir=${2:?usage: check-layers.sh links <build-dir>}
    needed=$(readelf -d "$build_dir/lib/libzavrel_routing.so" | grep NEEDED || true)
    if grep -qE 'zavrel_(protocols|stackemu)' <<<"$needed"; then
      echo "libzavrel_routing needs a library above it:" >&2
      echo "$needed" >&2
      status=1
    fi
    ;;
  *)
    echo "usage: check-layers.sh includes | links <build-dir>" >&2
    exit 2
    ;;
esac
exit $status
