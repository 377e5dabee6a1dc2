#!/usr/bin/env bash
# Sets up the machine, builds everything and runs the main job on the built-in example:
# exports the composition "Rig" of examples/rig.json through the plug-in, as a user's
# click on File > Export would; aehost prints the summary line of the scene file it wrote.
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
bash "$here/scripts/setup.sh"
bash "$here/scripts/build.sh"
build="${QAE_BUILD_DIR:-$here/build}"
out="${QAE_DEMO_OUTPUT:-$build/demo/rig.ory}"
mkdir -p "$(dirname "$out")"
"$build/bin/aehost" export "$here/examples/rig.json" --comp Rig --output "$out"
echo "every object, tag, track and marker: $build/bin/orytool dump $out"
