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
  libcpp-httplib-dev libjs-three
  chromium
)
# Node and npm run the browser test; a machine may have them from elsewhere already.
if ! command -v node >/dev/null || ! command -v npm >/dev/null; then packages+=(nodejs npm); fi

# The browser test's driver, pinned by tests/browser/package-lock.json. It never fetches a
# browser of its own: the test uses Debian's Chromium.
install_browser_driver() {
  local dir
  dir="$(cd "$(dirname "$0")/.." && pwd)/tests/browser"
  [ -d "$dir/node_modules/puppeteer-core" ] && return 0
  echo "setup: installing puppeteer-core for the browser test"
  (cd "$dir" && PUPPETEER_SKIP_DOWNLOAD=1 npm ci --no-audit --no-fund --ignore-scripts --loglevel=error)
}

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all build dependencies are installed"
  install_browser_driver
  exit 0
fi

echo "setup: installing ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
install_browser_driver
