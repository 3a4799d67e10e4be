#!/bin/sh
# Sender, hub and receiver as three processes on this host: starts rtihub on a free
# loopback port, a receiving vcbench, then the sending one, and prints what the sender
# measured (and the receiver's own count). Extra arguments go to both ends, e.g.
#   bench/vcbench_hub.sh build-bench --count 2000000 --library
# VCBENCH_RUN, when set, is put before each of the three commands (a profiler, say).
set -eu
build=${1:?usage: vcbench_hub.sh BUILD_DIR [vcbench options]}
shift
bin=$build/bin
log=$(mktemp -d)
trap 'kill $hub 2>/dev/null || true; wait $hub 2>/dev/null || true; rm -rf "$log"' EXIT INT TERM
run=${VCBENCH_RUN:-}

$run "$bin/rtihub" --listen 127.0.0.1:0 --quiet >"$log/hub" 2>&1 &
hub=$!
port=
for _ in $(seq 300); do
  port=$(sed -n 's/^rtihub listening on .*:\([0-9][0-9]*\)$/\1/p' "$log/hub")
  [ -n "$port" ] && break
  sleep 0.05
done
[ -n "$port" ] || { echo "vcbench_hub.sh: the hub did not come up" >&2; cat "$log/hub" >&2; exit 1; }
url=rti://127.0.0.1:$port/VcbenchHub

$run "$bin/vcbench" --federation "$url" --role recv "$@" >"$log/recv" 2>&1 &
recv=$!
for _ in $(seq 300); do
  grep -q "receiver ready" "$log/recv" && break
  sleep 0.05
done
$run "$bin/vcbench" --federation "$url" --role send "$@"
wait $recv
grep -v "receiver ready" "$log/recv" | grep -v "^vcbench: recv" || true
