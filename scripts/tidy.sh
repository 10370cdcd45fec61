#!/usr/bin/env bash
# Runs clang-tidy over our own sources, or over FILE..., with the checks that .clang-tidy counts as
# errors. After MINUTES no further file is begun: what the last commit changed comes first, then
# the others, each time in another order. Whatever is found is printed and gives status 1.
# usage: scripts/tidy.sh [-m MINUTES] [FILE...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

minutes=1000
if [ "${1-}" = -m ]; then
    minutes=$2
    shift 2
fi
./scripts/setup.sh tidy
cmake --preset tidy >/dev/null

files=("$@")
if [ $# -eq 0 ]; then
    # What this build does not compile, such as Windows' font engine, has no flags to be read with.
    mapfile -t files < <({
        git diff --name-only --diff-filter=d 'HEAD~1' -- 2>/dev/null || true
        git ls-files | shuf --random-source=<(yes "$(git rev-parse HEAD)")
    } | grep -E '^(core|exact|picture|cli)/.*\.cpp$' | awk '!seen[$0]++' | while read -r file; do
        if grep -qF "/$file\"" build/tidy/compile_commands.json; then echo "$file"; fi
    done)
fi
seen=$(mktemp)
trap 'rm -f "$seen"' EXIT
export seen deadline=$(($(date +%s) + minutes * 60))
look() {
    [ "$(date +%s)" -lt "$deadline" ] || return 0
    echo "$1" >>"$seen"
    clang-tidy -p build/tidy --quiet --checks='-misc-*,-modernize-*,-readability-*' "$1" 2>/dev/null
}
export -f look
status=0
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c 'look "$0"' || status=1
echo "tidy: looked at $(wc -l <"$seen") of ${#files[@]} files"
exit "$status"
