#!/usr/bin/env bash
# Sets up the machine and runs every check CI runs, in three stages:
#   1. build with warnings as errors into build/ and run every test;
#   2. build again with AddressSanitizer, UndefinedBehaviorSanitizer and LeakSanitizer into
#      build-asan/ and run every test there; any sanitizer report, also from a process a test
#      started (aehost, orytool), fails the stage;
#   3. build the libFuzzer targets and run each for 30 seconds.
#   bash scripts/test.sh            all three stages (what CI runs)
#   bash scripts/test.sh --quick    stage 1 only
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
quick=0
case "${1:-}" in
  "") ;;
  --quick) quick=1 ;;
  *) echo "test.sh: unknown option \"$1\" (use --quick for the plain build and tests only)" >&2; exit 2 ;;
esac

stage() { echo; echo "== test.sh: $* ($(date -u +%H:%M:%S))"; }

bash "$here/scripts/setup.sh"

stage "build and tests"
build="${QAE_BUILD_DIR:-$here/build}"
QAE_BUILD_DIR="$build" bash "$here/scripts/build.sh" -DQAE_WERROR=ON
ctest --test-dir "$build" --output-on-failure -j "$(nproc)"
if (( quick )); then exit 0; fi

stage "build and tests under the sanitizers"
asan="${QAE_ASAN_BUILD_DIR:-$here/build-asan}"
QAE_BUILD_DIR="$asan" bash "$here/scripts/build.sh" -DQAE_SANITIZE=ON -DQAE_WERROR=ON -DCMAKE_BUILD_TYPE=Debug
# Reports go to files rather than to the streams the tests read, so that a leak in a child
# process whose exit code a test does not look at is still seen here.
reports="$asan/sanitizer-reports"
rm -rf "$reports" && mkdir -p "$reports"
ASAN_OPTIONS="detect_leaks=1:log_path=$reports/asan" \
  UBSAN_OPTIONS="print_stacktrace=1:log_path=$reports/ubsan" \
  ctest --test-dir "$asan" --output-on-failure -j "$(nproc)"
if compgen -G "$reports/*" >/dev/null; then
  echo "test.sh: the sanitizers reported problems:" >&2
  for report in "$reports"/*; do echo "--- $report" >&2; head -n 60 "$report" >&2; done
  exit 1
fi

stage "fuzz targets, 30 seconds each"
bash "$here/scripts/fuzz.sh" 30
stage "all checks passed"
