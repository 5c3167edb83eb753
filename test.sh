#!/usr/bin/env bash
# Everything that must hold: formatting, spelling, metadata, static checks, the layers, the tests in
# the reference build and under the sanitizers. Ends in the test runner's own closing line.
#
#   ./test.sh           all of it
#   ./test.sh quick     only the tests of the reference build
set -euo pipefail
cd "$(dirname "$0")"
. tools/scripts/packages.sh

step() { printf '\n== %s (%d s)\n' "$1" "$SECONDS"; }

# Says nothing while all is well, and everything when it isn't.
quietly() {
  local log
  log=$(mktemp)
  if ! "$@" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

build() {
  local preset=$1
  shift
  [ -e "build/$preset/build.ninja" ] || quietly cmake --preset "$preset"
  quietly cmake --build --preset "$preset" "$@"
}

jobs=$(nproc)
# shellcheck disable=SC2086
need_packages $BUILD_PACKAGES $RUN_PACKAGES $TEST_PACKAGES

if [ "${1:-all}" != quick ]; then
  step "Formatting, spelling, metadata"
  tools/scripts/check.sh

  step "Layers as shared libraries, and each header by itself"
  build shared --target morvane_ui all_verify_interface_header_sets

  step "Build with the sanitizers"
  build asan
  step "Static checks"
  tools/scripts/tidy.sh build/asan
  step "Tests with the sanitizers"
  ctest --preset asan -j "$jobs"
fi

step "Reference build"
# run.sh configures this build without its tests.
quietly cmake --preset release -DBUILD_TESTING=ON -DMORVANE_BENCHMARKS=ON -DMORVANE_WERROR=ON
build release
step "Tests"
ctest --test-dir build/release --output-on-failure -j "$jobs"
