#!/usr/bin/env bash
# Runs the whole test suite of an existing build several times in a row with more tests at
# once than the machine has cores, so that tests that race for ports, files or time show
# up. Stops at the first run that fails and keeps its log. Not part of CI's every run: it
# takes N times as long as the suite.
#   scripts/repeat_tests.sh [RUNS]     RUNS defaults to 10
# BUILD_DIR (default build/) names the build, JOBS (default 4) the tests run at once, and
# CTEST_ARGS adds arguments to each ctest run (e.g. "-LE own-rti").
set -euo pipefail
cd "$(dirname "$0")/.."

runs=${1:-10}
case "$runs" in
  -h|--help) sed -n '2,8p' "$0"; exit 0 ;;
  ''|*[!0-9]*) echo "repeat_tests.sh: RUNS must be a number, not '$runs'" >&2; exit 2 ;;
esac
build=${BUILD_DIR:-build}
[ -f "$build/CTestTestfile.cmake" ] || { echo "repeat_tests.sh: no tests in $build: build first" >&2; exit 2; }
log_dir=$build/repeat-tests
mkdir -p "$log_dir"

for ((run = 1; run <= runs; run++)); do
  log=$log_dir/run-$run.log
  started=$SECONDS
  # shellcheck disable=SC2086 # CTEST_ARGS is a list of words
  if ctest --test-dir "$build" -j "${JOBS:-4}" --timeout 300 --output-on-failure ${CTEST_ARGS:-} >"$log" 2>&1; then
    echo "run $run of $runs: passed in $((SECONDS - started)) s"
  else
    echo "run $run of $runs: FAILED after $((SECONDS - started)) s; the failing tests:" >&2
    sed -n '/The following tests FAILED/,$p' "$log" >&2
    echo "full log: $log" >&2
    exit 1
  fi
done
echo "all $runs runs passed"
