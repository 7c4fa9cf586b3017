#!/usr/bin/env bash
# Checks scripts/apt-plan.sh, which scripts/deps.sh asks before it installs
# anything: of a plan, removals and downgrades of the host's packages are
# reported, new packages and upgrades are not.
set -euo pipefail
script=$(cd "$(dirname "$0")/../.." && pwd)/scripts/apt-plan.sh
plan='NOTE: This is only a simulation!
Inst libfoo-dev (1.2-1 Debian:12/stable [amd64])
Inst libbar1 [2.0-1] (2.0-1+deb12u1 Debian-Security:12/stable-security [amd64])
Inst libbaz1 [3.1-2] (3.0-9 Debian:12/stable [amd64])
Remv libqux-dev [4.0-1]
Conf libfoo-dev (1.2-1 Debian:12/stable [amd64])'
expected='downgrade libbaz1 3.1-2 -> 3.0-9
remove libqux-dev'
got=$("$script" <<<"$plan")
if [ "$got" != "$expected" ]; then
  printf 'expected:\n%s\ngot:\n%s\n' "$expected" "$got"
  exit 1
fi
got=$("$script" <<<'Inst libfoo-dev (1.2-1 Debian:12/stable [amd64])')
[ -z "$got" ] || { echo "a plan that only adds reported: $got"; exit 1; }
echo "ok"
