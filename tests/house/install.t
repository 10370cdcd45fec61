Installs the build, moves the installed tree elsewhere, and uses it as a host would. Exactly what a
host needs is there; the version is in the libraries' names.

  $ quietly() { "$@" >log 2>&1 || cat log; }
  $ quietly "$CMAKE_COMMAND" --install "$BUILD" --config "$CONFIG" --prefix "$PWD/first"
  $ mv first moved && cd moved && prefix=$PWD
  $ find . -type f | sort | sed -E "s/[.]so[.0-9]*$/.so/;s/-${CONFIG,,}[.]cmake/-CONFIG.cmake/
  >     s,^[.]/lib/metafile2svg,MODULE,
  >     s,^[.]/$CMAKE_INSTALL_BINDIR,BIN,;s,^[.]/$CMAKE_INSTALL_LIBDIR,LIB,
  >     s,^[.]/$CMAKE_INSTALL_INCLUDEDIR,INCLUDE,;s,^[.]/$CMAKE_INSTALL_MANDIR,MAN,
  >     s,^[.]/$CMAKE_INSTALL_DATADIR,DATA," | LC_ALL=C sort
  BIN/metafile2svg
  BIN/metafile2svg-thumbnailer
  DATA/bash-completion/completions/metafile2svg
  DATA/fish/vendor_completions.d/metafile2svg.fish
  DATA/metafile2svg/report.schema.json
  DATA/thumbnailers/metafile2svg.thumbnailer
  DATA/zsh/vendor-completions/_metafile2svg
  INCLUDE/basic_logging/CLogSystem.h
  INCLUDE/svgtool/SVGTool.h
  INCLUDE/svgtool/picture.h
  INCLUDE/svgtool/picture.hpp
  LIB/cmake/SVGTool/SVGToolConfig.cmake
  LIB/cmake/SVGTool/SVGToolConfigVersion.cmake
  LIB/cmake/SVGTool/SVGToolPictureStaticTargets-CONFIG.cmake
  LIB/cmake/SVGTool/SVGToolPictureStaticTargets.cmake
  LIB/cmake/SVGTool/SVGToolPictureTargets-CONFIG.cmake
  LIB/cmake/SVGTool/SVGToolPictureTargets.cmake
  LIB/cmake/SVGTool/SVGToolTargets-CONFIG.cmake
  LIB/cmake/SVGTool/SVGToolTargets.cmake
  LIB/libSVGTool.so
  LIB/libSVGToolPicture.a
  LIB/libSVGToolPicture.so
  LIB/libbasic_logging.so
  LIB/pkgconfig/svgtool-picture.pc
  LIB/pkgconfig/svgtool.pc
  MAN/man1/metafile2svg-thumbnailer.1
  MAN/man1/metafile2svg.1
  MODULE/exact.so
  $ lib=$prefix/$CMAKE_INSTALL_LIBDIR && cd ..
  $ grep -rlF -e "$BUILD" -e "$ROOT" -e "$PWD/first" "$lib/cmake" "$lib/pkgconfig"
  [1]

The installed tool is what the hosts are compared with. It loads Qt Gui for exact texts alone.

  $ sample=$ROOT/samples/chart.emf
  $ tool() { env -u LD_LIBRARY_PATH "$prefix/$CMAKE_INSTALL_BINDIR/metafile2svg" "$@"; }
  $ tool --exact "$sample" >exact.svg && tool --width 800 "$sample" >shown.svg
  $ grep -c '</svg>' exact.svg shown.svg
  exact.svg:1
  shown.svg:1
  $ objdump -p "$prefix/$CMAKE_INSTALL_BINDIR/metafile2svg" | grep 'NEEDED.*Gui'
  [1]
  $ mv "$prefix/lib/metafile2svg" . && tool --width 800 "$sample" | cmp shown.svg -
  $ tool --exact "$sample" 2>&1 | grep -o 'the exact path cannot be loaded'
  the exact path cannot be loaded
  $ mv metafile2svg "$prefix/lib"

