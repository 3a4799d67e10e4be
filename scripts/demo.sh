#!/usr/bin/env bash
# The library end to end on this machine: installs what the build needs, builds, starts
# a hub, the viewer stand-in and three moving aircraft (vcmover) on loopback, prints the
# address of the viewer's live page, steers the viewer and draws in its scene with vcctl,
# and leaves the viewer's picture of the scene in out/scene.svg.
#   scripts/demo.sh              run the scenario, then stop everything it started
#   scripts/demo.sh --keep       leave the hub and the viewer running, to try vcctl by hand
#   scripts/demo.sh --no-build   use the programs already built (BUILD_DIR, default build/)
#   scripts/demo.sh --openrti    the same through OpenRTI's server, rtinode: OpenRTI built by
#                                scripts/openrti.sh, the tools built against it in
#                                build-openrti/ (BUILD_DIR)
#   scripts/demo.sh --1516e      the same with the IEEE 1516-2010 tools (vcctl-1516e, ...)
# BUILD_DIR and OUT_DIR (default out/) move the build and the output elsewhere; HTTP sets
# the page's address (default 127.0.0.1:0, a free port); PAUSE the seconds between steps
# (default 2 on a terminal, so the page can be watched, else 0).
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
. scripts/lib/ports.sh

fail() { echo "demo.sh: $*" >&2; exit 1; }
keep=no
build=yes
rti=embedded
api=""
for arg in "$@"; do
  case "$arg" in
    --keep) keep=yes ;;
    --no-build) build=no ;;
    --openrti) rti=openrti ;;
    --1516e) api=-1516e ;;
    -h|--help) sed -n '2,15p' "$0"; exit 0 ;;
    *) echo "demo.sh: unknown option $arg (try --help)" >&2; exit 2 ;;
  esac
done

server=rtihub
configure=()
default_build=build
if [ "$rti" = openrti ]; then
  openrti=$(scripts/openrti.sh) || fail "OpenRTI is not available (see above)"
  server=rtinode
  configure=(-DRTI1516_ROOT="$openrti")
  [ -z "$api" ] || configure+=(-DRTI1516E_ROOT="$openrti")
  default_build=build-openrti
fi
build_dir=$(cd "$root" && mkdir -p "${BUILD_DIR:-$default_build}" && cd "${BUILD_DIR:-$default_build}" && pwd)
out=$(cd "$root" && mkdir -p "${OUT_DIR:-out}" && cd "${OUT_DIR:-out}" && pwd)
bin=$build_dir/bin
svg=$out/scene.svg

step() {
  # Time to watch each step happen on the page, once there is a page to watch.
  if [ -n "${pause:-}" ] && [ "$pause" != 0 ]; then sleep "$pause"; fi
  printf '\n== %s\n' "$*"
}

# Copies the build's output to the log in $1 and shows how far it is: ninja's "[n/N]" on
# one line that keeps being rewritten on a terminal, a line every tenth otherwise.
show_progress() {
  local line count total shown=-1
  while IFS= read -r line; do
    printf '%s\n' "$line" >>"$1"
    [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] || continue
    count=${BASH_REMATCH[1]} total=${BASH_REMATCH[2]}
    if [ -t 1 ]; then
      printf '\r   compiled %d of %d' "$count" "$total"
    elif [ $((count * 10 / total)) -ne "$shown" ]; then
      shown=$((count * 10 / total))
      printf '   compiled %d of %d\n' "$count" "$total"
    fi
  done
  if [ -t 1 ]; then printf '\n'; fi
}

# ------------------------------------------------------------------ build
if [ "$build" = yes ]; then
  step "Installing the packages the build needs"
  scripts/setup.sh --build
  step "Building the library, vcctl, vcviewer, vcmover and the hub in $build_dir"
  echo "(a few minutes the first time; the compiler's output goes to $out/build.log)"
  # The same configuration as scripts/test.sh, so that the two share one build.
  cmake -S "$root" -B "$build_dir" -G Ninja -DVC_WERROR=ON -DCMAKE_BUILD_TYPE=Release "${configure[@]}" >"$out/configure.log" 2>&1 ||
    { cat "$out/configure.log" >&2; fail "configuring failed (log: $out/configure.log)"; }
  targets=(vcctl$api vcviewer$api vcmover$api)
  [ "$rti" = embedded ] && targets+=(rtihub)
  : >"$out/build.log"
  cmake --build "$build_dir" -j "${JOBS:-2}" --target "${targets[@]}" 2>&1 |
    show_progress "$out/build.log" ||
    { tail -n 40 "$out/build.log" >&2; fail "building failed (log: $out/build.log)"; }
  echo "built: ${targets[*]} in $bin"
