#!/usr/bin/env bash
# Builds the fuzz targets (clang, libFuzzer, AddressSanitizer + UndefinedBehaviorSanitizer)
# in build-fuzz/, replays the committed inputs that once broke them, and fuzzes each target
# for SECONDS seconds, one after the other.
#   scripts/fuzz.sh SECONDS [TARGET...]     all targets unless some are named
# The build is the whole project with clang and warnings as errors, plus the targets.
# Corpora grow in build-fuzz/corpus/<target>/, seeded by fuzz_seeds from valid PDUs,
# frames and object models; a finding stops the script, its input is left in
# build-fuzz/findings/ and the run's log in build-fuzz/logs/. To keep a finding, fix it,
# then copy the input to fuzz/regressions/<target>/ (or turn it into a test in tests/).
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -lt 1 ] || ! [[ "$1" =~ ^[0-9]+$ ]]; then
  sed -n '2,11p' "$0"
  exit 2
fi
seconds=$1
shift
all=(fuzz_pdu_bytes fuzz_pdu_text fuzz_rti_frames fuzz_hub fuzz_fdd fuzz_cmdline fuzz_viewer fuzz_encoding)
targets=("${@:-${all[@]}}")

scripts/setup.sh
dir=build-fuzz
CC=clang CXX=clang++ cmake -S . -B "$dir" -G Ninja -DVC_BUILD_FUZZ=ON -DVC_BUILD_TESTS=OFF -DVC_WERROR=ON >/dev/null
cmake --build "$dir" -j "${JOBS:-2}"
ctest --test-dir "$dir/fuzz" --output-on-failure

"$dir/bin/fuzz_seeds" "$dir/seeds"
mkdir -p "$dir/findings" "$dir/logs"
# Inputs large enough for the longest PDU, frame sequence or model the targets can meet
# in a few minutes, small enough to keep them fast.
declare -A maxlen=([fuzz_pdu_bytes]=4096 [fuzz_pdu_text]=2048 [fuzz_rti_frames]=16384
                   [fuzz_hub]=262144 [fuzz_fdd]=16384 [fuzz_cmdline]=1024 [fuzz_viewer]=16384
                   [fuzz_encoding]=4096)
failed=0
passed=0
for t in "${targets[@]}"; do
  mkdir -p "$dir/corpus/$t" "$dir/seeds/$t"
  log="$dir/logs/$t.log"
  start=$(date +%s)
  if "$dir/bin/$t" "$dir/corpus/$t" "$dir/seeds/$t" \
      -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len="${maxlen[$t]:-4096}" \
      -dict="fuzz/$t.dict" -artifact_prefix="$dir/findings/$t-" -print_final_stats=1 >"$log" 2>&1; then
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1)
    echo "fuzz: $t ok: $runs inputs in $(( $(date +%s) - start )) s, $cov"
    passed=$((passed + 1))
  else
    echo "fuzz: $t FAILED; the last lines of $log:"
    tail -n 40 "$log"
    ls "$dir/findings/$t-"* 2>/dev/null || true
    failed=1
    break
  fi
done
echo "fuzz: $passed passed, $failed failed"
exit $failed
