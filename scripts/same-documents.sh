#!/usr/bin/env bash
# Builds the tool by several presets and compares the documents, exact ones too, that each makes of
# our samples, the corpus and the reference files: compilers, levels of optimisation, versions of
# Qt, threads, locales and runs must not show in them. The first preset's are the measure.
# usage: scripts/same-documents.sh PRESET...      such as dev qt5 fuzz coverage
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ $# -eq 0 ]; then
    echo "usage: $0 PRESET..." >&2
    exit 2
fi
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

environment=() # of the tool

# Converts all files with the tool of PRESET, with the further arguments, and prints one sum for
# each document.
documents() {
    rm -rf "$out/svg"
    # Some of the files are damaged, so the status tells nothing.
    env "${environment[@]}" "build/$1/cli/metafile2svg" -q -r --force "${@:2}" -o "$out/svg/" \
        samples ../shared/corpus ../shared/reference >"$out/messages" 2>&1 || true
    (cd "$out/svg" && find . -type f -print0 | sort -z | xargs -0 sha256sum)
}

status=0
compare() {
    documents "${@:2}" >"$out/sums"
    if [ ! -e "$out/measure$1" ]; then
        mv "$out/sums" "$out/measure$1"
    elif ! diff "$out/measure$1" "$out/sums" >"$out/differ"; then
        echo "differ: ${*:2}"
        sed -n 's/^> [0-9a-f]*//p' "$out/differ" | head -n 10
        status=1
    fi
    echo "${*:2}: $(wc -l <"$out/measure$1") documents"
}

for preset in "$@"; do
    cmake --preset "$preset" >"$out/log" 2>&1 && cmake --build --preset "$preset" --target metafile2svg >>"$out/log" 2>&1 || {
        cat "$out/log"
        exit 1
    }
    compare .picture "$preset" -j 2
    compare .exact "$preset" -j 2 --exact
done
for language in tr_TR de_DE; do
    localedef -i "$language" -f UTF-8 "$out/$language.UTF-8" >/dev/null 2>&1
    environment=(LOCPATH="$out" LC_ALL="$language.UTF-8")
    compare .picture "$1" -j 1
done
environment=()
compare .picture "$1" -j 32
exit "$status"
