#!/usr/bin/env bash
# Builds the libFuzzer targets with clang into build-fuzz/ (or $QAE_FUZZ_BUILD_DIR) and
# runs each for N seconds (first argument, default 30) on its seed corpus. Exits non-zero
# as soon as a target finds a crash, a leak or a hang; the input that did it is kept in
# <build>/findings/.
#   bash scripts/fuzz.sh [seconds] [target ...]     (all targets when none is named)
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
build="${QAE_FUZZ_BUILD_DIR:-$here/build-fuzz}"
seconds="${1:-30}"
chosen=("${@:2}")
if ! [[ "$seconds" =~ ^[1-9][0-9]*$ ]]; then
  echo "fuzz.sh: seconds must be a whole number above 0, not \"$seconds\"" >&2
  exit 2
fi

# target name, then the seed corpus in the source tree ("-" when the target starts from nothing)
targets=(
  "scene_file_fuzz quillon/fuzz/corpus"
  "scene_json_fuzz quillon/fuzz/json_corpus"
  "project_json_fuzz aehost/model/tests/data"
  "string_file_fuzz plugin/support/res/strings"
  "scene_header_fuzz quillon/fuzz/corpus"
  "opentype_tables_fuzz plugin/fuzz/opentype_corpus"
  "update_document_fuzz plugin/fuzz/update_corpus"
  "answers_fuzz -"
  "dialect_fuzz -"
)

if (( ${#chosen[@]} )); then
  kept=()
  for entry in "${targets[@]}"; do
    for name in "${chosen[@]}"; do [[ "${entry%% *}" == "$name" ]] && kept+=("$entry"); done
  done
  if (( ${#kept[@]} != ${#chosen[@]} )); then
    echo "fuzz.sh: unknown target among \"${chosen[*]}\"; the targets are: ${targets[*]%% *}" >&2
    exit 2
  fi
  targets=("${kept[@]}")
fi

cmake -S "$here" -B "$build" -G Ninja -DQAE_FUZZ=ON \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
names=()
for entry in "${targets[@]}"; do names+=("${entry%% *}"); done
cmake --build "$build" -j "$(nproc)" --target "${names[@]}"

mkdir -p "$build/findings"
for entry in "${targets[@]}"; do
  name="${entry%% *}"
  seeds="${entry#* }"
  # The fuzzer adds what it learns to a working corpus; the seeds in the tree stay as they are.
  work="$build/corpus/$name"
  mkdir -p "$work"
  if [[ "$seeds" != "-" ]]; then cp -n "$here/$seeds"/* "$work/" 2>/dev/null || true; fi
  echo "fuzz.sh: $name for ${seconds}s"
  if ! "$build/bin/$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
      -artifact_prefix="$build/findings/$name-" -print_final_stats=1 "$work" >"$build/findings/$name.log" 2>&1; then
    echo "fuzz.sh: $name found a problem; see $build/findings/$name.log" >&2
    tail -n 40 "$build/findings/$name.log" >&2
    exit 1
  fi
  grep -E '^stat::number_of_executed_units' "$build/findings/$name.log" || true
done
echo "fuzz.sh: no findings"
