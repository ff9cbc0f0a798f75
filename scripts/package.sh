#!/usr/bin/env bash
# Sets up, builds the Debian packages and prints where they are.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh --packages
build=build/packages
cmake --preset packages >/dev/null
cmake --build --preset packages >/dev/null
rm -f "$build"/*.deb
cpack --config "$build/CPackConfig.cmake" -B "$build" &>"$build/cpack.log" || { cat "$build/cpack.log" >&2; exit 1; }
printf '%s\n' "$build"/*.deb
