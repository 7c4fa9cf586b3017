#!/usr/bin/env bash
# Builds the libFuzzer harnesses (CMake preset "fuzz": clang, AddressSanitizer,
# UndefinedBehaviorSanitizer, LeakSanitizer) and runs each for a bounded
# time, two at a time, growing a working corpus under build/fuzz/corpus/
# from the seeds in fuzz/corpus/<harness>/ (only read). Exits non-zero when
# a harness finds something, printing the reproducer's path and the command
# that replays it.
#
#   ZAVREL_FUZZ_SECONDS=<s>   seconds per harness (default 60)
#   ZAVREL_FUZZ_ONLY=<name>   run only this harness
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/fuzz-report.sh

seconds=${ZAVREL_FUZZ_SECONDS:-60}
harnesses=(options_fuzzer reload_fuzzer console_fuzzer stack_fuzzer)
if [ -n "${ZAVREL_FUZZ_ONLY:-}" ]; then
  harnesses=("$ZAVREL_FUZZ_ONLY")
fi

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" --target "${harnesses[@]}"

out=build/fuzz
# run_one <harness>: one bounded run; its log in $out/logs/<harness>.log.
run_one() {
  local name=$1 seeds=fuzz/corpus/${1%_fuzzer}
  local corpus=$out/corpus/$name findings=$out/findings/$name
  mkdir -p "$corpus" "$findings" "$out/logs"
  local args=(-max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$findings/"
              -max_len=4096 -timeout=30 -rss_limit_mb=2048)
  # Both option harnesses read documents: one dictionary serves them.
  local dict=fuzz/${1%_fuzzer}.dict
  [ "$name" = reload_fuzzer ] && dict=fuzz/options.dict
  [ -f "$dict" ] && args+=(-dict="$dict")
  ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
    UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    "$out/fuzz/$name" "${args[@]}" "$corpus" "$seeds" >"$out/logs/$name.log" 2>&1
}

status=0
pids=()
names=()
# The run's lines for one harness (scripts/fuzz-report.sh); a finding fails
# the whole run.
report() {
  fuzz_report "$1" "$2" "$out" || status=1
}
for name in "${harnesses[@]}"; do
  run_one "$name" &
  pids+=($!)
  names+=("$name")
  if [ ${#pids[@]} -ge "$(nproc)" ]; then
    rc=0
    wait "${pids[0]}" || rc=$?
    report "${names[0]}" "$rc"
    pids=("${pids[@]:1}")
    names=("${names[@]:1}")
  fi
done
for i in "${!pids[@]}"; do
  rc=0
  wait "${pids[$i]}" || rc=$?
  report "${names[$i]}" "$rc"
done
exit $status
