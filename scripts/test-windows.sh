#!/usr/bin/env bash
# Builds the picture library for Windows with mingw-w64, and under Wine draws all metafiles below folders
# by the sample host for C: once linked with the table of widths, whose documents are those of the native
# host byte for byte, and once by the library itself, which measures with GDI's fonts; there documents
# without text are the same. Not part of the ordinary tests.
# usage: scripts/test-windows.sh [FOLDER...]
# The folder is by default reference in $SVGTOOL_SHARED_DIR or ../shared, or else samples.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
./scripts/setup.sh windows
./scripts/setup.sh test

shared=${SVGTOOL_SHARED_DIR:-../shared}
if [ $# -eq 0 ]; then
    set -- "$shared/reference"
    [ -d "$1" ] || set -- samples
fi
cmake --preset dev >/dev/null
cmake --build --preset dev --target table_host metafile2svg

windows=$PWD/build/windows triplet=x86_64-w64-mingw32
./scripts/cross-libraries.sh "$windows/libraries" "$triplet-gcc-posix" "$triplet-ar"
PKG_CONFIG_LIBDIR=$windows/libraries/lib/pkgconfig cmake -S . -B "$windows/library" -G Ninja \
    -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_CXX_COMPILER="$triplet-g++-posix" \
    -DCMAKE_RC_COMPILER="$triplet-windres" -DCMAKE_FIND_ROOT_PATH="/usr/$triplet" \
    -DCMAKE_SHARED_LINKER_FLAGS=-static -DCMAKE_BUILD_TYPE=Release -DSVGTOOL_WERROR=ON \
    -DSVGTOOL_BUILD_EXACT=OFF -DSVGTOOL_BUILD_TESTS=OFF -DSVGTOOL_INSTALL=OFF \
    -Dnlohmann_json_DIR="$windows/libraries/share/cmake/nlohmann_json"
cmake --build "$windows/library"

hosts=$windows/library/picture/api # where the library lies, for Windows to find it
host=("$triplet-gcc-posix" -std=c11 -O2 -Wall -Wextra -Wpedantic -Werror -I "$hosts/include" -c
    samples/host/c/picture.c -o)
"${host[@]}" "$hosts/host.o"
"$triplet-gcc-posix" "$hosts/host.o" -L "$hosts" -lSVGToolPicture.dll -o "$hosts/host.exe"
"${host[@]}" "$hosts/table.o" -DSVGTOOL_STATIC
"$triplet-g++-posix" -std=c++20 -O2 -ffp-contract=off -static -I . "$hosts/table.o" \
    core/fonts/FontShapes_Table.cpp "$hosts/libSVGToolPicture.a" \
    -L "$windows/libraries/lib" -ldeflate -o "$hosts/table.exe"

. scripts/wine.sh
failures=0 files=0 texts=0 same=0
while read -r file; do
    files=$((files + 1))
    build/dev/tests/web/table_host "$file" >"$work/native" 2>/dev/null || true
    wine "$hosts/table.exe" "$file" >"$work/table" 2>/dev/null || true
    wine "$hosts/host.exe" "$file" >"$work/gdi" 2>/dev/null || true
    if ! cmp -s "$work/native" "$work/table"; then
        echo "FOUND: $file: the documents differ"
        failures=1
    fi
    hasText=0 # of outlines, too
    ! build/dev/cli/metafile2svg --check --report --json "$file" 2>/dev/null |
        grep -qE 'TEXTOUT|Draw(Driver)?String' || hasText=1
    texts=$((texts + hasText))
    if cmp -s "$work/native" "$work/gdi"; then
        same=$((same + 1))
    elif [ "$hasText" -eq 0 ]; then
        echo "FOUND: $file: without text, and with GDI's fonts the document differs"
        failures=1
    fi
done < <(find "$@" -iname '*.[ew]m[fz]' | sort)
echo "$files metafiles, $texts of them with text; the same with GDI's fonts: $same"
[ "$files" -gt 0 ] || failures=1
exit "$failures"
