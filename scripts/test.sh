#!/usr/bin/env bash
# Installs the dependencies, configures, builds and runs every test.
#   scripts/test.sh              release build (warnings are errors) in build/
#   scripts/test.sh --sanitize   AddressSanitizer + UndefinedBehaviorSanitizer in build-asan/
set -euo pipefail
cd "$(dirname "$0")/.."

mode=release
for arg in "$@"; do
  case "$arg" in
    --sanitize) mode=sanitize ;;
    -h|--help) sed -n '2,4p' "$0"; exit 0 ;;
    *) echo "test.sh: unknown option $arg" >&2; exit 2 ;;
  esac
done

scripts/setup.sh

jobs=${JOBS:-2}
if [ "$mode" = sanitize ]; then
  dir=build-asan
  flags=(-DCMAKE_BUILD_TYPE=Debug -DVC_SANITIZE=ON)
  export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:strict_string_checks=1}
  export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
else
  dir=build
  flags=(-DCMAKE_BUILD_TYPE=Release)
fi

cmake -S . -B "$dir" -G Ninja -DVC_WERROR=ON "${flags[@]}"
cmake --build "$dir" -j "$jobs"
cd "$dir"
ctest -j "$jobs" --output-on-failure --timeout 300
