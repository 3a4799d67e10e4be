#!/usr/bin/env bash
# Installs every Debian package the build, the tests, the fuzzers and the benchmarks
# need. Safe to run again; it installs only what is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  libpugixml-dev libasio-dev
  clang libclang-rt-dev clang-format
  valgrind
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all build dependencies are installed"
  exit 0
fi

echo "setup: installing ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
