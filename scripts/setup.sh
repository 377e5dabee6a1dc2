#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests and the benchmarks need.
# Idempotent: only what is missing is installed, and the package lists are
# refreshed once, only when something has to be installed.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  clang libclang-rt-dev          # libFuzzer and the sanitizer runtimes
  libjsoncpp-dev duktape-dev libcli11-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  zlib1g-dev                     # checksums of scene files
  libpng-dev                     # the PNG previews of orytool render and of rendered bitmaps
  libfontconfig-dev libfreetype-dev fonts-dejavu-core  # the font catalogue of the text export, and fonts its tests know
  python3
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all ${#packages[@]} packages present"
  exit 0
fi

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq "${missing[@]}"
