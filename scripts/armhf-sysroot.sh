#!/usr/bin/env bash
# Builds the project's armhf sysroot: everything the 32-bit ARM cross build
# needs, unpacked from Debian's packages into one folder of the project.
#
#   <sysroot>/          the target's root: the armhf libraries the cross
#                       build links and its tests load (armhf packages), and
#                       in /lib links to the cross C and C++ runtime
#   <sysroot>/host/     the build machine's side: the cross compiler and
#                       binutils with their armhf C/C++ runtime (Debian's
#                       *-arm-linux-gnueabihf and *-armhf-cross packages) and
#                       a static qemu-arm (qemu-user-static); host/bin holds
#                       the compiler drivers the toolchain file names
#
#   scripts/armhf-sysroot.sh             make the sysroot, or do nothing when
#                                        the one in place is complete
#   scripts/armhf-sysroot.sh --print-request
#                                        print the first line of the
#                                        manifest this script would write
#
# Nothing is installed through dpkg and nothing of the host's apt or dpkg
# state changes: each architecture's package index is read by apt with a
# private state and cache folder, the .deb files are fetched with
# `apt-get download` and unpacked with `dpkg-deb -x`. The host's own
# packages are never tied to these versions, never upgraded, downgraded or
# removed. The unpacked compiler uses the host libraries that the native
# compiler and binutils need as well (scripts/deps.sh installs those).
#
# The sysroot records what it was made from in .manifest: the request (the
# packages asked for and the sysroot's place), then each unpacked package
# and its version. A rerun with the same request fetches nothing. A package
# that cannot be had (a missing index, a mirror in the middle of a sync)
# stops the run with one line naming it. The new compiler and qemu are tried
# on a small program before the sysroot is put in place.
#
# Environment:
#   ZAVREL_ARMHF_SYSROOT   where the sysroot goes (default build/sysroot-armhf)
#   ZAVREL_ARMHF_APT       apt's private state for the indexes
#                          (default build/apt-armhf)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
sysroot=${ZAVREL_ARMHF_SYSROOT:-$root/build/sysroot-armhf}
aptdir=${ZAVREL_ARMHF_APT:-$root/build/apt-armhf}
triplet=arm-linux-gnueabihf
host_arch=$(dpkg --print-architecture)

# The -dev packages the cross build links, with everything they need at link
# and run time (worked out below from their dependencies).
wanted=(libjsoncpp-dev libgtest-dev libgmock-dev libreadline-dev libevent-dev libmnl-dev libyajl-dev)
# Provided by the cross toolchain, so never taken from the armhf index: the C
# library, the compiler's runtime and their headers.
toolchain_provided=(libc6 libc6-dev libc-dev libgcc-s1 libgcc-12-dev gcc-12-base libstdc++6
                    libstdc++-12-dev libcrypt1 libcrypt-dev linux-libc-dev)
# The cross compiler and the emulator, from the host's architecture.
tools=(g++-12-$triplet qemu-user-static)

request="request: ${wanted[*]}; host: ${tools[*]}; at $sysroot"
if [ "${1:-}" = "--print-request" ]; then
  echo "$request"
  exit 0
fi
if [ -f "$sysroot/.manifest" ] && [ "$(head -n1 "$sysroot/.manifest")" = "$request" ]; then
  exit 0
fi

fail() { echo "armhf sysroot: $*" >&2; exit 1; }

mkdir -p "$(dirname "$sysroot")"
work=$(mktemp -d "$(dirname "$sysroot")/.sysroot-armhf.XXXXXX")
trap 'rm -rf "$work"' EXIT

# ---- apt, one private state per architecture

# apt_opts <arch>: fills the array opts with apt's options for that index.
apt_options() {
  local arch=$1 dir=$aptdir/$1
  mkdir -p "$dir/lists/partial" "$dir/cache/archives/partial"
  [ -f "$dir/status" ] || : >"$dir/status"
  opts=(-o "APT::Architecture=$arch" -o "APT::Architectures=$arch"
        -o "Dir::State::Lists=$dir/lists" -o "Dir::State::status=$dir/status"
        -o "Dir::Cache=$dir/cache")
  if [ "$(id -u)" -eq 0 ]; then
    # Files fetched into a folder of ours are written as root, not as _apt.
    opts+=(-o "APT::Sandbox::User=root")
  fi
}

