#!/usr/bin/env bash
# Installs the Debian packages the build needs when they are missing.
# As root it runs apt-get; otherwise it prints the apt-get line and fails.
set -euo pipefail

packages=(cmake ninja-build g++ pkg-config libjsoncpp-dev libgtest-dev libgmock-dev
          libbenchmark-dev libevent-dev libreadline-dev)
if [ "${ZAVREL_CROSS:-}" = "armhf" ]; then
  packages+=(g++-arm-linux-gnueabihf qemu-user libc6-dev-armhf-cross
             libjsoncpp-dev:armhf libgtest-dev:armhf libgmock-dev:armhf
             libevent-dev:armhf libreadline-dev:armhf)
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
  echo "Missing packages. Install them with:" >&2
  echo "  sudo apt-get update && sudo apt-get install -y ${missing[*]}" >&2
  exit 1
fi
echo "Installing: ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
