#!/usr/bin/env bash
# Sets up, builds and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh --browser
cmake --preset release
cmake --build --preset release
ctest --preset release --parallel 2
