#!/usr/bin/env bash
# Checks that every C++ file of the project, new ones included, is as clang-format would write it.
# usage: scripts/check-format.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mapfile -d '' -t files < <(git ls-files -z -co --exclude-standard -- '*.h' '*.cpp')
if [ "${#files[@]}" -eq 0 ]; then
    echo "check-format: no C++ file was found" >&2
    exit 1
fi
clang-format --dry-run -Werror "${files[@]}"
echo "check-format: ${#files[@]} files are in order"
