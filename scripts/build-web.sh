#!/usr/bin/env bash
# Installs what is missing and builds what browsers and node take, by Debian's emscripten.
# usage: scripts/build-web.sh
# In build/web then lie: svgtool/, the npm package, and metafiles.html, the page.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
./scripts/setup.sh web

web=$PWD/build/web
export NODE_PATH=/usr/share/nodejs # where the compiler's own scripts find theirs
./scripts/cross-libraries.sh "$web/libraries" emcc emar
PKG_CONFIG_LIBDIR=$web/libraries/lib/pkgconfig emcmake cmake -S . -B "$web/module" -G Ninja \
    -DCMAKE_BUILD_TYPE=MinSizeRel -DSVGTOOL_BUILD_EXACT=OFF -DSVGTOOL_BUILD_TESTS=OFF \
    -DSVGTOOL_INSTALL=OFF -DSVGTOOL_FONT_ENGINE=table -DCMAKE_FIND_ROOT_PATH="$web/libraries" \
    -Dnlohmann_json_DIR="$web/libraries/share/cmake/nlohmann_json"
cmake --build "$web/module"

mkdir -p "$web/svgtool"
cp "$web/module/bindings/web/svgtool.wasm" bindings/web/{svgtool.js,svgtool.d.ts,package.json,README.md} \
    "$web/svgtool"
bindings/web/make-page.py "$web/svgtool/svgtool.wasm" "$web/metafiles.html"
ls -sh "$web/svgtool" "$web/metafiles.html"
