#!/usr/bin/env bash
# Builds and runs every test three times: the normal build, the Debug build
# under AddressSanitizer and UndefinedBehaviorSanitizer, and the 32-bit ARM
# cross build (arm-linux-gnueabihf) with its tests run under qemu-arm.
# First it installs what is missing (scripts/deps.sh: host packages, and the
# project's armhf sysroot under build/), then checks that every C++ file is
# formatted as clang-format makes it. Exits non-zero on any failure.
#
# Between the sanitizer and the armhf stages it runs every libFuzzer harness
# of fuzz/ for a bounded time (scripts/fuzz.sh); a finding fails the run.
#
#   ZAVREL_ARMHF=off          leaves the armhf build out (on by default)
#   ZAVREL_FUZZ=off           leaves the fuzzers out (on by default)
#   ZAVREL_FUZZ_SECONDS=<s>   seconds per harness (default 60)
#   ZAVREL_TEST_BUDGET=<s>    seconds the whole run may take (default 5400,
#                             CI's limit); when the time left before the armhf
#                             stage is short, that stage runs only its
#                             cheapest tests and says so.
set -euo pipefail
cd "$(dirname "$0")/.."

armhf=${ZAVREL_ARMHF:-on}
budget=${ZAVREL_TEST_BUDGET:-5400}
declare -A took
echo "=== deps: missing packages (and the armhf sysroot when armhf is on)" >&2
if [ "$armhf" = "on" ]; then
  ZAVREL_CROSS=armhf scripts/deps.sh
else
  scripts/deps.sh
fi
took[deps]=$SECONDS

# Every C++ file as clang-format (.clang-format) makes it; a file that
# differs fails the run, named, before anything is built.
echo "=== format" >&2
status=0
if ! scripts/check-format.sh; then
  status=1
fi

jobs=$(nproc)
all_passed=0
all_failed=0

# run_preset <preset> [ctest arguments...]; $targets, when set, limits the build.
targets=()
run_preset() {
  local preset=$1 start=$SECONDS
  shift
  echo "=== ${preset}: configure and build" >&2
  cmake --preset "$preset" >/dev/null
  if [ ${#targets[@]} -gt 0 ]; then
    cmake --build --preset "$preset" -j "$jobs" --target "${targets[@]}"
  else
    cmake --build --preset "$preset" -j "$jobs"
  fi
  echo "=== ${preset}: test" >&2
  local log
  log=$(mktemp)
  if ! ctest --preset "$preset" -j "$jobs" "$@" | tee "$log"; then
    status=1
  fi
  # ctest's summary: "100% tests passed, 0 tests failed out of 848"
  local line
  line=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$log" | tail -n 1 || true)
  if [ -n "$line" ]; then
    local failed total
    failed=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/' <<<"$line")
    total=$(sed -E 's/.* tests failed out of ([0-9]+).*/\1/' <<<"$line")
    all_failed=$((all_failed + failed))
    all_passed=$((all_passed + total - failed))
  else
    status=1
  fi
  rm -f "$log"
  took[$preset]=$((SECONDS - start))
  echo "=== ${preset}: ${took[$preset]} s" >&2
}

run_preset default
run_preset asan

if [ "${ZAVREL_FUZZ:-on}" = "on" ]; then
  echo "=== fuzz: every harness for ${ZAVREL_FUZZ_SECONDS:-60} s" >&2
  start=$SECONDS
  if ! scripts/fuzz.sh; then
    status=1
  fi
  took[fuzz]=$((SECONDS - start))
  echo "=== fuzz: ${took[fuzz]} s" >&2
fi

if [ "$armhf" = "on" ]; then
  # The armhf stage costs about what the sanitizer stage costs (a -O0 build
  # of the same tree, tests slower under emulation); give it twice that.
  left=$((budget - SECONDS))
  need=$((2 * ${took[asan]} + 60))
  if [ "$left" -ge "$need" ]; then
    # qemu-user carries route, link and address netlink messages but
    # answers policy-rule messages (RTM_*RULE) with "Operation not
    # supported", so what needs rules runs in the two native stages only.
    # GoogleTest reads GTEST_FILTER from the environment ctest passes on.
    echo "=== armhf: policy-rule tests (kernel.*, KernelLinksTest.Rules*) run natively only:" \
         "qemu-user does not carry netlink rule messages" >&2
    GTEST_FILTER='-KernelLinksTest.Rules*' run_preset armhf -E '^kernel\.'
  else
    echo "=== armhf: ${left} s left of ${budget} s, full stage needs about ${need} s:" \
         "running the width and platform tests only" >&2
    targets=(test_support)
    compgen -G "tests/platform/*.cpp" >/dev/null && targets+=(test_platform)
    run_preset armhf -R '^(support|platform)\.'
  fi
fi

summary=""
for preset in deps default asan fuzz armhf; do
  [ -n "${took[$preset]:-}" ] && summary+=" ${preset} ${took[$preset]} s;"
done
echo "=== times:${summary} total ${SECONDS} s" >&2
# One closing line over every stage.
echo "${all_passed} passed, ${all_failed} failed"
exit $status
