#!/usr/bin/env bash
# Runs the commands README.md shows, as a reader types them, against an existing build,
# and fails on the first that fails. Each indented block runs in one shell, in a scratch
# directory, with the placeholders filled in:
#   PORT, and the example port 14321   the port of the server the block started
#   /opt/vc                            a prefix the build is installed into
#   /opt/openrti                       the OpenRTI prefix the build uses
#   build/, build-myrti/, build-both/  the build itself; scripts/ is the source tree's
#   app.cpp                            a small application of our own
# A block of CMake code is built as an application's CMakeLists.txt. A block that needs
# OpenRTI or the 1516-2010 tools runs only on a build that has them. Left out, each
# named with the reason: the commands CI runs itself (setup, the test scripts), building
# the project (it is this build; the options it is configured with are checked), and the
# plain demo (its own test runs it).
#   scripts/readme_commands.sh BUILD_DIR [README]
set -euo pipefail
src=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:?usage: readme_commands.sh BUILD_DIR [README]}" && pwd)
readme=${2:-$src/README.md}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "README: $*" >&2
  exit 1
}

openrti=$(sed -n 's/^RTI1516_ROOT:[A-Z]*=//p' "$build/CMakeCache.txt")
prefix=$work/vc
cmake --install "$build" --prefix "$prefix" >/dev/null || fail "cmake --install failed"
cat >"$work/app.cpp" <<'EOF'
#include "vistrelControl.h"
int main() {
  DtOrbitVCPdu pdu;
  return pdu.length() > 0 ? 0 : 1;
}
EOF

# Why a command is left out, or nothing when it runs.
left_out() {
  case "$1" in
    scripts/setup.sh*) echo "CI runs it first (.ci/run)" ;;
    scripts/test.sh*) echo "CI runs it (.ci/run)" ;;
    scripts/repeat_tests.sh*) echo "the whole suite many times; run by hand" ;;
    "(cd build && ctest"*) echo "the suite this check is part of" ;;
    "scripts/demo.sh") echo "Demo.RunsItsScenarioAndLeavesTheSvg runs it" ;;
    "cmake --build build"*) echo "building the project: this build" ;;
  esac
}

# A configure line of the project: every option it sets must be one the project reads.
check_configure() {
  local word name
  for word in $1; do
    [[ $word == -D* ]] || continue
    name=${word#-D}
    name=${name%%=*}
    name=${name%%:*}
    case "$name" in CMAKE_*) continue ;; esac
    grep -rqw --include=CMakeLists.txt -e "$name" "$src" || fail "'$1' sets $name, which the project does not read"
  done
}

