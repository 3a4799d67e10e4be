#!/usr/bin/env bash
# Installs the build into a fresh prefix, moves the prefix elsewhere, and builds a small
# consumer out of tree against it twice: with find_package(VistrelControl) and with
# pkg-config. Both must run, and so must the installed tools, whichever RTI the build
# uses: the embedded one (installed beside the library in directories of its own) or one
# installed elsewhere (RTI1516_ROOT), whose libraries the package names by their paths.
# A build with the IEEE 1516-2010 flavour as well (RTI1516E_ROOT) is checked the same way
# for that flavour: its library, FOM module and tools, the CMake target
# VistrelControl::vistrelControlToolkitHLA1516e and the pkg-config name vistrelcontrol-1516e.
#   install_consumer.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
  echo "packaging: $*" >&2
  exit 1
}

cmake --install "$build" --prefix "$work/staged" >/dev/null
# Nothing may depend on where the prefix was when it was installed.
mv "$work/staged" "$work/prefix"
prefix=$work/prefix
lib=$prefix/lib
test -L "$lib/libvistrelControlToolkitHLA1516.so" || fail "no libvistrelControlToolkitHLA1516.so link"
test -L "$lib/libvistrelControlToolkitHLA1516.so.54" || fail "no .so.54 link"
test -f "$lib/libvistrelControlToolkitHLA1516.so.54.0.0" || fail "no .so.54.0.0"
soname=$(readelf -d "$lib/libvistrelControlToolkitHLA1516.so.54.0.0" | sed -n 's/.*SONAME.*\[\(.*\)\]/\1/p')
[ "$soname" = "libvistrelControlToolkitHLA1516.so.54" ] || fail "bad SONAME $soname"
test -f "$prefix/include/vistrelcontrol/vistrelControl.h" || fail "no vistrelControl.h"
fdd=$prefix/share/vistrelcontrol/fom/VistrelControl.xml
test -f "$fdd" || fail "no FDD"
fdd=$(realpath "$fdd")

# Another RTI installed in the same prefix keeps its own include/RTI/ and libraries.
for clash in "$prefix/include/RTI" "$lib"/librti1516* "$lib"/libfedtime1516*; do
  [ ! -e "$clash" ] || fail "$clash is where another RTI installs"
done
if [ -x "$prefix/bin/rtihub" ]; then
  rti=embedded
  for f in include/vistrelcontrol/rti1516/RTI/RTIambassador.h \
    include/vistrelcontrol/rti1516/RTI/SpecificConfig.h \
    lib/vistrelcontrol/rti1516/librti1516_64.so lib/vistrelcontrol/rti1516/libfedtime1516_64.so \
    include/rti1516e/RTI/RTIambassador.h include/rti1516e/RTI/SpecificConfig.h \
    include/rti1516e/RTI/time/HLAinteger64Time.h \
    lib/vistrelcontrol/rti1516e/librti1516e.so lib/vistrelcontrol/rti1516e/libfedtime1516e.so; do
    test -e "$prefix/$f" || fail "embedded RTI: no $f"
  done
else
  rti=external
fi

# The installed tools take the installed FDD, found from where they are now.
help=$("$prefix/bin/vcctl" --help)
grep -qF "$fdd" <<<"$help" || fail "vcctl --help names no $fdd:"$'\n'"$help"
! grep -qF "$source" <<<"$help" || fail "vcctl --help names the source tree"
"$prefix/bin/vcctl" --dry-run orbit 1:1:1 >/dev/null || fail "installed vcctl does not run"
out=$("$prefix/bin/vcbench" --federation thread://installed --count 2000 --pings 5) ||
  fail "installed vcbench did not run on the installed FDD:"$'\n'"$out"

echo "== find_package ($rti RTI)"
cmake -S "$source/tests/consumer" -B "$work/cmake-build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
printed=$(cmake --build "$work/cmake-build" --target print-fdd)
case "$printed" in *"FDD=$fdd"*) ;; *) fail "find_package gave no FDD path" ;; esac
"$work/cmake-build/consumer" "$fdd"

