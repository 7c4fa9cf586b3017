# shellcheck shell=bash
# Sourced by scripts/fuzz.sh (and its test): what one bounded run of a
# libFuzzer harness came to.
#
# fuzz_report <harness> <exit code> <out dir> prints, on standard error, one
# line for a clean run (executions and coverage from the harness's log,
# <out dir>/logs/<harness>.log, "?" where the log has none), or for a
# finding the end of that log and a line per reproducer in
# <out dir>/findings/<harness>/ with the command that replays it (the
# harness program is <out dir>/fuzz/<harness>). Returns 1 for a finding.
fuzz_report() {
  local name=$1 rc=$2 out=$3
  local log=$out/logs/$name.log
  local execs cov
  execs=$(sed -nE 's/^stat::number_of_executed_units: *([0-9]+).*/\1/p' "$log" | tail -n 1)
  cov=$(grep -oE 'cov: [0-9]+' "$log" | tail -n 1 || true)
  if [ "$rc" -eq 0 ]; then
    echo "fuzz: $name: ${execs:-?} executions, ${cov:-cov: ?}, no finding" >&2
    return 0
  fi
  echo "fuzz: $name: FINDING (exit $rc); the end of its log ($log):" >&2
  tail -n 40 "$log" >&2
  local artifact
  for artifact in "$out/findings/$name"/*; do
    [ -e "$artifact" ] || continue
    echo "fuzz: $name: reproducer $artifact; replay: $out/fuzz/$name $artifact" >&2
  done
  return 1
}
