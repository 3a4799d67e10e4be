#!/usr/bin/env bash
# Hostile clients against the built programs, each probe a process of its own that says
# which bound it measured and whether it held. CI runs them with small sizes; --full runs
# the attacks at the sizes the READMEs state the bounds for.
#   probes/run.sh [--full] [BUILD_DIR]     (default build/)
set -euo pipefail
cd "$(dirname "$0")/.."
size=--small
if [ "${1:-}" = --full ]; then
  size=""
  shift
fi
build=${1:-build}
fdd=share/fom/VistrelControl.xml
rc=0
node probes/live_page_probe.mjs "$build/bin" "$fdd" $size || rc=$?
if [ "$rc" = 77 ]; then
  echo "probes: skipped (built against another RTI)"
  exit 0
fi
for attack in turns creates; do
  "$build/bin/hub_probe" "$attack" $size || rc=1
done
exit "$rc"
