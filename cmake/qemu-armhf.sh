#!/bin/sh
# Runs an armhf program under qemu user emulation:
#   qemu-armhf.sh <program> [arguments...]
#
# The emulator is the static qemu-arm of the project's armhf sysroot
# (ZAVREL_ARMHF_SYSROOT, default build/sysroot-armhf of this source tree;
# made by scripts/armhf-sysroot.sh); it loads the program's dynamic loader
# and libraries from that sysroot, which holds the unpacked armhf libraries
# and links to the cross C and C++ runtime.
#
# The program is started with this script as its argv[0] and its own path in
# ZAVREL_QEMU_PROGRAM. A program that starts itself again through argv[0]
# (GoogleTest's "threadsafe" death tests do) thereby comes back here with
# only its arguments, and runs under qemu again: without a binfmt_misc entry
# for ARM, the build machine's kernel cannot start an ARM program by itself.
set -e
self=$(readlink -f "$0")
sysroot=${ZAVREL_ARMHF_SYSROOT:-$(dirname "$self")/../build/sysroot-armhf}
if [ -n "${ZAVREL_QEMU_PROGRAM:-}" ]; then
  program=$ZAVREL_QEMU_PROGRAM
else
  [ $# -ge 1 ] || { echo "usage: $0 <program> [arguments...]" >&2; exit 2; }
  program=$(readlink -f "$1")
  shift
  export ZAVREL_QEMU_PROGRAM="$program"
fi
exec "$sysroot/host/usr/bin/qemu-arm-static" -L "$sysroot" -0 "$self" "$program" "$@"
