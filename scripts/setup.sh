#!/usr/bin/env bash
# Installs the Debian packages the project needs. Safe to run again; it installs only
# what is missing.
#   scripts/setup.sh           everything: the build, the tests (the browser test
#                              included), the sanitizer and fuzz builds, valgrind, the
#                              format check and the benchmarks (CI)
#   scripts/setup.sh --build   only what building the library and the tools and running
#                              the demo need
# A package the build or the demo uses goes into build_packages; one only the checks
# use goes into check_packages.
set -euo pipefail

build_packages=(
  build-essential cmake ninja-build pkg-config
  # Configuring finds GoogleTest even when only the tools are built.
  libgtest-dev libgmock-dev googletest
  libpugixml-dev libasio-dev
  # vcviewer's live page.
  libcpp-httplib-dev libjs-three
)
check_packages=(
  libbenchmark-dev
  clang libclang-rt-dev clang-format
  valgrind
  chromium
  # The API reference (the docs target).
  doxygen
)

checks=yes
case "${1:-}" in
  "") ;;
  --build) checks=no ;;
  -h|--help) sed -n '2,11p' "$0"; exit 0 ;;
  *) echo "setup.sh: unknown option $1 (try --help)" >&2; exit 2 ;;
esac

packages=("${build_packages[@]}")
if [ "$checks" = yes ]; then
  packages+=("${check_packages[@]}")
  # Node and npm run the browser test; a machine may have them from elsewhere already.
  if ! command -v node >/dev/null || ! command -v npm >/dev/null; then packages+=(nodejs npm); fi
fi

# The browser test's driver, pinned by tests/browser/package-lock.json. It never fetches a
# browser of its own: the test uses Debian's Chromium.
install_browser_driver() {
  [ "$checks" = yes ] || return 0
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
  echo "setup: all needed packages are installed"
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
