#!/usr/bin/env bash
# Sets up, builds and shows what Orvane does with a list-mode file: the one given, with a gating strategy if there is
# one for it, or one that it acquires from its simulated instrument and gates with examples/strategy.xml.
# Usage: scripts/demo.sh [FILE.fcs [STRATEGY.xml]]
set -euo pipefail
file=${1:+$(realpath "$1")}
strategy=${2:+$(realpath "$2")}
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target orvane_program

orvane=build/release/host/orvane
out=build/demo
mkdir -p "$out"
acquired=
if [ -z "$file" ]; then
    acquired=yes
    file=$out/sample.fcs
    strategy=examples/strategy.xml
    "$orvane" acquire --events 50000 --gates "$strategy" -o "$file"
    echo
fi
gates=()
if [ -n "$strategy" ]; then gates=(--gates "$strategy"); fi

"$orvane" info "$file"
echo
"$orvane" stats "$file"
"$orvane" stats "$file" --format csv -o "$out/statistics.csv"
"$orvane" stats "$file" --format json -o "$out/statistics.json"
"$orvane" report "$file" "${gates[@]}" -o "$out/report.html"
results=("$out/report.html" "$out/statistics.csv" "$out/statistics.json")

if [ -n "$strategy" ]; then
    echo
    "$orvane" gate "$file" "${gates[@]}"
    "$orvane" stats "$file" "${gates[@]}" --format csv -o "$out/populations.csv"
    results+=("$out/populations.csv")
fi
if [ -n "$acquired" ]; then
    "$orvane" plot "$file" "${gates[@]}" --x FSC-A --y SSC-A --population Singlets -o "$out/scatter.png"
    "$orvane" plot "$file" "${gates[@]}" --x PerCP-Cy5-5-A --y PE-A --population "T cells" --kind contour \
        -o "$out/cd4-cd8.png"
    results+=("$out/scatter.png" "$out/cd4-cd8.png")
fi

echo
echo "To open:"
printf "  $PWD/%s\n" "${results[@]}"
