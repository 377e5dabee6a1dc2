#!/usr/bin/env bash
# The installed tree must work like the build tree: install into a fresh prefix, then
# export an example through the installed host, plug-in and engine, and validate the file.
set -euo pipefail
build="$1"
source_dir="$2"
prefix="$(mktemp -d "${TMPDIR:-/tmp}/qae-install-XXXXXX")"
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
test -x "$prefix/bin/aehost"
test -x "$prefix/bin/orytool"
test -f "$prefix/lib/quillon-ae/AfterEffects/Plug-ins/Quillon by Vantor/quillon_ae.so"
test -f "$prefix/lib/quillon-ae/Vantor Orrery Studio 2024/libquillon.so"
# Nothing of the build tree may be found by the installed tools.
env -u AEHOST_APP_DIR -u QUILLON_ENGINE_DIR \
  "$prefix/bin/aehost" export "$source_dir/examples/rig.json" --comp Rig \
  --output "$prefix/rig.ory" --quiet
"$prefix/bin/orytool" validate "$prefix/rig.ory"
dump="$("$prefix/bin/orytool" dump "$prefix/rig.ory")"
grep -q QUILLON_EXPORT_ROOT_NODE <<<"$dump"
echo "installed tree exports and validates"
