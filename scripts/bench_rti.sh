#!/usr/bin/env bash
# The embedded RTI and OpenRTI side by side on the same stream: vcbench built against each
# (build/ and build-openrti/, built here when needed), and OpenRTI through both of its C++
# APIs (vcbench over IEEE 1516-2000, vcbench-1516e over 1516-2010, from the same sources),
# in one process (thread://) and across processes (sender and receiver as two processes
# through our rtihub and through OpenRTI's rtinode), the variants taking turns for ROUNDS
# rounds (default 3). Prints the median throughput of each and the ratio embedded/OpenRTI
# (1516-2000).
#   scripts/bench_rti.sh            COUNT interactions per run (default 200000)
set -euo pipefail
cd "$(dirname "$0")/.."

rounds=${ROUNDS:-3}
count=${COUNT:-200000}
jobs=${JOBS:-2}
openrti=$(scripts/openrti.sh)
if [ ! -f build/build.ninja ]; then
  cmake -S . -B build -G Ninja -DVC_WERROR=ON -DCMAKE_BUILD_TYPE=Release >/dev/null
fi
cmake --build build -j "$jobs" --target vcbench rtihub >/dev/null
if ! grep -q "^RTI1516E_ROOT:PATH=$openrti\$" build-openrti/CMakeCache.txt 2>/dev/null; then
  cmake -S . -B build-openrti -G Ninja -DVC_WERROR=ON -DCMAKE_BUILD_TYPE=Release \
    -DRTI1516_ROOT="$openrti" -DRTI1516E_ROOT="$openrti" >/dev/null
fi
cmake --build build-openrti -j "$jobs" --target vcbench vcbench-1516e >/dev/null

pids=()
cleanup() {
  local pid
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  for pid in "${pids[@]}"; do wait "$pid" 2>/dev/null || true; done
}
trap cleanup EXIT

free_port() {
  python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}
wait_port() {
  local i
  for ((i = 0; i < 100; i++)); do
    (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null && return 0
    sleep 0.1
  done
  return 1
}
throughput() {
  local t
  t=$(sed -n 's/^throughput=\([0-9]*\) interactions\/s$/\1/p' | head -n1)
  echo "${t:-0}"
}

# A variant is a build directory and the vcbench in it: build/vcbench,
# build-openrti/vcbench or build-openrti/vcbench-1516e.
variants=(build/vcbench build-openrti/vcbench build-openrti/vcbench-1516e)

# thread:// in one process.
in_process() {
  "${1%/*}/bin/${1#*/}" --federation "thread://bench-$RANDOM" --count "$count" --pings 20 | throughput
}

# Sender and receiver as two processes through the build's server.
across() {
  local dir=${1%/*} program=${1#*/} port server recv out
  port=$(free_port)
  if [ "$dir" = build ]; then
    build/bin/rtihub --listen "127.0.0.1:$port" >/dev/null 2>&1 &
  else
    "$openrti/bin/rtinode" -i "127.0.0.1:$port" >/dev/null 2>&1 &
  fi
  server=$!
  pids+=("$server")
  wait_port "$port" || { echo "bench_rti: the server of $dir did not start" >&2; exit 1; }
  local url=rti://127.0.0.1:$port/Bench
  # A run that stalls (OpenRTI can lose the first interactions of a sender) is cut off
  # and counts as 0.
  timeout 120 "$dir/bin/$program" --federation "$url" --role recv >/dev/null 2>&1 &
  recv=$!
  pids+=("$recv")
  sleep 1
  out=$(timeout 120 "$dir/bin/$program" --federation "$url" --role send --count "$count" --pings 20) || true
  wait "$recv" 2>/dev/null || true
  kill "$server" 2>/dev/null || true
  wait "$server" 2>/dev/null || true
  throughput <<<"$out"
}

median() { sort -n | awk '{v[NR]=$1} END {print v[int((NR+1)/2)]}'; }

declare -A runs
for ((r = 1; r <= rounds; r++)); do
  for setup in in_process across; do
    for variant in "${variants[@]}"; do
      runs[$setup/$variant]+="$($setup "$variant") "
    done
  done
done

echo "vcbench raw, 312-byte interactions, $count per run, median of $rounds alternating rounds"
echo "load: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
printf '%-34s %14s %14s %14s %8s\n' "set-up" "embedded (/s)" "OpenRTI (/s)" "OpenRTI e (/s)" "ratio"
for setup in in_process across; do
  e=$(tr ' ' '\n' <<<"${runs[$setup/build/vcbench]}" | grep . | median)
  o=$(tr ' ' '\n' <<<"${runs[$setup/build-openrti/vcbench]}" | grep . | median)
  oe=$(tr ' ' '\n' <<<"${runs[$setup/build-openrti/vcbench-1516e]}" | grep . | median)
  case $setup in
    in_process) name="in-process (thread://)" ;;
    across) name="two processes (rtihub / rtinode)" ;;
  esac
  printf '%-34s %14s %14s %14s %7.1fx\n' "$name" "$e" "$o" "$oe" "$(awk -v e="$e" -v o="$o" 'BEGIN {print (o > 0 ? e / o : 0)}')"
done
echo "OpenRTI e: OpenRTI through its IEEE 1516-2010 API (vcbench-1516e); the others' API is 1516-2000"
