#!/usr/bin/env bash
# Builds Morvane and opens it. On a fresh Debian 12 machine it first installs what is missing.
# Arguments go to the program.
set -euo pipefail
cd "$(dirname "$0")"
. tools/scripts/packages.sh

# shellcheck disable=SC2086
need_packages $BUILD_PACKAGES $RUN_PACKAGES
[ -e build/release/build.ninja ] ||
  cmake --preset release -DBUILD_TESTING=OFF -DMORVANE_BENCHMARKS=OFF >/dev/null
# Only a failing build has something to say.
log=build/release/run.log
cmake --build --preset release --target morvane morvane-tour >"$log" 2>&1 || {
  cat "$log" >&2
  exit 1
}

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "There is no display to open a window on: the tour plays the demo fight instead."
  exec build/release/bin/morvane-tour build/tour
fi
exec build/release/bin/morvane "$@"
