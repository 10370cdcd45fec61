#!/usr/bin/env bash
# Installs the Debian packages that a task needs, those that are missing and no others.
# usage: scripts/setup.sh build|test|ci|tidy|fuzz|bench|coverage|windows|package|archives|cluster|browser|web
set -euo pipefail

build=(cmake ninja-build g++ pkg-config qt6-base-dev libfreetype-dev libfontconfig-dev
    libdeflate-dev nlohmann-json3-dev fonts-liberation fonts-dejavu-core fonts-dejavu-extra)
test=("${build[@]}" libgtest-dev binutils libxml2-utils locales python3 python3-cram
    python3-jsonschema librsvg2-bin)
tidy=("${test[@]}" clang-tidy git)
ci=("${test[@]}" qtbase5-dev clang-format git)
fuzz=("${test[@]}" clang libclang-rt-14-dev python3-lxml w3c-sgml-lib)
bench=("${build[@]}" libbenchmark-dev python3)
coverage=("${test[@]}" gcovr)
windows=(g++-mingw-w64-x86-64 wine wine64 python3 fontconfig
    cmake ninja-build pkg-config make dpkg-dev nlohmann-json3-dev
    fonts-liberation fonts-dejavu-core fonts-dejavu-extra)
archives=(parallel)
cluster=("${build[@]}" python3 python3-distributed python3-pandas)
web=(emscripten cmake ninja-build pkg-config make dpkg-dev nlohmann-json3-dev nodejs python3)
browser=(chromium chromium-driver python3-numpy python3-pil python3-selenium)
package=("${build[@]}" dpkg-dev binutils gzip lintian debootstrap)

case ${1-} in
build) packages=("${build[@]}") ;;
test) packages=("${test[@]}") ;;
ci) packages=("${ci[@]}") ;;
tidy) packages=("${tidy[@]}") ;;
fuzz) packages=("${fuzz[@]}") ;;
bench) packages=("${bench[@]}") ;;
coverage) packages=("${coverage[@]}") ;;
windows) packages=("${windows[@]}") ;;
package) packages=("${package[@]}") ;;
archives) packages=("${archives[@]}") ;;
cluster) packages=("${cluster[@]}") ;;
browser) packages=("${browser[@]}") ;;
web) packages=("${web[@]}") ;;
*)
    echo "usage: $0 build|test|ci|tidy|fuzz|bench|coverage|windows|package|archives|cluster|browser|web" >&2
    exit 2
    ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    {
        echo "setup: this system has no Debian packages, so nothing is installed."
        echo "setup: what Debian 12 calls ${packages[*]}"
        echo "setup: must be there, or the next step will miss it."
    } >&2
    exit 0
fi

missing=()
for package in "${packages[@]}"; do
    state=$(dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null || true)
    grep -qx installed <<<"$state" || missing+=("$package")
done
[ "${#missing[@]}" -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "setup: these packages are missing: ${missing[*]}" >&2
        echo "setup: install them as root (there is no sudo here), then try again." >&2
        exit 1
    fi
    as_root=(sudo)
fi
echo "setup: installing ${missing[*]}"
"${as_root[@]}" apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${missing[@]}"
