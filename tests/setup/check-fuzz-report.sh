#!/usr/bin/env bash
# Checks the lines scripts/fuzz.sh prints for each harness
# (scripts/fuzz-report.sh) on made-up libFuzzer logs: a clean run, a clean
# run whose log has no figures, and a finding with its reproducer.
set -euo pipefail
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
source "$source_dir/scripts/fuzz-report.sh"
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
mkdir -p "$out/logs" "$out/findings/options_fuzzer" "$out/findings/stack_fuzzer"

expect() {
  local what=$1 got=$2 want=$3
  [ "$got" = "$want" ] || { printf '%s: unexpected output:\n%s\nexpected:\n%s\n' "$what" "$got" "$want"; exit 1; }
}

# A clean run: the last coverage and the executed units of the final stats.
cat >"$out/logs/options_fuzzer.log" <<'LOG'
#2	INITED cov: 12 ft: 13 corp: 1/1b exec/s: 0 rss: 30Mb
#1024	pulse  cov: 340 ft: 900 corp: 80/2Kb lim: 12 exec/s: 512 rss: 40Mb
Done 1036918 runs in 61 second(s)
stat::number_of_executed_units: 1036918
stat::average_exec_per_sec:     16998
LOG
got=$(fuzz_report options_fuzzer 0 "$out" 2>&1) || { echo "clean run: non-zero status"; exit 1; }
expect "clean run" "$got" "fuzz: options_fuzzer: 1036918 executions, cov: 340, no finding"

# A clean run whose log carries no figures (a harness stopped early).
printf 'INFO: Seed: 1\n' >"$out/logs/reload_fuzzer.log"
got=$(fuzz_report reload_fuzzer 0 "$out" 2>&1) || { echo "no figures: non-zero status"; exit 1; }
expect "no figures" "$got" "fuzz: reload_fuzzer: ? executions, cov: ?, no finding"

# A finding: the end of the log, then the reproducer and how to replay it.
printf '#5\tNEW    cov: 7 ft: 7\n==1==ERROR: AddressSanitizer: heap-use-after-free\n' \
  >"$out/logs/stack_fuzzer.log"
touch "$out/findings/stack_fuzzer/crash-0a1b"
if got=$(fuzz_report stack_fuzzer 1 "$out" 2>&1); then
  echo "finding: zero status"; exit 1
fi
expect "finding" "$got" "fuzz: stack_fuzzer: FINDING (exit 1); the end of its log ($out/logs/stack_fuzzer.log):
#5	NEW    cov: 7 ft: 7
==1==ERROR: AddressSanitizer: heap-use-after-free
fuzz: stack_fuzzer: reproducer $out/findings/stack_fuzzer/crash-0a1b; replay: $out/fuzz/stack_fuzzer $out/findings/stack_fuzzer/crash-0a1b"
echo "ok: fuzz report"
