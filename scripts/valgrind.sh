#!/usr/bin/env bash
# Runs the test suite under valgrind's memcheck: every test executable of the release
# build, two at a time. An invalid read or write, a use of uninitialised memory or a
# definite leak fails the executable it happens in.
#   scripts/valgrind.sh [TEST...]      all of bin/*_test unless some are named
# Uses build/ (as scripts/test.sh leaves it; configured and built here when missing), or
# the directory in BUILD_DIR. Each executable's report goes to <build>/valgrind/<test>.log.
# Processes the tests start (the hub, peers, tools) run natively: they are checked by
# the sanitizer build and the fuzz targets.
set -euo pipefail
cd "$(dirname "$0")/.."

dir=${BUILD_DIR:-build}
jobs=${JOBS:-2}
scripts/setup.sh >/dev/null
if [ ! -f "$dir/build.ninja" ]; then
  cmake -S . -B "$dir" -G Ninja -DVC_WERROR=ON -DCMAKE_BUILD_TYPE=Release >/dev/null
fi
cmake --build "$dir" -j "$jobs" >/dev/null

# Tests that measure time against a budget meant for native speed; memcheck runs code
# some thirty times slower, so they say nothing about memory there.
slow=(
  "SlowSubscriber.*"
  "StoppedSubscriber.*"
  "Churn.*"
  "Hub.StreamsBetweenProcessesInBothDirectionsLoseNothing"
  "Hub.SendingWhileAnotherThreadWaitsInEvokeIsNotHeldUp"
  "*Throughput*"
  "*Performance*"
  "LiveServerTest.APageThatStopsReading*"
  "LivePageProcess.ACommandReachesAnOpenStream*"
  "LiveServerUnderAttack.HeadersSentAByteAtATime*"
)
exclude=$(IFS=:; echo "${slow[*]}")

tests=("$@")
if [ ${#tests[@]} -eq 0 ]; then
  for t in "$dir"/bin/*_test; do tests+=("$(basename "$t")"); done
fi
mkdir -p "$dir/valgrind"

run() {
  local t=$1 dir=$2 exclude=$3 log="$2/valgrind/$1.log"
  local start=$SECONDS
  if valgrind --tool=memcheck --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite \
      --show-leak-kinds=definite --num-callers=30 --suppressions=scripts/valgrind.supp \
      "$dir/bin/$t" --gtest_filter="-$exclude" >"$log" 2>&1; then
    echo "valgrind: $t clean ($((SECONDS - start)) s, $(grep -c '^\[       OK \]' "$log") tests)"
  else
    echo "valgrind: $t FAILED ($((SECONDS - start)) s); from $log:"
    grep -E '^==[0-9]+== (Invalid|Conditional|Use of|Syscall|Mismatched|Source and|.*definitely lost|   at|   by)' "$log" | head -60
    grep -E -A8 ': Failure$' "$log" | cut -c1-240 | head -60
    grep -E '^\[  FAILED  \]' "$log" | head -20
    return 1
  fi
}
export -f run

start=$SECONDS
status=0
printf '%s\n' "${tests[@]}" | xargs -P "$jobs" -I{} bash -c 'run "$@"' _ {} "$dir" "$exclude" || status=1
clean=0
for t in "${tests[@]}"; do
  grep -q 'ERROR SUMMARY: 0 errors' "$dir/valgrind/$t.log" 2>/dev/null && clean=$((clean + 1))
done
echo "valgrind: ${#tests[@]} test executables in $((SECONDS - start)) s"
echo "valgrind: $clean passed, $(( ${#tests[@]} - clean )) failed"
exit $status
