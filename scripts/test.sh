#!/usr/bin/env bash
# Installs what is missing, builds everything and runs all tests.
# usage: scripts/test.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

./scripts/setup.sh test
export CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$(nproc)}
cmake --workflow --preset dev