# Reads an architecture's indexes. An index that fails (a mirror caught
# mid-sync says "File has unexpected size") is tried once more; if it still
# fails the run goes on with the indexes that did load, and says which one
# did not. Whether that matters is decided per package.
update_index() {
  local arch=$1 log=$aptdir/$1/update.log failed
  local -a opts
  apt_options "$arch"
  fetch_failures() { grep -oE '^[EW]: Failed to fetch [^ ]+' "$log" | sed -E 's/^[EW]: Failed to fetch //' | sort -u | tr '\n' ' ' || true; }
  apt-get "${opts[@]}" update >"$log" 2>&1 || true
  if [ -n "$(fetch_failures)" ]; then
    sleep 5
    apt-get "${opts[@]}" update >"$log" 2>&1 || true
    failed=$(fetch_failures)
    [ -z "$failed" ] || echo "armhf sysroot: warning: $arch index not fetched, going on without it: $failed" >&2
  fi
}

# describe <arch> <package>: "Package Version Architecture Multi-Arch" and
# the dependency list of the index's candidate, or nothing when the index
# has no such package.
describe() {
  local -a opts
  apt_options "$1"
  { apt-cache "${opts[@]}" show --no-all-versions "$2" 2>/dev/null || true; } | awk '
    /^Package: /     { p = $2 }
    /^Version: /     { v = $2 }
    /^Architecture: / { a = $2 }
    /^Multi-Arch: /  { m = $2 }
    /^(Pre-)?Depends: / { sub(/^[^:]*: /, ""); d = d (d == "" ? "" : ", ") $0 }
    END { if (p != "") { print p, v, a, (m == "" ? "no" : m); print d } }'
}

# ---- which packages

declare -A version    # package -> version, for the manifest
declare -A source     # package -> the architecture whose index serves it
missing=()

