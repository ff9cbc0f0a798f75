#!/usr/bin/env bash
# Sets up, builds and shows what Orvane does with a list-mode file: the one given, or a sample that it makes.
# Usage: scripts/demo.sh [FILE.fcs]
set -euo pipefail
file=${1:+$(realpath "$1")}
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target orvane_program make_sample

programs=build/release/host
out=build/demo
mkdir -p "$out"
if [ -z "$file" ]; then
    file=$out/sample.fcs
    strategy=examples/strategy.xml
    "$programs/make_sample" "$file"
fi

"$programs/orvane" info "$file"
echo
"$programs/orvane" stats "$file"
"$programs/orvane" stats "$file" --format csv -o "$out/statistics.csv"
"$programs/orvane" stats "$file" --format json -o "$out/statistics.json"

if [ -n "${strategy:-}" ]; then
    echo
    "$programs/orvane" gate "$file" --gates "$strategy"
    "$programs/orvane" stats "$file" --gates "$strategy" --format csv -o "$out/populations.csv"
fi

echo
echo "As tables for other programs:"
echo "  $PWD/$out/statistics.csv"
echo "  $PWD/$out/statistics.json"
if [ -n "${strategy:-}" ]; then echo "  $PWD/$out/populations.csv"; fi
