#!/usr/bin/env bash
# Installs the Debian packages the build needs when they are missing.
# As root it runs apt-get; otherwise it prints the commands and fails.
# With ZAVREL_CROSS=armhf it also installs the armhf cross compiler, qemu and
# the armhf libraries, adding the armhf architecture to dpkg when needed.
# Debian's libevent-dev cannot be installed for two architectures at once, so
# its armhf package (with the library it links) is unpacked into
# $ZAVREL_ARMHF_EXTRA (default /opt/zavrel-armhf) instead; the armhf toolchain
# file looks there.
set -euo pipefail

armhf_extra=${ZAVREL_ARMHF_EXTRA:-/opt/zavrel-armhf}
armhf_unpacked=(libevent-dev libevent-2.1-7)

packages=(cmake ninja-build g++ pkg-config libjsoncpp-dev libgtest-dev libgmock-dev
          libbenchmark-dev libevent-dev libreadline-dev)
add_arch=0
if [ "${ZAVREL_CROSS:-}" = "armhf" ]; then
  packages+=(g++-arm-linux-gnueabihf qemu-user libc6-dev-armhf-cross
             libjsoncpp-dev:armhf libgtest-dev:armhf libgmock-dev:armhf
             libreadline-dev:armhf)
  if ! dpkg --print-foreign-architectures | grep -qx armhf; then
    add_arch=1
  fi
fi
need_unpack=0
if [ "${ZAVREL_CROSS:-}" = "armhf" ] && [ ! -f "$armhf_extra/.complete" ]; then
  need_unpack=1
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && [ $add_arch -eq 0 ] && [ $need_unpack -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
  echo "Missing packages. Install them with:" >&2
  if [ $add_arch -eq 1 ]; then
    echo "  sudo dpkg --add-architecture armhf" >&2
  fi
  echo "  sudo apt-get update && sudo apt-get install -y ${missing[*]}" >&2
  if [ $need_unpack -eq 1 ]; then
    echo "  and, as root, ZAVREL_CROSS=armhf $0 (it unpacks ${armhf_unpacked[*]} for armhf" \
         "into $armhf_extra)" >&2
  fi
  exit 1
fi

export DEBIAN_FRONTEND=noninteractive
if [ $add_arch -eq 1 ]; then
  echo "Adding the armhf architecture" >&2
  dpkg --add-architecture armhf
fi
# A mirror caught in the middle of a sync fails one index or another; what
# was fetched is still usable, and apt-get install below says if it is not.
if ! apt-get update -qq; then
  echo "warning: some package indexes could not be fetched; going on without them" >&2
fi

host_arch=$(dpkg --print-architecture)

# Versions of a package in the indexes, newest first.
versions() { apt-cache madison "$1" 2>/dev/null | awk -F'|' '{gsub(/ /, "", $2); print $2}'; }

# Multi-arch libraries must have the same version for both architectures.
# When the armhf indexes lag behind the host's (a mirror mid-sync), apt cannot
# install an armhf library next to the host's newer one. For every such
# library that apt names, pin both architectures to the newest version that
# both have. Prints the pins, one per line.
armhf_pins() {
  local pins=() out name host_version common round added
  for round in 1 2 3 4 5 6; do
    if out=$(apt-get install -s --no-install-recommends --allow-downgrades \
               "${missing[@]}" "${pins[@]}" 2>&1); then
      break
    fi
    added=0
    for name in $(grep -oE '[a-z0-9][a-z0-9.+-]*:armhf' <<<"$out" | sed 's/:armhf$//' | sort -u); do
      host_version=$(dpkg-query -W -f='${Version}' "$name:$host_arch" 2>/dev/null || true)
      [ -n "$host_version" ] || continue
      versions "$name:armhf" | grep -qxF "$host_version" && continue
      common=$(grep -xF -f <(versions "$name:$host_arch") <(versions "$name:armhf") | head -n1 || true)
      [ -n "$common" ] || continue
      case " ${pins[*]} " in *" $name:armhf=$common "*) continue ;; esac
      pins+=("$name:$host_arch=$common" "$name:armhf=$common")
      added=1
    done
    [ $added -eq 1 ] || break
  done
  printf '%s\n' "${pins[@]}"
}

# Unpacks the armhf packages that cannot sit next to their host twins into
# $armhf_extra, and points their pkg-config files there.
unpack_armhf() {
  local tmp deb pc
  tmp=$(mktemp -d)
  (cd "$tmp" && chmod 755 . && apt-get download -qq -o APT::Sandbox::User=root "${armhf_unpacked[@]/%/:armhf}" >/dev/null)
  rm -rf "$armhf_extra"
  mkdir -p "$armhf_extra"
  for deb in "$tmp"/*.deb; do
    dpkg-deb -x "$deb" "$armhf_extra"
  done
  rm -rf "$tmp"
  for pc in "$armhf_extra"/usr/lib/arm-linux-gnueabihf/pkgconfig/*.pc; do
    sed -i "s#^prefix=/usr\$#prefix=$armhf_extra/usr#" "$pc"
  done
  touch "$armhf_extra/.complete"
  echo "Unpacked ${armhf_unpacked[*]} (armhf) into $armhf_extra" >&2
}

if [ ${#missing[@]} -eq 0 ]; then
  [ $need_unpack -eq 1 ] && unpack_armhf
  exit 0
fi
echo "Installing: ${missing[*]}" >&2
if ! apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null; then
  [ "${ZAVREL_CROSS:-}" = "armhf" ] || exit 1
  mapfile -t pins < <(armhf_pins | grep . || true)
  [ ${#pins[@]} -gt 0 ] || exit 1
  echo "Aligning host and armhf library versions: ${pins[*]}" >&2
  apt-get install -y -qq --no-install-recommends --no-remove --allow-downgrades \
    "${missing[@]}" "${pins[@]}" >/dev/null
fi
[ $need_unpack -eq 1 ] && unpack_armhf
exit 0
