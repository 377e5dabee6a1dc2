#!/usr/bin/env bash
# Configures and builds the whole tree into build/ (or $QAE_BUILD_DIR).
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
build="${QAE_BUILD_DIR:-$here/build}"
cmake -S "$here" -B "$build" -G Ninja "$@" >/dev/null
cmake --build "$build" -j "$(nproc)"
