#!/usr/bin/env bash
# Runs the fuzz targets for MINUTES in all, each for its share, as many at a time as there are
# processors. What they find lies in build/fuzz/findings; then the status is 1.
# usage: scripts/fuzz.sh MINUTES [TARGET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

minutes=${1-}
if ! [[ $minutes =~ ^[0-9]+$ ]] || [ "$minutes" -eq 0 ]; then
    echo "usage: $0 MINUTES [TARGET]" >&2
    exit 2
fi

./scripts/setup.sh fuzz
cmake --preset fuzz
cmake --build --preset fuzz --target fuzzers

build=build/fuzz
findings=$build/findings
targets=()
for folder in fuzz/corpus/*/; do
    targets+=("$(basename "$folder")")
done
if [ $# -ge 2 ]; then
    targets=("$2")
fi

jobs=$(nproc)
rounds=$(((${#targets[@]} + jobs - 1) / jobs))
seconds=$((minutes * 60 / rounds))

# Inputs that took long are kept as well, but only what ends a run is a finding: a second is soon
# gone on a busy machine.
fuzz() {
    local target=$1
    local log=$build/$target.log
    mkdir -p "$build/inputs/$target" "$findings/$target"
    local inputs=("$build/inputs/$target" "fuzz/corpus/$target")
    mkdir -p "${inputs[0]}"
    local format=${target#picture_}
    local samples=../shared/corpus/${format/#picture/emf}
    if [ -d "$samples" ]; then
        inputs+=("$samples")
    fi
    if "$build/fuzz/fuzz_$target" -max_total_time="$seconds" -max_len=16384 -timeout=10 \
        -report_slow_units=1 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$findings/$target/" "${inputs[@]}" >"$log" 2>&1; then
        echo "$target: no finding; $(grep -o 'executed_units: .*' "$log"), $(grep -o 'cov: [0-9]*' "$log" | tail -1)"
    else
        echo "$target: FOUND something; the end of $log:"
        tail -n 40 "$log"
        return 1
    fi
}

status=0
for ((first = 0; first < ${#targets[@]}; first += jobs)); do
    pids=()
    for target in "${targets[@]:first:jobs}"; do
        fuzz "$target" &
        pids+=($!)
    done
    for pid in "${pids[@]}"; do
        wait "$pid" || status=1
    done
done
exit "$status"