Hosts built with the CMake package, and hosts of one file with what pkg-config says. Qt wants
position-independent code; $CMAKE_CXX_FLAGS and what pkg-config says are lists of words.

  $ configure() {
  >     quietly "$CMAKE_COMMAND" -G "$CMAKE_GENERATOR" "-DCMAKE_MAKE_PROGRAM=$CMAKE_MAKE_PROGRAM" \
  >         "-DCMAKE_CXX_COMPILER=$CMAKE_CXX_COMPILER" "-DCMAKE_CXX_FLAGS=$CMAKE_CXX_FLAGS" "$@"
  > }
  $ configure "-DCMAKE_PREFIX_PATH=$prefix" -S "$ROOT/samples/host" -B host
  $ quietly "$CMAKE_COMMAND" --build host
  $ export PKG_CONFIG_PATH=$lib/pkgconfig
  $ build() {
  >     quietly "$CMAKE_CXX_COMPILER" -std=c++17 -fPIC $CMAKE_CXX_FLAGS "$ROOT/samples/host/$1.cpp" \
  >         -o "$1" $("$SVGTOOL_PKG_CONFIG" --cflags --libs $2) $3 "-Wl,-rpath,$lib"
  > }
  $ build main svgtool
  $ build logging svgtool -lbasic_logging
  $ for host in host/svgtool_host ./main; do $host "$sample" host.svg && cmp exact.svg host.svg; done

Pictures: a host of the shared library and one of the static one, and the library itself, need no
Qt.

  $ configure "-DCMAKE_PREFIX_PATH=$prefix" -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON \
  >     -DCMAKE_DISABLE_FIND_PACKAGE_Qt5=ON -S "$ROOT/samples/host/picture" -B picture
  $ quietly "$CMAKE_COMMAND" --build picture
  $ sed 's/COMPONENTS Picture/&Static/; s/::Picture/&Static/; s,picture.cpp,"'"$ROOT"'/samples/host/picture/&",' \
  >     "$ROOT/samples/host/picture/CMakeLists.txt" >CMakeLists.txt
  $ configure "-DCMAKE_PREFIX_PATH=$prefix" -S . -B static && quietly "$CMAKE_COMMAND" --build static
  $ quietly "$CMAKE_CXX_COMPILER" -std=c++20 $CMAKE_CXX_FLAGS "$ROOT/samples/host/picture/picture.cpp" \
  >     -o by_flags $("$SVGTOOL_PKG_CONFIG" --cflags --libs svgtool-picture) "-Wl,-rpath,$lib"
  $ for host in picture/picture_host static/picture_host ./by_flags; do
  >     objdump -p $host | grep -cE 'NEEDED +lib(SVGToolPicture|Qt)'; $host "$sample" >picture.svg
  >     grep -c '^<svg .*width="800"' picture.svg; cmp shown.svg picture.svg; done
  1
  1
  0
  1
  1
  1

A host in C, by the compilers that are there. A library with a sanitizer wants hosts with the same.

  $ for cc in gcc clang; do
  >     [ "$FOREIGN_CALLS" = none ] && hash $cc 2>/dev/null || continue
  >     quietly $cc -std=c11 -Wall -Wextra -Wpedantic -Werror "$ROOT/samples/host/c/picture.c" -o in_c \
  >         $("$SVGTOOL_PKG_CONFIG" --cflags --libs svgtool-picture) "-Wl,-rpath,$lib"
  >     ./in_c "$sample" | cmp shown.svg -
  >     ./in_c "$ROOT/README.md" 2>&1 | grep -v ': this is not a metafile: ' || :
  > done

  $ configure -DSVGTOOL_BUILD_EXACT=OFF -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON -S "$ROOT" -B without_qt
  $ grep -rlE 'Qt[56]' without_qt --include='*.ninja' --include='Makefile*'
  [1]

At run time. What fontconfig keeps for the process looks leaked once it is unloaded along with us.

  $ ASAN_OPTIONS=detect_leaks=0 "$DLOPEN_HOST" "$lib/libSVGTool.so" "$sample" >twenty.svg
  $ for i in {1..20}; do cat exact.svg; done | cmp - twenty.svg

A host sets the level and the sinks through the logging library's own header.

  $ ./logging "$sample" 2>&1
  result 1, \d{3,} trace lines, 0 warnings (re)
