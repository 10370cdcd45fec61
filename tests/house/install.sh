#!/usr/bin/env bash
# Installs the build, moves the installed tree elsewhere, and uses it as a host would: through the
# CMake package, through pkg-config, at run time through dlopen, and with the installed tool.
# What it needs comes in the environment; CMakeLists.txt beside it sets it.
set -euo pipefail

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/moved

fail() {
    echo "FAILED: $*"
    exit 1
}

# Runs a command whose output matters only when it fails.
quietly() {
    "$@" >"$work/log" 2>&1 || {
        cat "$work/log"
        fail "$*"
    }
}

quietly "$CMAKE" --install "$BUILD_DIR" --config "$CONFIG" --prefix "$work/first"
mv "$work/first" "$prefix"

# Exactly what a host needs; the version is in the libraries' names.
installed=$(cd "$prefix" && find . -type f -printf '%P\n' | sed -E 's/[.]so[.0-9]*$/.so/' | sort)
wanted=$(sort <<LIST
$BINDIR/metafile2svg
$BINDIR/metafile2svg-thumbnailer
$DATADIR/bash-completion/completions/metafile2svg
$DATADIR/thumbnailers/metafile2svg.thumbnailer
$MANDIR/man1/metafile2svg.1
$MANDIR/man1/metafile2svg-thumbnailer.1
$INCLUDEDIR/basic_logging/CLogSystem.h
$INCLUDEDIR/svg/SVGDisplay.h
$INCLUDEDIR/svgtool/SVGTool.h
$LIBDIR/libSVGTool.so
$LIBDIR/libSVGToolDisplay.a
$LIBDIR/libbasic_logging.so
$LIBDIR/cmake/SVGTool/SVGToolConfig.cmake
$LIBDIR/cmake/SVGTool/SVGToolConfigVersion.cmake
$LIBDIR/cmake/SVGTool/SVGToolTargets.cmake
$LIBDIR/cmake/SVGTool/SVGToolTargets-${CONFIG,,}.cmake
$LIBDIR/pkgconfig/svgtool-display.pc
$LIBDIR/pkgconfig/svgtool.pc
LIST
)
diff <(echo "$wanted") <(echo "$installed") || fail "the installed files differ from the wanted (<)"
if grep -rlF -e "$BUILD_DIR" -e "$SOURCE_DIR" -e "$work/first" \
    "$prefix/$LIBDIR/cmake" "$prefix/$LIBDIR/pkgconfig"; then
    fail "the package names folders that its user does not have"
fi

# The installed tool is what the hosts are compared with.
sample=$SOURCE_DIR/samples/chart.emf
tool=(env -u LD_LIBRARY_PATH "$prefix/$BINDIR/metafile2svg")
quietly "${tool[@]}" --exact "$sample" -o "$work/exact.svg"
quietly "${tool[@]}" --width 800 "$sample" -o "$work/shown.svg"
grep -q '<svg ' "$work/exact.svg" && grep -q '</svg>' "$work/exact.svg" ||
    fail "the installed tool wrote no SVG document"

# same WANTED ACTUAL HOST: the host's document is the tool's.
same() {
    cmp "$work/$1.svg" "$2" || fail "$3 gets another document than the tool"
    echo "$3: converts"
}

quietly "$CMAKE" -G "$GENERATOR" "-DCMAKE_MAKE_PROGRAM=$MAKE_PROGRAM" \
    "-DCMAKE_CXX_COMPILER=$CXX" "-DCMAKE_CXX_FLAGS=$CXXFLAGS" "-DCMAKE_PREFIX_PATH=$prefix" \
    -S "$SOURCE_DIR/samples/host" -B "$work/host"
quietly "$CMAKE" --build "$work/host"

# build HOST LIBRARY PACKAGE...: builds a host of one file with what pkg-config says of packages. Qt
# wants position-independent code; $CXXFLAGS and what pkg-config says are lists of words.
export PKG_CONFIG_PATH=$prefix/$LIBDIR/pkgconfig
build() {
    local host=$1 library=$2 flags
    shift 2
    flags=$("$PKG_CONFIG" --cflags --libs "$@") || fail "pkg-config does not know $*"
    quietly "$CXX" -std=c++17 -fPIC $CXXFLAGS "$SOURCE_DIR/samples/host/$host.cpp" \
        -o "$work/pc_$host" $flags $library "-Wl,-rpath,$prefix/$LIBDIR"
}
build main '' svgtool
build display '' svgtool svgtool-display
build logging -lbasic_logging svgtool
for host in "$work/host/svgtool_host" "$work/pc_main"; do
    quietly "$host" "$sample" "$work/host.svg"
    same exact "$work/host.svg" "$host"
done
for host in "$work/host/display_host" "$work/pc_display"; do
    "$host" "$sample" >"$work/host.svg" || fail "$host"
    same shown "$work/host.svg" "$host"
done
# What fontconfig keeps for the process looks leaked once it is unloaded along with us.
for host in "$DLOPEN_SAMPLE" "$DLOPEN_HOST"; do
    ASAN_OPTIONS=detect_leaks=0 "$host" "$prefix/$LIBDIR/libSVGTool.so" "$sample" \
        >"$work/host.svg" || fail "$host"
    same exact "$work/host.svg" "$host"
done

# A host sets the level and the sinks through the logging library's own header.
"$work/pc_logging" "$sample" >"$work/lines" 2>&1 || fail "a host that takes the log lines"
grep -qE '^result 1, [0-9]{3,} trace lines, 0 warnings$' "$work/lines" ||
    fail "a host that takes the log lines gets others: $(cat "$work/lines")"
echo "a host that takes the log lines: gets them"
