#!/usr/bin/env bash
# The embedded RTI and OpenRTI side by side on the same stream: vcbench built against each
# (build/ and build-openrti/, built here when needed), and OpenRTI through both of its C++
# APIs (vcbench over IEEE 1516-2000, vcbench-1516e over 1516-2010, from the same sources),
# in one process (thread://) and across processes (sender and receiver as two processes
# through our rtihub and through OpenRTI's rtinode), the variants taking turns for ROUNDS
# rounds (default 3). The same for objects: one federate updates OBJECTS instances in turn
# (default 1000) with 100-byte values, as an entity's state, and the other reflects them.
# The embedded RTI through its 1516-2010 API too (vcbench-1516e of build/). Prints the
# median throughput of each and the ratios embedded/OpenRTI for each API. Then
# the loopback limit: what two raw loopback hops through a relay process carry with the
# same message sizes (bench/loopback_limit.cpp), and the hub's share of it.
#   scripts/bench_rti.sh            COUNT messages per run (default 200000)
set -euo pipefail
cd "$(dirname "$0")/.."

rounds=${ROUNDS:-3}
count=${COUNT:-200000}
objects=${OBJECTS:-1000}
jobs=${JOBS:-2}
openrti=$(scripts/openrti.sh)
if [ ! -f build/build.ninja ]; then
  cmake -S . -B build -G Ninja -DVC_WERROR=ON -DCMAKE_BUILD_TYPE=Release >/dev/null
fi
cmake --build build -j "$jobs" --target vcbench vcbench-1516e rtihub >/dev/null
if ! grep -q "^RTI1516E_ROOT:PATH=$openrti\$" build-openrti/CMakeCache.txt 2>/dev/null ||
  ! grep -q "^VC_BUILD_BENCH:BOOL=ON\$" build-openrti/CMakeCache.txt; then
  cmake -S . -B build-openrti -G Ninja -DVC_WERROR=ON -DCMAKE_BUILD_TYPE=Release -DVC_BUILD_BENCH=ON \
    -DRTI1516_ROOT="$openrti" -DRTI1516E_ROOT="$openrti" >/dev/null
fi
cmake --build build-openrti -j "$jobs" --target vcbench vcbench-1516e loopback_limit >/dev/null

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
  t=$(sed -n 's/^throughput=\([0-9]*\) [a-z]*\/s$/\1/p' | head -n1)
  echo "${t:-0}"
}

# A variant is a build directory and the vcbench in it: build/vcbench, build/vcbench-1516e,
# build-openrti/vcbench or build-openrti/vcbench-1516e.
variants=(build/vcbench build-openrti/vcbench build/vcbench-1516e build-openrti/vcbench-1516e)

# thread:// in one process. A run that fails (an RTI without object management) counts
# as 0.
in_process() {
  local variant=$1
  shift
  { "${variant%/*}/bin/${variant#*/}" --federation "thread://bench-$RANDOM" --count "$count" \
    --pings 20 "$@" 2>/dev/null || true; } | throughput
}
objects_in_process() { in_process "$1" --objects "$objects"; }

# Sender and receiver as two processes through the build's server.
across() {
  local dir=${1%/*} program=${1#*/} port server recv out
  shift
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
  timeout 120 "$dir/bin/$program" --federation "$url" --role recv "$@" >/dev/null 2>&1 &
  recv=$!
  pids+=("$recv")
  sleep 1
  out=$(timeout 120 "$dir/bin/$program" --federation "$url" --role send --count "$count" --pings 20 "$@" 2>/dev/null) || true
  wait "$recv" 2>/dev/null || true
  kill "$server" 2>/dev/null || true
  wait "$server" 2>/dev/null || true
  throughput <<<"$out"
}
objects_across() { across "$1" --objects "$objects"; }

median() { sort -n | awk '{v[NR]=$1} END {print v[int((NR+1)/2)]}'; }

# Two raw loopback hops through a relay process, messages of `size` bytes.
loopback() { build-openrti/bin/loopback_limit --count "$((count * 10))" --size "$1" | throughput; }
loopback_312() { loopback 312; }
loopback_100() { loopback 100; }

setups=(in_process across objects_in_process objects_across)
declare -A runs
for ((r = 1; r <= rounds; r++)); do
  for setup in "${setups[@]}"; do
    for variant in "${variants[@]}"; do
      runs[$setup/$variant]+="$($setup "$variant") "
    done
  done
  runs[loopback/312]+="$(loopback_312) "
  runs[loopback/100]+="$(loopback_100) "
done
med() { tr ' ' '\n' <<<"${runs[$1]}" | grep . | median; }
ratio() { awk -v e="$1" -v o="$2" 'BEGIN {print (o > 0 ? e / o : 0)}'; }

echo "vcbench raw, $count messages per run, median of $rounds alternating rounds:"
echo "312-byte interactions, or $objects object instances updated in turn with 100-byte values"
echo "load: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
printf '%-42s %14s %14s %8s %14s %14s %8s\n' "set-up" "embedded (/s)" "OpenRTI (/s)" "ratio" \
  "embedded e (/s)" "OpenRTI e (/s)" "ratio e"
for setup in "${setups[@]}"; do
  e=$(med "$setup/build/vcbench")
  o=$(med "$setup/build-openrti/vcbench")
  ee=$(med "$setup/build/vcbench-1516e")
  oe=$(med "$setup/build-openrti/vcbench-1516e")
  case $setup in
    in_process) name="interactions, in-process (thread://)" ;;
    across) name="interactions, two processes (rtihub/rtinode)" ;;
    objects_in_process) name="reflects, in-process (thread://)" ;;
    objects_across) name="reflects, two processes (rtihub/rtinode)" ;;
  esac
  printf '%-42s %14s %14s %7.1fx %14s %14s %7.1fx\n' "$name" "$e" "$o" "$(ratio "$e" "$o")" \
    "$ee" "$oe" "$(ratio "$ee" "$oe")"
done
echo "e: through the IEEE 1516-2010 API (vcbench-1516e); the others through 1516-2000"
echo "0: the run failed (an RTI without object management) or stalled"
echo
echo "loopback limit: sender, relay process and receiver, two TCP hops on 127.0.0.1, framed as the hub frames"
printf '%-42s %14s %14s %8s\n' "messages" "loopback (/s)" "rtihub (/s)" "share"
for size in 312 100; do
  l=$(med "loopback/$size")
  if [ "$size" = 312 ]; then h=$(med across/build/vcbench); else h=$(med objects_across/build/vcbench); fi
  printf '%-42s %14s %14s %7.0f%%\n' "$size bytes" "$l" "$h" "$(awk -v h="$h" -v l="$l" 'BEGIN {print (l > 0 ? 100 * h / l : 0)}')"
done