echo "== the installed examples ($rti RTI)"
examples=$prefix/share/vistrelcontrol/examples
test -f "$examples/firstApplication.cpp" || fail "no examples in $examples"
cmake -S "$examples" -B "$work/examples-build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null ||
  fail "the installed examples do not configure"
cmake --build "$work/examples-build" >/dev/null || fail "the installed examples do not build"
# In a federation of its own process the drawer has no one to draw for, but runs through.
"$work/examples-build/drawScene" thread://installed-examples "$fdd" 1:1:1 1:1:2 0 >/dev/null ||
  fail "the installed drawScene did not run"
if [ -f "$lib/libvistrelControlToolkitHLA1516e.so.54.0.0" ]; then
  test -x "$work/examples-build/firstApplication-1516e" || fail "no 1516-2010 examples built"
fi

echo "== pkg-config ($rti RTI)"
export PKG_CONFIG_PATH=$lib/pkgconfig
[ "$(realpath "$(pkg-config --variable=fdd vistrelcontrol)")" = "$(realpath "$fdd")" ] ||
  fail "pkg-config names another FDD"
# shellcheck disable=SC2046
c++ -std=c++17 -o "$work/pc-consumer" "$source/tests/consumer/consumer.cpp" $(pkg-config --cflags --libs vistrelcontrol)
"$work/pc-consumer" "$fdd"

evolved=$lib/libvistrelControlToolkitHLA1516e.so.54.0.0
if [ ! -f "$evolved" ]; then
  printed_has=$(cmake --build "$work/cmake-build" --target print-fdd)
  case "$printed_has" in *"HAS_1516E=FALSE"*) ;; *) fail "find_package claims a 1516-2010 flavour" ;; esac
  echo "packaging: both consumers ran ($rti RTI)"
  exit 0
fi
echo "== IEEE 1516-2010 flavour"
soname=$(readelf -d "$evolved" | sed -n 's/.*SONAME.*\[\(.*\)\]/\1/p')
[ "$soname" = "libvistrelControlToolkitHLA1516e.so.54" ] || fail "bad SONAME $soname"
test -L "$lib/libvistrelControlToolkitHLA1516e.so" || fail "no libvistrelControlToolkitHLA1516e.so link"
fom=$prefix/share/vistrelcontrol/fom/VistrelControl-1516e.xml
test -f "$fom" || fail "no 1516-2010 FOM module"
fom=$(realpath "$fom")
help=$("$prefix/bin/vcctl-1516e" --help)
grep -qF "$fom" <<<"$help" || fail "vcctl-1516e --help names no $fom:"$'\n'"$help"
version=$("$prefix/bin/vcctl-1516e" --version)
grep -q '^library libvistrelControlToolkitHLA1516e.so.54,' <<<"$version" ||
  fail "vcctl-1516e --version names another library:"$'\n'"$version"
grep -q '^RTI: .*rti1516e' <<<"$version" || fail "vcctl-1516e is not over a 1516-2010 RTI:"$'\n'"$version"
out=$("$prefix/bin/vcbench-1516e" --federation thread://installed --count 2000 --pings 5) ||
  fail "installed vcbench-1516e did not run on the installed FOM module:"$'\n'"$out"

cmake -S "$source/tests/consumer" -B "$work/cmake-build-e" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
  -DCONSUMER_LIBRARY=vistrelControlToolkitHLA1516e >/dev/null
cmake --build "$work/cmake-build-e" >/dev/null
printed=$(cmake --build "$work/cmake-build-e" --target print-fdd)
case "$printed" in *"FOM_1516E=$fom"*) ;; *) fail "find_package gave no 1516-2010 FOM module path" ;; esac
"$work/cmake-build-e/consumer" "$fom"
[ "$(realpath "$(pkg-config --variable=fdd vistrelcontrol-1516e)")" = "$fom" ] ||
  fail "pkg-config vistrelcontrol-1516e names another FOM module"
# shellcheck disable=SC2046
c++ -std=c++17 -o "$work/pc-consumer-e" "$source/tests/consumer/consumer.cpp" $(pkg-config --cflags --libs vistrelcontrol-1516e)
"$work/pc-consumer-e" "$fom"
echo "packaging: both consumers ran for both flavours ($rti RTI)"
