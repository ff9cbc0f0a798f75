#!/usr/bin/env bash
# Sets up, builds and runs every fuzz target, as many at a time as the machine has cores, each for a number of seconds.
# What a run learns stays in build/fuzz/corpus for the next one. Ends with a status other than 0 if something was found
# and says where the inputs are; give them names below fuzz/regressions/, and every test run replays them.
# Usage: scripts/fuzz.sh [SECONDS [TARGET...]]   (60 seconds, all targets unless said)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(fcs_reader spillover gating_ml fcs_data pool gates)

scripts/setup.sh --fuzz
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
build=build/fuzz
"$build/fuzz/fuzz_seeds" "$build/seeds"

# An input that makes its target take 64 MiB at once, half a gigabyte in all or ten seconds is a finding, too.
run() {
    local target=$1 corpus=build/fuzz/corpus/$1 findings=build/fuzz/findings/$1
    mkdir -p "$corpus" "$findings"
    local options=(-max_total_time="$2" -max_len=6000 -timeout=10 -malloc_limit_mb=64 -rss_limit_mb=768
                   -artifact_prefix="$findings/" -print_final_stats=1)
    if [ -f "fuzz/$target.dict" ]; then options+=(-dict="fuzz/$target.dict"); fi
    local folders=("$corpus" "build/fuzz/seeds/$target")
    if [ -d "fuzz/regressions/$target" ]; then folders+=("fuzz/regressions/$target"); fi
    if "build/fuzz/fuzz/fuzz_$target" "${options[@]}" "${folders[@]}" >"$findings/log" 2>&1; then
        echo "$target: nothing found, $(sed -n 's/^stat::number_of_executed_units: *//p' "$findings/log") inputs"
    else
        echo "$target: something found, see $PWD/$findings/log"
        return 1
    fi
}
export -f run
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -c 'run "$@"' run {} "$seconds"