fi
programs=(vcctl$api vcviewer$api vcmover$api)
[ "$rti" = embedded ] && programs+=(rtihub)
for program in "${programs[@]}"; do
  [ -x "$bin/$program" ] || fail "$bin/$program is missing: run without --no-build"
done

# ------------------------------------------------------------------ hub and viewer
pids=()
# Last started, first stopped: the aircraft and the viewer leave the federation while
# its server is still there to see them go.
stop_all() {
  local i
  for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
    kill "${pids[i]}" 2>/dev/null || true
    wait "${pids[i]}" 2>/dev/null || true
  done
}
trap stop_all EXIT
trap 'exit 130' INT TERM

# Waits up to $3 seconds for a line containing $2 in file $1 and prints it.
wait_for_line() {
  local i
  for ((i = 0; i < $3 * 10; i++)); do
    if grep -q -- "$2" "$1" 2>/dev/null; then grep -m1 -- "$2" "$1"; return 0; fi
    sleep 0.1
  done
  return 1
}

rm -f "$svg"
if [ "$server" = rtihub ]; then
  step "Starting the hub on a free loopback port"
  "$bin/rtihub" --listen 127.0.0.1:0 >"$out/hub.log" 2>&1 &
  pids+=($!)
  line=$(wait_for_line "$out/hub.log" "rtihub listening on 127.0.0.1:" 10) ||
    { cat "$out/hub.log" >&2; fail "the hub did not start"; }
  port=${line##*127.0.0.1:}
  port=${port%%[!0-9]*}
else
  # rtinode takes port 0 as "any" but does not say which it got: the port is read from
  # its listening socket, so no other program can take it between choosing and listening.
  step "Starting OpenRTI's rtinode on a free loopback port"
  "$openrti/bin/rtinode" -i 127.0.0.1:0 >"$out/hub.log" 2>&1 &
  pids+=($!)
  port=$(wait_for_port "${pids[-1]}") || { cat "$out/hub.log" >&2; fail "rtinode did not start"; }
  line="rtinode listening on 127.0.0.1:$port"
fi
url=rti://127.0.0.1:$port/Demo
echo "$line"

step "Starting the viewer stand-in viewer-1 on $url"
"$bin/vcviewer$api" --id viewer-1 --federation "$url" --svg "$svg" --http "${HTTP:-127.0.0.1:0}" \
  >"$out/viewer.log" 2>"$out/viewer.err" &
viewer_pid=$!
pids+=($viewer_pid)
wait_for_line "$out/viewer.log" "ready on" 10 >/dev/null ||
  { cat "$out/viewer.log" "$out/viewer.err" >&2; fail "the viewer did not start"; }
page=$(grep -m1 "vcviewer page on " "$out/viewer.log") || fail "the viewer printed no page address"

step "Starting vcmover: aircraft EAGLE1 to EAGLE3 (entities 1:1:1 to 1:1:3) on a racetrack"
"$bin/vcmover$api" --federation "$url" --count 3 --marking EAGLE --track racetrack --size 800 \
  --speed 80 >"$out/mover.log" 2>&1 &
pids+=($!)
wait_for_line "$out/mover.log" "ready" 20 >/dev/null ||
  { cat "$out/mover.log" >&2; fail "vcmover did not start"; }
page=${page#vcviewer page on }
echo "viewer-1 is running; its log: $out/viewer.log"
echo
echo "   +------------------------------------------------------------------+"
echo "     Watch the viewer live: open $page in a browser"
echo "   +------------------------------------------------------------------+"

# ------------------------------------------------------------------ the scenario
# Prints each vcctl command as a user would type it, runs it, then shows what the viewer
# said about it.
viewer_lines=$(wc -l <"$out/viewer.log")
show_viewer() {
  local i count last=-1
  # The viewer prints a line per command as it applies them; wait until it falls quiet.
  for ((i = 0; i < 30; i++)); do
    count=$(wc -l <"$out/viewer.log")
    if [ "$count" -gt "$viewer_lines" ] && [ "$count" -eq "$last" ]; then break; fi
    last=$count
    sleep 0.1
  done
  tail -n +"$((viewer_lines + 1))" "$out/viewer.log" | sed 's/^/   viewer-1 | /'
  viewer_lines=$(wc -l <"$out/viewer.log")
}
pause=${PAUSE:-}
if [ -z "$pause" ]; then if [ -t 1 ]; then pause=2; else pause=0; fi; fi
vcctl() {
  local word shown=""
  for word in "$@"; do
    case "$word" in *[[:space:]]*) shown+=" \"$word\"" ;; *) shown+=" $word" ;; esac
  done
  echo "   \$ vcctl$shown"
  "$bin/vcctl$api" --federation "$url" --viewer viewer-1 "$@" 2>>"$out/vcctl.err" | sed 's/^/     /'
  [ "${PIPESTATUS[0]}" -eq 0 ] || fail "vcctl $* failed (see $out/vcctl.err)"
}

