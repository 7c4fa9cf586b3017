#!/usr/bin/env bash
# Runs one golden scenario through zavrel-router and compares its whole
# output with the expected file.
#
#   run-scenario.sh <zavrel-router> <name.script> [<name.expected>] [--args "<options>"]
#
# The application runs in the script's directory with
#   <options> --script <name.script>
# and standard input from <name.stdin> when that file exists (else from
# /dev/null). <options> come from --args, else from a line "# args: ..." at
# the top of the script, else "--virtual-time --echo". Standard output and
# standard error are captured together (the application flushes its output
# before each line it writes to standard error, so the order is the order in
# which they were made), followed by a last line "[exit <status>]".
#
# Output that depends on real time (scheduler run counts, ages) can be masked
# with lines "# sed: <sed -E expression>" in the script, applied in order to
# the captured output before the comparison. The number of the stack's
# descriptor depends on the descriptors the environment leaves open, so it is
# always masked.
#
# ZAVREL_APP_LAUNCHER, when set, is the program that runs the application
# (for a cross build, the emulator).
#
# With ZAVREL_UPDATE_GOLDEN=1 in the environment the expected file is
# (re)written from the actual output instead of compared.
set -uo pipefail

if [ $# -lt 2 ]; then
  echo "usage: $0 <zavrel-router> <name.script> [<name.expected>] [--args \"<options>\"]" >&2
  exit 2
fi
app=$(readlink -f "$1")
script=$(readlink -f "$2")
shift 2
expected="${script%.script}.expected"
if [ $# -gt 0 ] && [ "$1" != "--args" ]; then
  expected=$(readlink -f "$1")
  shift
fi
args=""
have_args=0
if [ $# -ge 2 ] && [ "$1" = "--args" ]; then
  args="$2"
  have_args=1
fi

dir=$(dirname "$script")
name=$(basename "$script")
stdin_file="${script%.script}.stdin"
[ -f "$stdin_file" ] || stdin_file=/dev/null

if [ $have_args -eq 0 ]; then
  line=$(grep -m1 '^# args:' "$script" || true)
  if [ -n "$line" ]; then
    args="${line#\# args:}"
  else
    args="--virtual-time --echo"
  fi
fi

actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
(
  cd "$dir" || exit 99
  eval "set -- $args"
  ${ZAVREL_APP_LAUNCHER:+"$ZAVREL_APP_LAUNCHER"} "$app" "$@" --script "$name" <"$stdin_file" 2>&1
  echo "[exit $?]"
) >"$actual"

sed -E -i -e 's/(Management channel: descriptor )[0-9]+/\1<fd>/' "$actual"
while IFS= read -r expression; do
  expression="${expression#\# sed: }"
  sed -E -i -e "$expression" "$actual"
done < <(grep '^# sed: ' "$script" || true)

if [ "${ZAVREL_UPDATE_GOLDEN:-0}" = "1" ]; then
  cp "$actual" "$expected"
  echo "updated $expected"
  exit 0
fi
if [ ! -f "$expected" ]; then
  echo "missing expected file $expected; actual output:" >&2
  cat "$actual" >&2
  exit 1
fi
if ! diff -u "$expected" "$actual"; then
  echo "output of $name differs from $(basename "$expected") (regenerate with ZAVREL_UPDATE_GOLDEN=1 after review)" >&2
  exit 1
fi
exit 0