# Turns one README line into what the block's shell runs.
substitute() {
  local line=$1
  line=${line//\$PWD\/build\/bin/$build/bin}
  line=$(sed -E "s#(^| )build(-[a-z]+)?/bin/#\\1$build/bin/#g; s#(^| )scripts/#\\1$src/scripts/#g" <<<"$line")
  line=${line//\/opt\/openrti/$openrti}
  line=${line//\/opt\/vc/$prefix}
  if [[ $line == *"/rtinode "* ]]; then
    # It picks its own port; the block's later lines use the one it got.
    line="${line//127.0.0.1:14321/127.0.0.1:0} PORT=\$(wait_for_port \$!) || { echo 'rtinode did not start' >&2; exit 1; }"
  fi
  line=${line//14321/\$PORT}
  line=${line//:PORT\//:\$PORT\/}
  if [[ $line == *"/vcviewer "*"&" ]]; then
    # Ready before the next line sends it anything, as it is for a reader who types on.
    line="${line%&}>viewer.log 2>&1 & wait_ready \$!"
  fi
  if [[ $line == "$src/scripts/demo.sh --keep"* ]]; then
    # Built already; the port comes from the commands it prints.
    line="BUILD_DIR=$build OUT_DIR=$work/out PAUSE=0 $src/scripts/demo.sh --no-build --keep >demo.log 2>&1 || { cat demo.log >&2; exit 1; }; PORT=\$(sed -n 's#.*rti://127.0.0.1:\\([0-9]*\\)/Demo.*#\\1#p' demo.log | head -n 1)"
  fi
  printf '%s\n' "$line"
}

run_shell_block() {
  local script=$work/block.sh line reason ran=0
  {
    echo "set -euo pipefail"
    # A session of its own: what the block leaves running (servers, a demo's hub) is
    # stopped with it.
    echo "echo \$\$ >'$work/block.session'"
    echo ". '$src/scripts/lib/ports.sh'"
    echo "wait_ready() { local i; for ((i = 0; i < 100; i++)); do grep -q 'ready on' viewer.log && return 0; kill -0 \$1 2>/dev/null || break; sleep 0.1; done; cat viewer.log >&2; exit 1; }"
  } >"$script"
  for line in "$@"; do
    reason=$(left_out "$line")
    if [ -n "$reason" ]; then
      echo "   (left out: $line -- $reason)"
      continue
    fi
    if [[ $line == "cmake -S . "* ]]; then
      check_configure "$line"
      echo "   (configure options checked: $line)"
      continue
    fi
    printf 'echo %q\n%s\n' "\$ $line" "$(substitute "$line")" >>"$script"
    ran=1
  done
  [ "$ran" = 1 ] || return 0
  local status=0
  # Bounded, and through a file: a server the block left behind can hold neither this
  # script nor whoever reads its output.
  (cd "$work" && timeout -k 5 120 setsid --wait bash "$script" >"$work/block.log" 2>&1) || status=$?
  kill -- -"$(cat "$work/block.session")" 2>/dev/null || true
  cat "$work/block.log"
  [ "$status" = 0 ] || fail "a command above failed$([ "$status" != 124 ] || echo ' (no end within 120 s)')"
}

run_cmake_block() {
  local dir=$work/cmake-app line added=no
  mkdir -p "$dir"
  cp "$work/app.cpp" "$dir/"
  printf '   %s\n' "$@"
  {
    echo "cmake_minimum_required(VERSION 3.20)"
    echo "project(app LANGUAGES CXX)"
    echo "set(CMAKE_CXX_STANDARD 17)"
    for line in "$@"; do
      if [ "$added" = no ] && [[ $line == target_link_libraries* ]]; then
        echo "add_executable(app app.cpp)"
        added=yes
      fi
      printf '%s\n' "$line"
    done
  } >"$dir/CMakeLists.txt"
  cmake -S "$dir" -B "$dir/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >"$work/cmake.log" 2>&1 &&
    cmake --build "$dir/build" >>"$work/cmake.log" 2>&1 && "$dir/build/app" ||
    { cat "$work/cmake.log" >&2; fail "the CMake block above does not build an application"; }
}

# The indented blocks, one line each, blocks separated by an empty line.
blocks=$(awk '/^    / { sub(/^    /, ""); print; inside = 1; next } { if (inside) print ""; inside = 0 }' "$readme")

count=0
block=()
flush() {
  [ ${#block[@]} -gt 0 ] || return 0
  count=$((count + 1))
  local text
  text=$(printf '%s\n' "${block[@]}")
  if [[ $text == *"/opt/openrti"* ]] && { [ -z "$openrti" ] || [ ! -x "$openrti/bin/rtinode" ]; }; then
    echo "== block $count: needs a build against OpenRTI; skipped"
  elif [[ $text == *"-1516e "* ]] && [ ! -x "$build/bin/vcctl-1516e" ]; then
    echo "== block $count: needs the 1516-2010 flavour; skipped"
  elif [[ $text == *"demo.sh --keep"* ]] && [ -n "$openrti" ]; then
    echo "== block $count: the demo's hub is the embedded RTI's; skipped"
  elif [[ $text == *"find_package("* ]]; then
    echo "== block $count: CMake"
    run_cmake_block "${block[@]}"
  else
    echo "== block $count"
    run_shell_block "${block[@]}"
  fi
  block=()
}
while IFS= read -r line; do
  if [ -z "$line" ]; then
    flush
  else
    block+=("$line")
  fi
done <<<"$blocks"
flush
[ "$count" -gt 0 ] || fail "no commands found in $readme"
echo "README: every command above ran as written"
