#!/usr/bin/env bash
# Builds the benchmarks optimised, runs them and prints tables of ratios in Markdown. What else it
# says goes to standard error. Nothing else should run on the machine meanwhile.
# usage: scripts/bench.sh [FILTER]      a regular expression for names of families
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

./scripts/setup.sh bench >&2
cmake --preset release -DSVGTOOL_BUILD_BENCHMARKS=ON >&2
cmake --build --preset release --target conversion_benchmark >&2
# Memory once taken stays with the process: to get new pages for each large document takes the
# kernel longer than all else, and tells nothing about this code.
export MALLOC_MMAP_THRESHOLD_=1000000000 MALLOC_TRIM_THRESHOLD_=1000000000
build/release/bench/conversion_benchmark --benchmark_format=console --benchmark_out_format=json \
    --benchmark_out=build/release/bench.json --benchmark_min_time=0.1 \
    --benchmark_repetitions=5 --benchmark_filter="${1-.}" >&2
python3 scripts/bench_table.py build/release/bench.json
