#!/usr/bin/env bash
# Runs the archive example for a cluster on 2,000 files, with two workers of which one is killed, and
# once more after all of it was.
# usage: scripts/test-cluster.sh [LIBRARY]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
library=${1:-$root/build/release/picture/api/libSVGToolPicture.so}
"$root/scripts/setup.sh" cluster
SVGTOOL_LIBRARY=$(realpath "$library") /usr/bin/python3 "$root/tests/python/test_cluster.py"
