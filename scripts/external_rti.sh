#!/usr/bin/env bash
# The project on RTIs it did not bring, built as a user who brings one builds it
# (-DRTI1516_ROOT=<the RTI's install prefix>, warnings as errors):
#  1. OpenRTI (built by scripts/openrti.sh from the archive beside the clone): the whole
#     project in both flavours, over OpenRTI's IEEE 1516-2000 API (RTI1516_ROOT) and over
#     its 1516-2010 API (RTI1516E_ROOT: libvistrelControlToolkitHLA1516e, vcctl-1516e, ...),
#     and the test suite of both, except the tests of our own RTI and hub (label own-rti);
#     the tests across processes, among them the mixed federation of the two flavours'
#     tools, run through OpenRTI's rtinode; the install test builds and runs an outside
#     application of each flavour against the installed package.
#  2. The embedded RTI installed on its own in a prefix laid out the other way (headers in
#     include/RTI/, libraries named with _64): the library, vcbench, an example and the
#     benchmarks, each run briefly.
#   scripts/external_rti.sh
# Builds in build-openrti/ and build-ext/ (and build/ for step 2, as scripts/test.sh
# leaves it). Without the OpenRTI archive, step 1 fails under CI=true and is skipped
# elsewhere.
set -euo pipefail
cd "$(dirname "$0")/.."

jobs=${JOBS:-2}
scripts/setup.sh >/dev/null

# ------------------------------------------------------------------ 1. OpenRTI
rc=0
openrti=$(scripts/openrti.sh) || rc=$?
if [ "$rc" = 3 ]; then
  echo "external RTI: OpenRTI skipped (no archive)"
elif [ "$rc" != 0 ]; then
  exit "$rc"
else
  cmake -S . -B build-openrti -G Ninja -DCMAKE_BUILD_TYPE=Release -DVC_WERROR=ON \
    -DVC_BUILD_BENCH=ON -DRTI1516_ROOT="$openrti" -DRTI1516E_ROOT="$openrti" >/dev/null
  cmake --build build-openrti -j "$jobs" >/dev/null
  # Each flavour's programs load that API's library from OpenRTI's prefix, and not the
  # other API's.
  for p in vcviewer vcctl vcbench vcviewer-1516e vcctl-1516e vcbench-1516e; do
    case $p in *-1516e) api=librti1516e other=librti1516 ;; *) api=librti1516 other=librti1516e ;; esac
    libs=$(ldd "build-openrti/bin/$p")
    rti=$(sed -n "s/.*$api\\.so[^ ]* => \\([^ ]*\\).*/\\1/p" <<<"$libs")
    case "$rti" in "$openrti"/*) ;; *) echo "external RTI: $p uses '$rti', not OpenRTI's $api" >&2; exit 1 ;; esac
    if grep -q "$other\\.so" <<<"$libs"; then echo "external RTI: $p loads $other as well" >&2; exit 1; fi
  done
  (cd build-openrti && ctest -j "$jobs" --output-on-failure --timeout 300 -LE own-rti)
  echo "external RTI: OpenRTI passed"
fi

# ------------------------------------------------------------------ 2. include/RTI, _64
if [ ! -f build/build.ninja ]; then
  cmake -S . -B build -G Ninja -DVC_WERROR=ON -DCMAKE_BUILD_TYPE=Release >/dev/null
fi
cmake --build build -j "$jobs" >/dev/null

prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install build --prefix "$prefix/all" >/dev/null
mkdir -p "$prefix/rti/lib" "$prefix/rti/include"
cp -a "$prefix/all/include/vistrelcontrol/rti1516/RTI" "$prefix/rti/include/"
cp -a "$prefix/all/lib/vistrelcontrol/rti1516/"lib* "$prefix/rti/lib/"
root=$prefix/rti

cmake -S . -B build-ext -G Ninja -DCMAKE_BUILD_TYPE=Release -DVC_WERROR=ON -DVC_BUILD_BENCH=ON \
  -DRTI1516_ROOT="$root" >/dev/null
programs=(vcbench orbitController controller_bench pdu_bench interaction_bench drawer_bench)
cmake --build build-ext -j "$jobs" --target "${programs[@]}" >/dev/null
echo "external RTI: built ${programs[*]} against $(ls "$root/lib" | tr '\n' ' ')"

# Every program must take the RTI from the prefix, not one the build made.
for p in vcbench controller_bench; do
  rti=$(ldd "build-ext/bin/$p" | sed -n 's/.*librti1516_64[^ ]* => \([^ ]*\).*/\1/p')
  case "$rti" in "$root"/*) ;; *) echo "external RTI: $p uses '$rti'" >&2; exit 1 ;; esac
done

check() {
  local what=$1 out
  shift
  if ! out=$("$@" 2>&1); then
    echo "external RTI: $what FAILED" >&2
    echo "$out" >&2
    exit 1
  fi
  printf '%s\n' "$out"
}

fdd=share/fom/VistrelControl.xml
for mode in "" --library; do
  out=$(check "vcbench $mode" build-ext/bin/vcbench -f thread://ext --fdd "$fdd" -n 20000 -p 200 $mode)
  grep -q '^throughput=[0-9]* interactions/s$' <<<"$out" || { echo "external RTI: vcbench $mode printed no throughput:" >&2; echo "$out" >&2; exit 1; }
  echo "external RTI: vcbench ${mode:-raw}: $(grep '^throughput=' <<<"$out")"
done
for b in controller_bench pdu_bench interaction_bench drawer_bench; do
  out=$(check "$b" "build-ext/bin/$b" --benchmark_min_time=0.001)
  echo "external RTI: $b ran $(grep -c '^BM_' <<<"$out") benchmarks"
done
echo "external RTI: passed"
