#!/usr/bin/env bash
# Sets up the machine, builds everything and runs every test.
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
bash "$here/scripts/setup.sh"
bash "$here/scripts/build.sh" -DQAE_WERROR=ON
build="${QAE_BUILD_DIR:-$here/build}"
ctest --test-dir "$build" --output-on-failure -j "$(nproc)"
