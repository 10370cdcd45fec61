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
$INCLUDEDIR/basic_logging/CLogSystem.h
$INCLUDEDIR/svg/SVGDisplay.h
$INCLUDEDIR/svgtool/SVGTool.h
$LIBDIR/libSVGToolDisplay.a
$LIBDIR/libSVGTool.so
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

# The library for display needs nothing but Qt, and no other library of ours.
mkdir "$work/display"
cat >"$work/display/main.cpp" <<'SOURCE'
#include <svg/SVGDisplay.h>

#include <QFile>

int main(int, char *argv[])
{
    QFile exact(QString::fromLocal8Bit(argv[1])), shown(QString::fromLocal8Bit(argv[2]));
    if (!exact.open(QIODevice::ReadOnly) || !shown.open(QIODevice::WriteOnly))
        return 1;
    const QByteArray svg = svgtool::displayableSvg(exact.readAll(), { "from a host" });
    return shown.write(svg) == svg.size() ? 0 : 1;
}
SOURCE
cat >"$work/display/CMakeLists.txt" <<'SOURCE'
cmake_minimum_required(VERSION 3.16)
project(display_host LANGUAGES CXX)
find_package(SVGTool REQUIRED)
add_executable(display_host main.cpp)
target_link_libraries(display_host PRIVATE SVGTool::Display)
SOURCE
quietly "$CMAKE" -G "$GENERATOR" "-DCMAKE_MAKE_PROGRAM=$MAKE_PROGRAM" \
    "-DCMAKE_CXX_COMPILER=$CXX" "-DCMAKE_CXX_FLAGS=$CXXFLAGS" "-DCMAKE_PREFIX_PATH=$prefix" \
    -S "$work/display" -B "$work/display/build"
quietly "$CMAKE" --build "$work/display/build"
quietly "$work/display/build/display_host" "$work/tool.svg" "$work/shown.svg"
grep -q '<!-- from a host -->' "$work/shown.svg" && grep -q ' viewBox="0 0 ' "$work/shown.svg" ||
    fail "a host built with the CMake package gets no document for display"
echo "a host of the display library built with the CMake package: rewrites"

# Qt wants position-independent code; $packageFlags and $CXXFLAGS are lists of words.
export PKG_CONFIG_PATH=$prefix/$LIBDIR/pkgconfig
packageFlags=$("$PKG_CONFIG" --cflags --libs svgtool) || fail "pkg-config does not know svgtool"
quietly "$CXX" -std=c++17 -fPIC $CXXFLAGS "$SOURCE_DIR/samples/host/main.cpp" -o "$work/pc_host" \
    $packageFlags "-Wl,-rpath,$prefix/$LIBDIR"
quietly "$work/pc_host" "$sample" "$work/pc.svg"
same "$work/pc.svg" "a host built with pkg-config"

displayFlags=$("$PKG_CONFIG" --cflags --libs svgtool-display) ||
    fail "pkg-config does not know svgtool-display"
quietly "$CXX" -std=c++17 -fPIC $CXXFLAGS "$work/display/main.cpp" -o "$work/display/pc_host" \
    $displayFlags
quietly "$work/display/pc_host" "$work/tool.svg" "$work/pc_shown.svg"
cmp "$work/shown.svg" "$work/pc_shown.svg" ||
    fail "a host built with pkg-config gets another document for display"
echo "a host of the display library built with pkg-config: rewrites"

# What fontconfig keeps for the process looks leaked once it is unloaded along with us.
ASAN_OPTIONS=detect_leaks=0 "$DLOPEN_HOST" "$prefix/$LIBDIR/libSVGTool.so" "$sample" >"$work/dlopen.svg" ||
    fail "a host with dlopen"
same "$work/dlopen.svg" "a host that loads the library at run time"

# A host sets the level and the sinks through the logging library's own header.
cat >"$work/logging.cpp" <<'SOURCE'
#include <basic_logging/CLogSystem.h>
#include <svgtool/SVGTool.h>

int main()
{
    int lines = 0;
    basic_logging::tracelevel.setSink([&lines](const std::string &) { ++lines; });
    CLogSystem::theRootInstance->setLevel("TRACE");
    QByteArray svg;
    ConvertMetaFileToSVG(QByteArray(), svg);
    return lines == 2 ? 0 : 1; // in and out of the one function
}
SOURCE
quietly "$CXX" -std=c++17 -fPIC $CXXFLAGS "$work/logging.cpp" -o "$work/logging" \
    $packageFlags "-Wl,-rpath,$prefix/$LIBDIR" -lbasic_logging
quietly "$work/logging"
echo "a host that takes the log lines: gets them"
