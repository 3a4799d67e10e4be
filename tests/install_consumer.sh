#!/usr/bin/env bash
# Installs the build into a fresh prefix and builds a small consumer out of tree against
# it twice: with find_package(VistrelControl) and with pkg-config. Both must run.
#   install_consumer.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
lib=$prefix/lib
test -L "$lib/libvistrelControlToolkitHLA1516.so"
test -L "$lib/libvistrelControlToolkitHLA1516.so.54"
test -f "$lib/libvistrelControlToolkitHLA1516.so.54.0.0"
soname=$(readelf -d "$lib/libvistrelControlToolkitHLA1516.so.54.0.0" | sed -n 's/.*SONAME.*\[\(.*\)\]/\1/p')
[ "$soname" = "libvistrelControlToolkitHLA1516.so.54" ] || { echo "bad SONAME $soname"; exit 1; }
test -f "$prefix/include/vistrelcontrol/vistrelControl.h"
test -f "$prefix/include/RTI/RTIambassador.h"
test -f "$prefix/include/RTI/SpecificConfig.h"
test -x "$prefix/bin/rtihub"
fdd=$prefix/share/vistrelcontrol/fom/VistrelControl.xml
test -f "$fdd"

echo "== find_package"
cmake -S "$source/tests/consumer" -B "$work/cmake-build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
printed=$(cmake --build "$work/cmake-build" --target print-fdd)
case "$printed" in *"FDD=$fdd"*) ;; *) echo "find_package gave no FDD path"; exit 1 ;; esac
"$work/cmake-build/consumer" "$fdd"

echo "== pkg-config"
export PKG_CONFIG_PATH=$lib/pkgconfig
[ "$(realpath "$(pkg-config --variable=fdd vistrelcontrol)")" = "$(realpath "$fdd")" ]
# shellcheck disable=SC2046
c++ -std=c++17 -o "$work/pc-consumer" "$source/tests/consumer/consumer.cpp" $(pkg-config --cflags --libs vistrelcontrol)
"$work/pc-consumer" "$fdd"
echo "packaging: both consumers ran"
