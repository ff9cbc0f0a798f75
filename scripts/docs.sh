#!/usr/bin/env bash
# Makes the reference of the exported headers. Fails where something exported is not documented.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh --docs
mkdir -p build
doxygen docs/Doxyfile
echo "build/docs/html/index.html"
