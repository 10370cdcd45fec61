#!/usr/bin/env bash
# Installs a headless Chromium if need be, and looks with it at the gallery of all metafiles below
# folders and at every single document of them. Not part of the ordinary tests.
# usage: scripts/test-gallery.sh [-o PICTURES] [FOLDER...]
# The folders are by default corpus and reference in $SVGTOOL_SHARED_DIR or ../shared. PICTURES is a
# folder for pictures of the gallery. The tool is $METAFILE2SVG or that of the preset dev.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
tool=$(realpath "${METAFILE2SVG:-$root/build/dev/cli/metafile2svg}")
pictures=
if [ "${1-}" = -o ]; then
    mkdir -p "$2"
    pictures=$(realpath "$2")
    shift 2
fi
shared=${SVGTOOL_SHARED_DIR:-$root/../shared}
[ $# -gt 0 ] || set -- "$shared/corpus" "$shared/reference"
"$root/scripts/setup.sh" browser

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
for folder; do
    number=$((${number:-0} + 1))
    inputs+=("$(realpath "$folder")")
    # Status 3 tells of damaged files, 1 of some that are no metafiles; both are on the page.
    "$tool" -r "${inputs[-1]}" -o "$work/$number/" 2>"$work/messages" || [[ $? == [13] ]]
    echo "$folder: $(tail -n 1 "$work/messages")"
    find "$work/$number" -type f | sort >>"$work/documents"
done
"$tool" -q --check -r "${inputs[@]}" --gallery "$work/page.html" 2>/dev/null || true
"$root/tests/house/browser.py" gallery "$work/page.html" ${pictures:+"$pictures"} ||
    failures=1
"$root/tests/house/browser.py" documents <"$work/documents" || failures=1
exit "$failures"
