#!/usr/bin/env bash
# Runs the tests with counters and prints which lines of our own code they reach, by file and in
# all. The pages with every line are in build/coverage/report.
# usage: scripts/coverage.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

./scripts/setup.sh coverage
export CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$(nproc)}
# What is left of sources as they were is counted as well, and contradicts the rest.
rm -rf build/coverage
cmake --preset coverage
cmake --build --preset coverage
# The counters write files of their own at the end of a program, and complain where they cannot: of
# the tests that forbid such things one is left out, and of the others only what they reach counts.
ctest --preset coverage --exclude-regex '^house[.]symbols$' --label-exclude '^tool$'
ctest --preset coverage --label-regex '^tool$' >/dev/null || true
mkdir -p build/coverage/report
# Tests, fuzz targets and benchmarks are no part of it.
gcovr --root . --object-directory build/coverage --exclude-unreachable-branches \
    --filter '(cli|core|exact|picture)/' \
    --html-details build/coverage/report/index.html --print-summary
