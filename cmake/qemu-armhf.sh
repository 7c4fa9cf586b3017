#!/bin/sh
# Runs an armhf program under qemu user emulation:
#   qemu-armhf.sh <program> [arguments...]
#
# The program is started with this script as its argv[0] and its own path in
# ZAVREL_QEMU_PROGRAM. A program that starts itself again through argv[0]
# (GoogleTest's "threadsafe" death tests do) thereby comes back here with
# only its arguments, and runs under qemu again: without a binfmt_misc entry
# for ARM, the build machine's kernel cannot start an ARM program by itself.
#
# QEMU_LD_PREFIX (default /usr/arm-linux-gnueabihf) is where qemu looks first
# for the dynamic loader and libraries.
set -e
self=$(readlink -f "$0")
prefix=${QEMU_LD_PREFIX:-/usr/arm-linux-gnueabihf}
if [ -n "${ZAVREL_QEMU_PROGRAM:-}" ]; then
  program=$ZAVREL_QEMU_PROGRAM
else
  [ $# -ge 1 ] || { echo "usage: $0 <program> [arguments...]" >&2; exit 2; }
  program=$(readlink -f "$1")
  shift
  export ZAVREL_QEMU_PROGRAM="$program"
fi
exec qemu-arm -L "$prefix" -0 "$self" "$program" "$@"
