#!/usr/bin/env bash
# What one message costs in work rather than in time, which does not change with whatever
# else runs on the machine: vcbench under callgrind with COUNT messages and with none, the
# difference divided by COUNT. In one process (thread://, both ends together) and through
# rtihub (sender, hub and receiver, each a process of its own), for 312-byte interactions
# and for reflects (1000 instances updated in turn, 100-byte values). Prints instructions
# and heap allocations per message. Needs valgrind.
#   bench/vcbench_cost.sh BUILD_DIR [COUNT]      COUNT defaults to 50000
set -euo pipefail
build=$(cd "${1:?usage: vcbench_cost.sh BUILD_DIR [COUNT]}" && pwd)
count=${2:-50000}
bin=$build/bin
here=$(cd "$(dirname "$0")" && pwd)
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

# Instructions, then calls to malloc, in one callgrind output file.
totals() {
  python3 - "$1" <<'EOF'
import re, sys
names, callee, ir, allocs = {}, None, 0, 0
for line in open(sys.argv[1]):
    if line.startswith(('summary:', 'totals:')):
        ir = int(line.split()[1])
    m = re.match(r'(c?fn)=\((\d+)\)(?: (.*))?', line)
    if m:
        if m.group(3):
            names[m.group(2)] = m.group(3).strip()
        callee = names.get(m.group(2)) if m.group(1) == 'cfn' else None
    elif line.startswith('calls=') and callee is not None:
        if callee in ('malloc', 'calloc', 'realloc'):
            allocs += int(line.split('=')[1].split()[0])
        callee = None
print(ir, allocs)
EOF
}

# name, callgrind file with COUNT messages, the same with none
report() {
  local i1 a1 i0 a0
  read -r i1 a1 < <(totals "$2")
  read -r i0 a0 < <(totals "$3")
  awk -v n="$count" -v i="$((i1 - i0))" -v a="$((a1 - a0))" -v name="$1" \
    'BEGIN {printf "%-38s %7.0f instructions %6.2f allocations per message\n", name, i / n, a / n}'
}

grind() {
  local file=$1
  shift
  valgrind --tool=callgrind --callgrind-out-file="$file" "$@"
}

in_process() {
  local tag=$1 n
  shift
  for n in "$count" 0; do
    grind "$out/$tag.$n" "$bin/vcbench" -f "thread://cost-$tag" --count "$n" -p 0 --spin 0 "$@" \
      >/dev/null 2>&1
  done
  report "in one process, $tag" "$out/$tag.$count" "$out/$tag.0"
}

# Through the hub, as bench/vcbench_hub.sh runs it, each of the three processes under
# callgrind; its command line tells which file is whose.
through_hub() {
  local tag=$1 n dir f end
  shift
  for n in "$count" 0; do
    dir=$out/hub.$tag.$n
    mkdir -p "$dir"
    VCBENCH_RUN="valgrind --tool=callgrind --callgrind-out-file=$dir/%p" \
      "$here/vcbench_hub.sh" "$build" --count "$n" -p 0 --spin 0 "$@" >/dev/null 2>&1
    for f in "$dir"/*; do
      case $(sed -n 's/^cmd: //p' "$f") in
        *rtihub*) mv "$f" "$dir/hub" ;;
        *"--role recv"*) mv "$f" "$dir/recv" ;;
        *"--role send"*) mv "$f" "$dir/send" ;;
      esac
    done
  done
  for end in send hub recv; do
    report "through rtihub, $tag, $end" "$out/hub.$tag.$count/$end" "$out/hub.$tag.0/$end"
  done
}

echo "vcbench under callgrind, $count messages less none, --spin 0"
in_process interactions
in_process reflects --objects 1000
through_hub interactions
through_hub reflects --objects 1000
