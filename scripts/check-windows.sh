#!/usr/bin/env bash
# Sets up, cross-builds the library for Windows (DLL, import library) with its tests, and runs them all with Wine.
# Left out is what does not exist there: the command-line host, which draws with Cairo, and the tests of it, of an
# installed copy and of the README.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh --windows
cmake --preset windows
cmake --build --preset windows
ctest --preset windows
