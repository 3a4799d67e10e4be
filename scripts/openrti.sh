#!/usr/bin/env bash
# Builds OpenRTI, an RTI we did not write, from the archive beside the clone
# (../shared/third_party/OpenRTI-0.10.0-814a210.tar.gz, or $OPENRTI_ARCHIVE) and installs it
# into a prefix of its own, laid out as OpenRTI lays it out. Prints that prefix on stdout.
#   scripts/openrti.sh            -> /root/.cache/vistrelcontrol/openrti-0.10.0-e0998ed947a5
# The prefix ($OPENRTI_PREFIX, default under ${XDG_CACHE_HOME:-~/.cache}) is reused as long
# as it was built from an archive with the same checksum. Without the archive it fails
# under CI=true; elsewhere it says so and exits with 3, which callers take as "skip".
set -euo pipefail
cd "$(dirname "$0")/.."

archive=${OPENRTI_ARCHIVE:-../shared/third_party/OpenRTI-0.10.0-814a210.tar.gz}
if [ ! -f "$archive" ]; then
  if [ "${CI:-}" = true ]; then
    echo "openrti: archive $archive not found; CI builds and tests against OpenRTI and needs it" >&2
    exit 1
  fi
  echo "openrti: archive $archive not found; skipping what needs OpenRTI (set OPENRTI_ARCHIVE)" >&2
  exit 3
fi
archive=$(cd "$(dirname "$archive")" && pwd)/$(basename "$archive")
sum=$(sha256sum "$archive" | cut -c1-64)
prefix=${OPENRTI_PREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/vistrelcontrol/openrti-0.10.0-${sum:0:12}}
stamp=$prefix/.built-from
if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$sum" ] && [ -x "$prefix/bin/rtinode" ]; then
  echo "$prefix"
  exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
log=$work/log
echo "openrti: building $(basename "$archive") into $prefix (a few minutes on 2 cores)" >&2
tar -xzf "$archive" -C "$work"
src=$(find "$work" -mindepth 1 -maxdepth 1 -type d | head -n1)
# The 1516-2000 and 1516-2010 interfaces and the server; neither the HLA 1.3 interface
# nor the Python bindings are used here. The libraries carry their own run path, so that
# rtinode and programs linked against them load them from the prefix.
if ! { cmake -S "$src" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib \
  -DOPENRTI_ENABLE_RTI13=OFF -DOPENRTI_ENABLE_PYTHON_BINDINGS=OFF \
  -DOPENRTI_INSTALL_WITH_RPATH=ON &&
  cmake --build "$work/build" -j "${JOBS:-2}" &&
  rm -rf "$prefix" &&
  cmake --install "$work/build"; } >"$log" 2>&1; then
  tail -n 40 "$log" >&2
  echo "openrti: build FAILED" >&2
  exit 1
fi
echo "$sum" >"$stamp"
echo "$prefix"
