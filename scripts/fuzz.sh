#!/usr/bin/env bash
# Runs the fuzz targets for MINUTES in all, each for its share, or each for so many executions, as
# many at a time as there are processors. What they find lies in build/fuzz/findings; then the status
# is 1. Of the documents of the inputs that they keep every 20th is checked, too.
# usage: scripts/fuzz.sh MINUTES|EXECUTIONSx [TARGET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if ! [[ ${1-} =~ ^[1-9][0-9]*x?$ ]]; then
    echo "usage: $0 MINUTES|EXECUTIONSx [TARGET]" >&2
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
if [[ $1 == *x ]]; then
    limit=-runs=${1%x}
else
    limit=-max_total_time=$(($1 * 60 / rounds))
fi

# Allocations are not told of, and memory comes back sooner, which saves a third of the time. A
# finding that is run by itself tells all.
export ASAN_OPTIONS=malloc_context_size=0:quarantine_size_mb=16${ASAN_OPTIONS:+:$ASAN_OPTIONS}

# Some documents of a target's inputs.
check_documents() {
    local target=$1
    local documents=$build/documents/$target
    rm -rf "$documents"
    mkdir -p "$documents"
    find "$build/inputs/$target" -type f | sort | sed -n '0~20p' |
        SVGTOOL_FUZZ_DOCUMENTS=$documents xargs -r "$build/fuzz/fuzz_$target" >/dev/null 2>&1
    scripts/check-documents.sh "$documents" 10 | tail -n 20 | sed "s/^/$target: /"
}

# Inputs that took long are kept as well, but only what ends a run is a finding: a second is soon
# gone on a busy machine. Features are not weighed and functions not named, which would take half of
# the time.
fuzz() {
    local target=$1
    local log=$build/$target.log
    mkdir -p "$build/inputs/$target" "$findings/$target"
    local inputs=("$build/inputs/$target" "fuzz/corpus/$target")
    local longest=4096
    case $target in
    picture_text | picture_clips | picture_blits | picture_interface) longest=1024 ;;
    esac
    local format=${target#picture_}
    local samples=../shared/corpus/${format/#picture/emf}
    if [ -d "$samples" ]; then
        inputs+=("$build/samples/$target")
        rm -rf "${inputs[-1]}"
        mkdir -p "${inputs[-1]}"
        find "$samples" -type f -size "-${longest}c" -exec cp -t "${inputs[-1]}" {} +
    fi
    if "$build/fuzz/fuzz_$target" "$limit" -max_len=$longest -entropic=0 -print_funcs=0 -timeout=10 \
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
