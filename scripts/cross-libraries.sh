#!/usr/bin/env bash
# Builds what the picture library links for a machine that Debian has no packages of it for: libdeflate,
# from Debian's source, beside the headers of nlohmann-json.
# usage: scripts/cross-libraries.sh FOLDER COMPILER ARCHIVER
# FOLDER gets include/, lib/pkgconfig/ and share/cmake/; what is there already stays.
set -euo pipefail
mkdir -p "$1"
folder=$(realpath "$1") compiler=$2 archiver=$3
[ ! -e "$folder/lib/pkgconfig/libdeflate.pc" ] || exit 0

# Sources are in no list of apt's by default. This one is ours alone, with the addresses of the others.
work=$folder/source
mkdir -p "$work/lists/partial"
apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Identifier: Packages' 'Component: main' | sort -u >"$work/sources.list"
options=(-qq -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=-
    -o "Dir::State::Lists=$work/lists" -o APT::Sandbox::User=)
apt-get "${options[@]}" update
(cd "$work" && apt-get "${options[@]}" source libdeflate)
source=$(echo "$work"/libdeflate-*/)

make -s -C "$source" CC="$compiler" AR="$archiver" CFLAGS=-O2 STATIC_LIB_SUFFIX=.a libdeflate.a
mkdir -p "$folder"/{include,lib/pkgconfig,share/cmake}
cp "$source/libdeflate.h" "$folder/include"
cp "$source/libdeflate.a" "$folder/lib"
cp -r /usr/include/nlohmann "$folder/include"
cp -r /usr/share/cmake/nlohmann_json "$folder/share/cmake"
version=${source%/}
cat >"$folder/lib/pkgconfig/libdeflate.pc" <<END
Name: libdeflate
Description: Compression
Version: ${version##*-}
Libs: -L$folder/lib -ldeflate
Cflags: -I$folder/include
END
rm -rf "$work"
