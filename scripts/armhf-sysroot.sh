#!/usr/bin/env bash
# Builds the project's armhf sysroot: the 32-bit ARM libraries the cross build
# links and its tests load, unpacked from Debian's armhf packages.
#
#   scripts/armhf-sysroot.sh             make the sysroot, or do nothing when
#                                        the one in place is complete
#   scripts/armhf-sysroot.sh --print-request
#                                        print the first line of the
#                                        manifest this script would write
#
# Nothing is installed through dpkg and nothing of the host's apt or dpkg
# state changes: the armhf package indexes are read by apt with a private
# state and cache directory (armhf as its only architecture), the .deb files
# are fetched with `apt-get download` and unpacked with `dpkg-deb -x`. The
# host's own packages are therefore never tied to the armhf versions.
#
# The cross compiler's own C and C++ runtime (libc6-armhf-cross and the like,
# host packages installed by scripts/deps.sh) is linked into the sysroot's
# /lib, so that the sysroot alone is the root that qemu loads programs from
# (qemu-arm -L <sysroot>).
#
# The sysroot records what it was made from in .manifest: the packages asked
# for, then each unpacked package and its version. A rerun with the same
# request fetches nothing. A package that cannot be had (a missing index, a
# mirror in the middle of a sync) stops the run with one line naming it.
#
# Environment:
#   ZAVREL_ARMHF_SYSROOT   where the sysroot goes (default build/sysroot-armhf)
#   ZAVREL_ARMHF_APT       apt's private state for the armhf indexes
#                          (default build/apt-armhf)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
sysroot=${ZAVREL_ARMHF_SYSROOT:-$root/build/sysroot-armhf}
aptdir=${ZAVREL_ARMHF_APT:-$root/build/apt-armhf}
triplet=arm-linux-gnueabihf
cross_runtime=/usr/$triplet/lib

# The -dev packages the cross build links, with everything they need at link
# and run time (worked out below from their dependencies).
wanted=(libjsoncpp-dev libgtest-dev libgmock-dev libreadline-dev libevent-dev libmnl-dev)

# Provided by the cross toolchain's host packages, so never taken from the
# armhf index: the C library, the compiler's runtime and their headers.
toolchain=(libc6 libc6-dev libc-dev libgcc-s1 libgcc-12-dev gcc-12-base libstdc++6
           libstdc++-12-dev libcrypt1 libcrypt-dev linux-libc-dev)

request="request: ${wanted[*]}"
if [ "${1:-}" = "--print-request" ]; then
  echo "$request"
  exit 0
fi
if [ -f "$sysroot/.manifest" ] && [ "$(head -n1 "$sysroot/.manifest")" = "$request" ]; then
  exit 0
fi

fail() { echo "armhf sysroot: $*" >&2; exit 1; }


mkdir -p "$aptdir/lists/partial" "$aptdir/cache/archives/partial"
: >"$aptdir/status"
apt_opts=(-o "APT::Architecture=armhf" -o "APT::Architectures=armhf"
          -o "Dir::State::Lists=$aptdir/lists" -o "Dir::State::status=$aptdir/status"
          -o "Dir::Cache=$aptdir/cache")
if [ "$(id -u)" -eq 0 ]; then
  # Files fetched into a folder of ours are written as root, not as _apt.
  apt_opts+=(-o "APT::Sandbox::User=root")
fi

# Reads the armhf indexes. An index that fails (a mirror caught mid-sync says
# "File has unexpected size") is tried once more; if it still fails the run
# goes on with the indexes that did load, and says which one did not. Whether
# that matters is decided per package below.
update_log=$aptdir/update.log
fetch_failures() { grep -oE '^[EW]: Failed to fetch [^ ]+' "$update_log" | sed -E 's/^[EW]: Failed to fetch //' | sort -u | tr '\n' ' ' || true; }
apt-get "${apt_opts[@]}" update >"$update_log" 2>&1 || true
if [ -n "$(fetch_failures)" ]; then
  sleep 5
  apt-get "${apt_opts[@]}" update >"$update_log" 2>&1 || true
  failed=$(fetch_failures)
  [ -z "$failed" ] || echo "armhf sysroot: warning: index not fetched, going on without it: $failed" >&2
fi

