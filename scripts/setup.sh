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
  zlib1g-dev libdeflate-dev      # checksums of scene files
  libpng-dev                     # the PNG previews of orytool render and of rendered bitmaps
  libfontconfig-dev libfreetype-dev fonts-dejavu-core  # the font catalogue of the text export, and fonts its tests know
  libtinygltf-dev libglu1-mesa-dev  # orytool gltf: the glTF writer and the tessellator of spline faces
  python3
)
# The Khronos glTF validator runs on Node; Debian's Node and npm unless a Node with npm is there.
command -v npm >/dev/null 2>&1 || packages+=(nodejs npm)

# The validator comes from the npm registry into a folder of the tree that git ignores.
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
validator_version=2.0.0-dev.3.10
install_gltf_validator() {
  local package="$root/build-tools/node_modules/gltf-validator/package.json"
  if [ -f "$package" ] && grep -q "\"version\": \"$validator_version\"" "$package"; then
    return
  fi
  echo "setup: installing gltf-validator $validator_version into build-tools/"
  npm install --prefix "$root/build-tools" --no-audit --no-fund --loglevel=error "gltf-validator@$validator_version"
}

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all ${#packages[@]} packages present"
  install_gltf_validator
  exit 0
fi

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq "${missing[@]}"
install_gltf_validator