echo
echo "Every vcctl command below runs as: vcctl --federation $url --viewer viewer-1 ..."

step "Tether the eyepoint to EAGLE1 (entity 1:1:1): 60 m south of it, 20 m up, looking north"
vcctl tether 1:1:1 --offset 0,-60,20
show_viewer

step "Ask the viewer for its state; it answers with a tether status report"
vcctl state --timeout 5
show_viewer

step "Draw on the aircraft: a text on EAGLE2, lines between them, a panel on EAGLE1"
vcctl draw layer --id 10 Routes
vcctl draw text3d --id 15 --attach 1:1:2 --offset 0,0,40 --color white "EAGLE2, orbited"
vcctl draw line3d --id 11 --from 1:1:1 --to 1:1:3 --color yellow --thickness 3 --arrow end
vcctl draw line3d --id 12 --from 1:1:2 --to 1:1:3 --colors green/orange/red --thickness 2
vcctl add-to-layer 11 10
vcctl add-to-layer 12 10
vcctl draw line2d --id 13 --from 0.05,0.08 --to 0.95,0.08 --colors red/yellow/green --thickness 4
vcctl draw text2d --id 14 --at 0.05,0.95 --color white "Tether, orbit, track"
vcctl draw template --id 20 --name Status 1:Speed:number 2:Fuel:bar:0:100
vcctl draw panel --id 21 --template 20 --attach 1:1:1 --offset 0,0,60 --color orange
vcctl value 21 1 --number 80
vcctl value 21 2 --number 80
show_viewer

step "Orbit EAGLE2 (entity 1:1:2) at 400 m, turning a tenth of a radian a second"
vcctl orbit 1:1:2 --radius 400 --rate 0.1
show_viewer

step "Track EAGLE3 (entity 1:1:3) from a place 2.5 km south-west of the racetrack, 600 m up"
vcctl track 1:1:3 --at 3982246,-33874,4966151
show_viewer

step "Change the panel's values"
vcctl value 21 1 --number 88
vcctl value 21 2 --number 35
show_viewer

step "Hide one drawing and remove another"
vcctl draw ellipse --id 30 --at 0.8,0.8 --size 0.1,0.1 --color red --fill
vcctl hide 30
vcctl draw cuboid --id 31 --attach 1:1:3 --size 40,40,10 --color purple
vcctl remove 31
show_viewer

step "Back on EAGLE1's tether"
vcctl tether 1:1:1 --offset 0,-60,20
show_viewer

if [ "$keep" = yes ]; then
  trap - EXIT
  cat <<EOF

== The hub, viewer-1 and vcmover keep running. Try vcctl by hand, in this shell or another:

   export PATH=$bin:\$PATH
   vcctl --federation $url --viewer viewer-1 state
   vcctl --federation $url --viewer viewer-1 orbit 1:1:3 --radius 300 --rate -0.2
   vcctl --federation $url draw text2d --id 40 --at 0.5,0.5 --color green Hello
   vcctl --federation $url value 21 1 --number 120
   vcctl --federation $url listen --seconds 30     # in a second shell, then send more
   vcctl --help;  vcctl draw --help;  vcctl option --help

   The viewer prints a line per command in $out/viewer.log; its live page: $page
   When done, stop the aircraft, the viewer (it then writes $svg) and the hub:
   kill ${pids[2]}; vcctl --federation $url --viewer viewer-1 option exit;  kill ${pids[0]}
EOF
  exit 0
fi

step "The options exit command: the viewer writes its SVG and stops"
vcctl option exit
for ((i = 0; i < 100; i++)); do
  kill -0 "$viewer_pid" 2>/dev/null || break
  sleep 0.1
done
kill -0 "$viewer_pid" 2>/dev/null && fail "the viewer did not stop on the exit command"
wait "$viewer_pid" || fail "the viewer failed (see $out/viewer.err)"
show_viewer
[ -s "$svg" ] && grep -q "</svg>" "$svg" || fail "the viewer wrote no SVG to $svg"

step "Done. The viewer's picture of the scene: $svg"
echo "Open it in a browser. Logs are beside it in $out/."
echo "(The live page went away with the viewer; run with --keep to leave it up.)"
