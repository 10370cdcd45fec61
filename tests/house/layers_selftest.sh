#!/usr/bin/env bash
# Shows that layers.sh sees what it is there to see, on a small tree with one fault at a time.
set -euo pipefail
script=$(dirname "${BASH_SOURCE[0]}")/layers.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

put() {
    mkdir -p "$tree/$(dirname "$1")"
    printf '%s\n' "$2" >"$tree/$1"
}

# Runs the script on the tree with one more file and compares its verdict.
expect() {
    local name=$1 pattern=$2 file=$3 text=$4 output status=0
    put "$file" "$text"
    output=$(bash "$script" "$tree" 2>&1) || status=$?
    rm "$tree/$file"
    if [ "$pattern" = accepted ]; then
        [ "$status" -eq 0 ] && return
    elif [ "$status" -eq 1 ] && grep -q "$pattern" <<<"$output"; then
        return
    fi
    echo "FAILED: $name: status $status: $output"
    failures=$((failures + 1))
}

put logging/CLogSystem.h ''
put records/Bytes.h '#include <CLogSystem.h>'
put platform/QtCompat.h '#if QT_VERSION >= 6'
put style/StyleMgr.h '#include "records/Bytes.h"'
put svg/Writer.h '#include "style/StyleMgr.h"'
put emf/Emf.h '#include "svg/Writer.h"'
put wmf/Wmf.h ''
put svgtool/SVGTool.h '#include <QString>'
put svg/SVGDisplay.h ''

expect 'two layers down' accepted emf/Good.cpp '#include "records/Bytes.h"'
expect 'own folder' accepted emf/Good.cpp '#include "Emf.h"'
expect 'windows.h in platform' accepted platform/Gdi.cpp '#include <windows.h>'
expect 'program, own header and library' accepted cli/main.cpp '#include <svgtool/SVGTool.h>'
expect 'program, other installed header' accepted cli/main.cpp '#include "svg/SVGDisplay.h"'
expect 'upwards' 'style/ may not include emf/Emf.h' style/Bad.cpp '#include "emf/Emf.h"'
expect 'sideways' 'wmf/ may not include emf/Emf.h' wmf/Bad.h '  #  include "emf/Emf.h" // why'
expect 'angle brackets' 'emf/ may not include wmf/Wmf.h' emf/Bad.h '#include <wmf/Wmf.h>'
expect 'upwards through ..' 'hides its folder' records/Bad.h \
    '#include "../style/StyleMgr.h"'
expect 'program looks inside' 'not an installed header' cli/main.cpp '#include "svg/Writer.h"'
expect 'program logs' 'not an installed header' cli/main.cpp '#include <CLogSystem.h>'
expect 'missing file' 'no file of the tree' emf/Bad.h '#include "nowhere/Missing.h"'
expect 'windows.h in a header' 'outside platform' platform/Gdi.h '#include <Windows.h>'
expect 'windows.h in a test' 'outside platform' tests/Gdi.cpp '#include <windows.h>'
expect 'Qt version' 'outside platform/QtCompat.h' svg/Bad.cpp '#ifdef QT_VERSION_MAJOR'
expect 'folder without a layer' 'has sources and no layer' extra/New.cpp ''

[ "$failures" -eq 0 ]
