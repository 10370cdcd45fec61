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

# with FILE TEXT [FINDING]: the tree with this file in it is accepted, or gives this one finding.
with() {
    local wanted=$(($# - 2)) status=0 output found
    put "$1" "$2"
    output=$(bash "$script" "$tree" 2>&1) || status=$?
    rm "$tree/$1"
    found=$(grep -c '^FOUND' <<<"$output" || true)
    if [ "$status $found" != "$wanted $wanted" ] || [[ $output != *"${3-}"* ]]; then
        echo "FAILED: $1 with $2: $output"
        failures=$((failures + 1))
    fi
}

put logging/CLogSystem.h ''
put records/Bytes.h '#include <CLogSystem.h>'
put platform/QtCompat.h '#if QT_VERSION >= 6'
put style/StyleMgr.h '#include "records/Bytes.h"'
put svg/Writer.h '#include "style/StyleMgr.h"'
put emf/Emf.h '#include "svg/Writer.h"'
put wmf/Wmf.h ''
put svgtool/SVGTool.h '#include <QString>'
put svgtool/SVGInspect.h ''
put svg/SVGDisplay.h ''

with emf/Good.cpp '#include "records/Bytes.h"'
with emf/Good.cpp '#include "Emf.h"'
with platform/Gdi.cpp '#include <windows.h>'
with cli/main.cpp '#include <svgtool/SVGTool.h>'
with cli/main.cpp '#include "svgtool/SVGInspect.h"'
with cli/main.cpp '#include "svg/SVGDisplay.h"'
with samples/main.cpp '#include "svgtool/SVGInspect.h"' 'not an installed header'
with cli/main.cpp '#include "svg/Writer.h"' 'not an installed header'
with cli/main.cpp '#include <CLogSystem.h>' 'not an installed header'
with style/Bad.cpp '#include "emf/Emf.h"' 'style/ may not include emf/Emf.h'
with wmf/Bad.h '  #  include "emf/Emf.h" // why' 'wmf/ may not include emf/Emf.h'
with emf/Bad.h '#include <wmf/Wmf.h>' 'emf/ may not include wmf/Wmf.h'
with records/Bad.h '#include "../style/StyleMgr.h"' 'hides its folder'
with emf/Bad.h '#include "nowhere/Missing.h"' 'no file of the tree'
with platform/Gdi.h '#include <Windows.h>' 'outside platform'
with tests/Gdi.cpp '#include <windows.h>' 'outside platform'
with svg/Bad.cpp '#ifdef QT_VERSION_MAJOR' 'outside platform/QtCompat.h'
with extra/New.cpp '' 'has sources and no layer'

[ "$failures" -eq 0 ]