# Prints "Package Version Architecture Multi-Arch" and the dependency list of
# the index's candidate, or nothing when the index has no such package.
describe() {
  { apt-cache "${apt_opts[@]}" show --no-all-versions "$1" 2>/dev/null || true; } | awk '
    /^Package: /     { p = $2 }
    /^Version: /     { v = $2 }
    /^Architecture: / { a = $2 }
    /^Multi-Arch: /  { m = $2 }
    /^(Pre-)?Depends: / { sub(/^[^:]*: /, ""); d = d (d == "" ? "" : ", ") $0 }
    END { if (p != "") { print p, v, a, (m == "" ? "no" : m); print d } }'
}

# Walks the dependencies of the wanted packages. Architecture-independent
# and Multi-Arch: foreign packages (tools, sources) are served by the host
# and left out; the toolchain's are left out; of alternatives the first one
# the index has is taken.
declare -A seen version
queue=("${wanted[@]}")
missing=()
for t in "${toolchain[@]}"; do seen[$t]=1; done
while [ ${#queue[@]} -gt 0 ]; do
  name=${queue[0]}
  queue=("${queue[@]:1}")
  [ -z "${seen[$name]:-}" ] || continue
  seen[$name]=1
  info=$(describe "$name")
  if [ -z "$info" ]; then
    missing+=("$name")
    continue
  fi
  read -r _ ver arch multiarch <<<"$(head -n1 <<<"$info")"
  [ "$arch" = "all" ] && continue
  [ "$multiarch" = "foreign" ] && continue
  version[$name]=$ver
  deps=$(tail -n +2 <<<"$info")
  [ -n "$deps" ] || continue
  IFS=',' read -ra groups <<<"$deps"
  for group in "${groups[@]}"; do
    choice=""
    IFS='|' read -ra alternatives <<<"$group"
    for alternative in "${alternatives[@]}"; do
      candidate=$(awk '{print $1}' <<<"$alternative" | sed 's/:any$//')
      if [ -n "${seen[$candidate]:-}" ] || [ -n "$(describe "$candidate")" ]; then
        choice=$candidate
        break
      fi
    done
    if [ -z "$choice" ]; then
      missing+=("$(awk '{print $1}' <<<"${alternatives[0]}")")
    else
      queue+=("$choice")
    fi
  done
done
if [ ${#missing[@]} -gt 0 ]; then
  fail "not in the armhf package index: ${missing[*]} (index errors, if any: $update_log)"
fi

[ -d "$cross_runtime" ] || fail "the cross toolchain's runtime $cross_runtime is missing (scripts/deps.sh installs it)"

# Fetches and unpacks into a fresh folder, then puts it in place, so that a
# run cut short never leaves a sysroot that looks complete.
mkdir -p "$(dirname "$sysroot")"
work=$(mktemp -d "$(dirname "$sysroot")/.sysroot-armhf.XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/debs" "$work/root"
chmod 755 "$work/debs"
pins=()
for name in "${!version[@]}"; do pins+=("$name=${version[$name]}"); done
if ! (cd "$work/debs" && apt-get "${apt_opts[@]}" download -q "${pins[@]}" >"$work/download.log" 2>&1); then
  failed=$(sed -nE 's#^E: Failed to fetch [^ ]*/([^/_ ]+)_[^ ]*\.deb +(.*)#\1 (\2)#p' "$work/download.log" | sort -u | tr '\n' ' ')
  fail "could not download: ${failed:-$(grep -m1 -E '^E:' "$work/download.log" || echo "see apt-get download")}"
fi
for deb in "$work"/debs/*.deb; do
  dpkg-deb -x "$deb" "$work/root"
done

# Links that point to absolute paths point into the sysroot instead.
while IFS= read -r -d '' link; do
  target=$(readlink "$link")
  case $target in
    /*) ln -sfn "$(realpath -m --relative-to="$(dirname "$link")" "$work/root$target")" "$link" ;;
  esac
done < <(find "$work/root" -type l -print0)

# The cross toolchain's runtime, where the armhf loader looks for it.
mkdir -p "$work/root/lib"
for file in "$cross_runtime"/*; do
  case ${file##*/} in
    *.so|*.so.*|ld-linux-armhf.so.3) ln -sfn "$file" "$work/root/lib/${file##*/}" ;;
  esac
done

{
  echo "$request"
  for name in $(printf '%s\n' "${!version[@]}" | sort); do
    echo "$name ${version[$name]}"
  done
} >"$work/root/.manifest"

rm -rf "$sysroot"
mv "$work/root" "$sysroot"
echo "armhf sysroot: unpacked ${#version[@]} packages into $sysroot" >&2
