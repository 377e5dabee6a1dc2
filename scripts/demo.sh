#!/usr/bin/env bash
# Sets up the machine, builds everything and runs the main job on the built-in example.
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
bash "$here/scripts/setup.sh"
bash "$here/scripts/build.sh"
build="${QAE_BUILD_DIR:-$here/build}"
"$build/bin/aehost" --help
