#!/usr/bin/env bash
# Checks scripts/check-format.sh on a scratch repository: a file that
# differs from what clang-format makes of it fails the check, named; --fix
# rewrites it, and the check then passes.
set -euo pipefail
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir -p "$work/scripts"
cp "$source_dir/.clang-format" "$work/"
cp "$source_dir/scripts/check-format.sh" "$work/scripts/"
printf 'int main() {\n    return 0;\n}\n' >"$work/tidy.cpp"
printf 'int  f( int x ){return x;}\n' >"$work/untidy.cpp"
git -C "$work" init -q
git -C "$work" add .

if out=$("$work/scripts/check-format.sh" 2>&1); then
  echo "expected a failure, got: $out"; exit 1
fi
expected=$'format: 1 file(s) differ from clang-format; run scripts/check-format.sh --fix:\n  untidy.cpp'
[ "$out" = "$expected" ] || { echo "unexpected output: $out"; exit 1; }

"$work/scripts/check-format.sh" --fix
out=$("$work/scripts/check-format.sh" 2>&1) || { echo "still differs after --fix: $out"; exit 1; }
[ "$out" = "format: 2 files as clang-format makes them" ] || { echo "unexpected output: $out"; exit 1; }
echo "ok: format"
