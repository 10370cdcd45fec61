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
env -u LD_LIBRARY_PATH "$prefix/$BINDIR/metafile2svg" --exact "$sample" -o "$work/tool.svg" ||
    fail "the installed tool does not convert"
grep -q '<svg ' "$work/tool.svg" && grep -q '</svg>' "$work/tool.svg" ||
    fail "the installed tool wrote no SVG document"

same() {
    cmp "$work/tool.svg" "$1" || fail "$2 gets another document than the tool"
    echo "$2: converts"
}

quietly "$CMAKE" -G "$GENERATOR" "-DCMAKE_MAKE_PROGRAM=$MAKE_PROGRAM" \
    "-DCMAKE_CXX_COMPILER=$CXX" "-DCMAKE_CXX_FLAGS=$CXXFLAGS" "-DCMAKE_PREFIX_PATH=$prefix" \
    -S "$SOURCE_DIR/samples/host" -B "$work/host"
quietly "$CMAKE" --build "$work/host"
quietly "$work/host/svgtool_host" "$sample" "$work/host.svg"
same "$work/host.svg" "a host built with the CMake package"

# Qt wants position-independent code; $packageFlags and $CXXFLAGS are lists of words.
export PKG_CONFIG_PATH=$prefix/$LIBDIR/pkgconfig
packageFlags=$("$PKG_CONFIG" --cflags --libs svgtool) || fail "pkg-config does not know svgtool"
quietly "$CXX" -std=c++17 -fPIC $CXXFLAGS "$SOURCE_DIR/samples/host/main.cpp" -o "$work/pc_host" \
    $packageFlags "-Wl,-rpath,$prefix/$LIBDIR"
quietly "$work/pc_host" "$sample" "$work/pc.svg"
same "$work/pc.svg" "a host built with pkg-config"

# Documents for viewers, as the tool makes them.
"$prefix/$BINDIR/metafile2svg" --width 800 "$sample" -o "$work/tool_display.svg" ||
    fail "the installed tool makes no document for viewers"
displayFlags=$("$PKG_CONFIG" --cflags --libs svgtool svgtool-display) ||
    fail "pkg-config does not know svgtool-display"
quietly "$CXX" -std=c++17 -fPIC $CXXFLAGS "$SOURCE_DIR/samples/host/display.cpp" \
    -o "$work/pc_display" $displayFlags "-Wl,-rpath,$prefix/$LIBDIR"
for host in "$work/host/display_host" "$work/pc_display"; do
    "$host" "$sample" >"$work/display.svg" || fail "$host"
    cmp "$work/tool_display.svg" "$work/display.svg" ||
        fail "$host gets another document for viewers than the tool"
done
echo "hosts of the display library: convert"

# What fontconfig keeps for the process looks leaked once it is unloaded along with us.
for host in "$DLOPEN_SAMPLE" "$DLOPEN_HOST"; do
    ASAN_OPTIONS=detect_leaks=0 "$host" "$prefix/$LIBDIR/libSVGTool.so" "$sample" \
        >"$work/dlopen.svg" || fail "$host"
    same "$work/dlopen.svg" "$host, which loads the library at run time,"
done

# A host sets the level and the sinks through the logging library's own header.
quietly "$CXX" -std=c++17 -fPIC $CXXFLAGS "$SOURCE_DIR/samples/host/logging.cpp" -o "$work/logging" \
    $packageFlags "-Wl,-rpath,$prefix/$LIBDIR" -lbasic_logging
"$work/logging" "$sample" >"$work/lines" 2>&1 || fail "a host that takes the log lines"
grep -qE '^result 1, [0-9]{3,} trace lines, 0 warnings$' "$work/lines" ||
    fail "a host that takes the log lines gets others: $(cat "$work/lines")"
echo "a host that takes the log lines: gets them"
