#!/usr/bin/env bash
# Installs what is missing, compiles the Windows font engine as it stands with mingw-w64 and
# compares it, under Wine's GDI, with the recorded text metrics. Not part of the ordinary tests.
# usage: scripts/test-windows-metrics.sh
# The numbers are those of $SVGTOOL_SHARED_DIR/reference, by default of ../shared/reference.
# The status is 0 only if all of them agree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

reference=${SVGTOOL_SHARED_DIR:-../shared}/reference/text-metrics.json
if [ ! -r "$reference" ]; then
    echo "test-windows-metrics: there is no $reference" >&2
    exit 2
fi
./scripts/setup.sh windows

# Wine's own fonts would take the place of what the recording's GDI substituted.
if [ -n "$(ls -A /usr/share/wine/fonts 2>/dev/null)" ]; then
    echo "test-windows-metrics: the numbers do not hold with Wine's fonts; remove fonts-wine" >&2
    exit 2
fi

. scripts/wine.sh
x86_64-w64-mingw32-g++ -std=c++20 -O2 -static -DUNICODE -D_UNICODE \
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast \
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2 -Wimplicit-fallthrough \
    -Werror -I. tests/windows/metrics_main.cpp core/fonts/FontEngine_Gdi.cpp \
    -lgdi32 -luser32 -o "$work/metrics.exe"

python3 tests/windows/metrics.py "$reference" wine "$work/metrics.exe"
