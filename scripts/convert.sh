#!/usr/bin/env bash
# Installs what is missing, builds the tool and converts the metafiles given, or else a sample.
# usage: scripts/convert.sh [FILE...]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

"$root/scripts/setup.sh" build
(cd "$root" && cmake --workflow --preset release)

[ $# -gt 0 ] || set -- "$root/samples/chart.emf"
out=$root/out
mkdir -p "$out"
status=0
declare -A taken=()
echo
for file in "$@"; do
    # Two files of one name in different folders both get their result.
    name=${file##*/}
    svg=$name.svg
    for ((n = 2; ${taken[$svg]-0}; ++n)); do
        svg=$name-$n.svg
    done
    taken[$svg]=1
    result=0
    "$root/build/release/cli/metafile2svg" -o "$out/$svg" -- "$file" || result=$?
    # 3 means that the document is there, but of a damaged file.
    case $result in
    0 | 3) echo "$file -> $out/$svg" ;;
    *) status=1 ;;
    esac
done
exit "$status"