# walk <arch> <mode> <package...>: adds the packages and what they depend on
# to version/source. Of alternatives the first one the index has is taken.
#   target: armhf libraries; architecture-independent and Multi-Arch: foreign
#           packages (tools, sources) and the toolchain's own are left out
#   tools:  the cross toolchain; only its own packages (named for the
#           target) are followed, the host libraries they need are the
#           native compiler's
walk() {
  local arch=$1 mode=$2 name info ver parch multiarch deps group alternative candidate choice
  shift 2
  local -a queue=("$@") groups alternatives
  local -A seen=()
  if [ "$mode" = target ]; then
    for name in "${toolchain_provided[@]}"; do seen[$name]=1; done
  fi
  while [ ${#queue[@]} -gt 0 ]; do
    name=${queue[0]}
    queue=("${queue[@]:1}")
    [ -z "${seen[$name]:-}" ] || continue
    seen[$name]=1
    info=$(describe "$arch" "$name")
    if [ -z "$info" ]; then
      missing+=("$name ($arch)")
      continue
    fi
    read -r _ ver parch multiarch <<<"$(head -n1 <<<"$info")"
    if [ "$mode" = target ] && { [ "$parch" = all ] || [ "$multiarch" = foreign ]; }; then
      continue
    fi
    version[$name]=$ver
    source[$name]=$arch
    deps=$(tail -n +2 <<<"$info")
    [ -n "$deps" ] || continue
    IFS=',' read -ra groups <<<"$deps"
    for group in "${groups[@]}"; do
      choice=""
      IFS='|' read -ra alternatives <<<"$group"
      for alternative in "${alternatives[@]}"; do
        candidate=$(awk '{print $1}' <<<"$alternative" | sed 's/:any$//')
        if [ "$mode" = tools ] && [[ ! $candidate =~ (-$triplet|-armhf-cross)(-base)?$ ]]; then
          candidate=""  # a host library: the native compiler's
          choice=-
          break
        fi
        if [ -n "${seen[$candidate]:-}" ] || [ -n "$(describe "$arch" "$candidate")" ]; then
          choice=$candidate
          break
        fi
      done
      if [ -z "$choice" ]; then
        missing+=("$(awk '{print $1}' <<<"${alternatives[0]}") ($arch)")
      elif [ "$choice" != - ]; then
        queue+=("$choice")
      fi
    done
  done
}

update_index armhf
update_index "$host_arch"
walk armhf target "${wanted[@]}"
walk "$host_arch" tools "${tools[@]}"
if [ ${#missing[@]} -gt 0 ]; then
  fail "not in the package index: ${missing[*]} (index errors, if any: $aptdir/*/update.log)"
fi

# ---- fetch and unpack, into a fresh folder put in place at the end, so
# that a run cut short never leaves a sysroot that looks complete

target=$work/root
host=$target/host
mkdir -p "$target" "$host"
for arch in armhf "$host_arch"; do
  pins=()
  for name in "${!version[@]}"; do
    [ "${source[$name]}" = "$arch" ] && pins+=("$name=${version[$name]}")
  done
  mkdir -p "$work/debs-$arch"
  chmod 755 "$work/debs-$arch"
  opts=()
  apt_options "$arch"
  if ! (cd "$work/debs-$arch" && apt-get "${opts[@]}" download -q "${pins[@]}" >"$work/download.log" 2>&1); then
    failed=$(sed -nE 's#^E: Failed to fetch [^ ]*/([^/_ ]+)_[^ ]*\.deb +(.*)#\1 (\2)#p' "$work/download.log" | sort -u | tr '\n' ' ')
    fail "could not download: ${failed:-$(grep -m1 -E '^E:' "$work/download.log" || echo "see apt-get download")}"
  fi
  into=$target
  [ "$arch" = armhf ] || into=$host
  for deb in "$work/debs-$arch"/*.deb; do
    dpkg-deb -x "$deb" "$into"
  done
done

# Links that point to absolute paths point into their root instead.
relink() {
  local base=$1 link destination
  while IFS= read -r -d '' link; do
    destination=$(readlink "$link")
    case $destination in
      /*) ln -sfn "$(realpath -m --relative-to="$(dirname "$link")" "$base$destination")" "$link" ;;
    esac
  done < <(find "$base" -path "$base/host" -prune -o -type l -print0)
}
relink "$target"
relink "$host"

# The cross runtime, under the place it will have once moved into place.
final_host=$sysroot/host
runtime=usr/$triplet/lib
# The C library's linker scripts name their libraries by absolute path.
while IFS= read -r -d '' script; do
  if head -c 200 "$script" | grep -q "GNU ld script"; then
    sed -i "s#/usr/$triplet/#$final_host/usr/$triplet/#g" "$script"
  fi
done < <(find "$host/$runtime" -maxdepth 1 -name '*.so' -type f -print0)
# The target's loader and runtime, where the armhf loader looks for them.
mkdir -p "$target/lib"
for file in "$host/$runtime"/*; do
  case ${file##*/} in
    *.so|*.so.*|ld-linux-armhf.so.3) ln -sfn "$final_host/$runtime/${file##*/}" "$target/lib/${file##*/}" ;;
  esac
done
# Compiler drivers that find binutils' private libraries (libbfd for the
# target) in the unpacked tree.
bfd=$(find "$host/usr/lib" -name 'libbfd-*-armhf.so' -printf '%h\n' | head -n1)
[ -n "$bfd" ] || fail "the cross binutils' libbfd is not in the unpacked packages"
bfd=$final_host${bfd#"$host"}
mkdir -p "$host/bin"
for driver in gcc g++; do
  cat >"$host/bin/$triplet-$driver" <<EOF
#!/bin/sh
LD_LIBRARY_PATH="$bfd\${LD_LIBRARY_PATH:+:\$LD_LIBRARY_PATH}" exec "$final_host/usr/bin/$triplet-$driver-12" "\$@"
EOF
  chmod 755 "$host/bin/$triplet-$driver"
done

{
  echo "$request"
  for name in $(printf '%s\n' "${!version[@]}" | sort); do
    echo "$name ${version[$name]} ${source[$name]}"
  done
} >"$target/.manifest.new"

rm -rf "$sysroot"
mv "$target" "$sysroot"

# The compiler and qemu, tried before the manifest says the sysroot is done.
probe=$work/probe
printf '#include <cstdio>\nint main() { std::printf("%%u\\n", unsigned(sizeof(long))); }\n' >"$probe.cpp"
if ! "$sysroot/host/bin/$triplet-g++" "$probe.cpp" -o "$probe" 2>"$work/probe.log" ||
   [ "$("$sysroot/host/usr/bin/qemu-arm-static" -L "$sysroot" "$probe" 2>>"$work/probe.log")" != 4 ]; then
  fail "the unpacked cross compiler or qemu does not work: $(head -n3 "$work/probe.log" | tr '\n' ' ')"
fi
mv "$sysroot/.manifest.new" "$sysroot/.manifest"
echo "armhf sysroot: unpacked ${#version[@]} packages into $sysroot" >&2
