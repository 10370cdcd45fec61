#!/usr/bin/env bash
# Builds the package and the page for browsers (scripts/build-web.sh), compares in node the documents of
# all metafiles below folders with native ones, runs the README's examples, and uses the page in a
# headless Chromium.
# usage: scripts/test-web.sh [FOLDER...]
# The folders are by default samples and what is of corpus and reference in $SVGTOOL_SHARED_DIR or
# ../shared. With PICTURES set the page leaves pictures of itself in that folder.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
./scripts/setup.sh test
./scripts/setup.sh browser
./scripts/build-web.sh

shared=${SVGTOOL_SHARED_DIR:-../shared}
if [ $# -eq 0 ]; then
    set -- samples
    for folder in "$shared/corpus" "$shared/reference"; do
        [ ! -d "$folder" ] || set -- "$@" "$folder"
    done
fi
cmake --preset dev >/dev/null
cmake --build --preset dev --target table_host

failures=0
node tests/web/documents.mjs build/web/svgtool build/dev/tests/web/table_host "$@" || failures=1
node tests/web/examples.mjs build/web/svgtool bindings/web/README.md || failures=1
tests/web/page.py build/web samples ${PICTURES:+"$PICTURES"} || failures=1
exit "$failures"
