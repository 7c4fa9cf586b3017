#!/usr/bin/env bash
# Checks scripts/armhf-sysroot.sh without the network:
#   check-sysroot.sh complete     a sysroot whose manifest matches is left as
#                                 it is, and nothing is fetched
#   check-sysroot.sh unreachable  with every index out of reach, the run
#                                 stops non-zero with one line naming the
#                                 packages it could not have, and leaves no
#                                 sysroot behind
# Every fetch goes to a closed port on this machine (http_proxy), so a run
# that tried to fetch anything would fail or say so.
set -euo pipefail
script=$(cd "$(dirname "$0")/../.." && pwd)/scripts/armhf-sysroot.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export ZAVREL_ARMHF_SYSROOT=$work/sysroot ZAVREL_ARMHF_APT=$work/apt
export http_proxy=http://127.0.0.1:9 https_proxy=http://127.0.0.1:9
# apt tries a refused connection again after growing pauses (half a minute
# in all); a refusal here is final, so it gives up at once.
printf 'Acquire::Retries "0";\n' >"$work/apt.conf"
export APT_CONFIG=$work/apt.conf

case ${1:-} in
  complete)
    mkdir -p "$ZAVREL_ARMHF_SYSROOT"
    { "$script" --print-request; echo "libjsoncpp-dev 1.9.5-4"; } >"$ZAVREL_ARMHF_SYSROOT/.manifest"
    before=$(cat "$ZAVREL_ARMHF_SYSROOT/.manifest")
    out=$("$script" 2>&1)
    [ -z "$out" ] || { echo "expected no output, got: $out"; exit 1; }
    [ ! -e "$ZAVREL_ARMHF_APT" ] || { echo "apt was asked although the sysroot is complete"; exit 1; }
    [ "$(cat "$ZAVREL_ARMHF_SYSROOT/.manifest")" = "$before" ] || { echo "manifest changed"; exit 1; }
    ;;
  unreachable)
    if out=$("$script" 2>&1); then
      echo "expected a failure, got success: $out"; exit 1
    fi
    line=$(grep '^armhf sysroot: not in the package index: ' <<<"$out" || true)
    host=$(dpkg --print-architecture)
    expected="armhf sysroot: not in the package index: libjsoncpp-dev (armhf) libgtest-dev (armhf)"
    expected+=" libgmock-dev (armhf) libreadline-dev (armhf) libevent-dev (armhf) libmnl-dev (armhf)"
    expected+=" libyajl-dev (armhf)"
    expected+=" g++-12-arm-linux-gnueabihf ($host) qemu-user-static ($host)"
    expected+=" (index errors, if any: $ZAVREL_ARMHF_APT/*/update.log)"
    [ "$line" = "$expected" ] || { echo "unexpected output: $out"; exit 1; }
    [ ! -e "$ZAVREL_ARMHF_SYSROOT" ] || { echo "a sysroot was left behind"; exit 1; }
    [ -z "$(ls -A "$work" | grep -vE "^(apt|apt\.conf)$")" ] || { echo "work files were left behind: $(ls -A "$work")"; exit 1; }
    ;;
  *)
    echo "usage: $0 complete|unreachable" >&2; exit 2 ;;
esac
echo "ok: $1"
