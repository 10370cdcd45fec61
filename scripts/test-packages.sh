#!/usr/bin/env bash
# Installs the Debian packages of scripts/package.sh into a clean Debian 12, uses everything they
# hold, and purges them again. It needs root, a Debian mirror and some 2 GiB of disk.
# usage: scripts/test-packages.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ "$(id -u)" -ne 0 ]; then
    echo "test-packages: root makes the clean system; run it through sudo" >&2
    exit 1
fi
./scripts/setup.sh package
shopt -s nullglob
packages=(build/package/*.deb)
if [ "${#packages[@]}" -ne 6 ]; then
    echo "test-packages: scripts/package.sh comes first; it makes six packages" >&2
    exit 1
fi

root=$(mktemp -d)
trap 'rm -rf --one-file-system "$root"' EXIT
fail() {
    echo "FAILED: $*"
    exit 1
}
inside() {
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root \
        DEBIAN_FRONTEND=noninteractive "$@"
}
# Runs a command inside whose output matters only when it fails.
quietly() {
    inside "$@" >"$root.log" 2>&1 || {
        cat "$root.log"
        fail "$*"
    }
    rm -f "$root.log"
}

mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' |
    head -n 1)
[ -n "$mirror" ] || fail "apt knows no mirror of Debian 12"
echo "a clean Debian 12 from $mirror"
debootstrap --variant=minbase bookworm "$root" "$mirror" >"$root.log" 2>&1 || {
    tail -n 20 "$root.log"
    fail "debootstrap"
}
rm -f "$root.log"

mkdir "$root/work"
cp "${packages[@]}" samples/chart.emf samples/drawing.wmf "$root/work"
cp -r samples/host "$root/work"
debs=("${packages[@]/#build\/package/\/work}")

# The tool and its library first, as a user has them; what they recommend comes along.
runtime=()
for deb in "${debs[@]}"; do
    [[ $deb == *-dev_* ]] || runtime+=("$deb")
done
quietly apt-get update -q
quietly apt-get install -q -y "${runtime[@]}"
# Whole outputs are searched: a reader that leaves early would fail the writer.
holds() {
    local output
    output=$(inside "${@:2}" 2>&1) || { echo "$output"; fail "${*:2}"; }
    grep -q -- "$1" <<<"$output"
}
holds 'libSVGTool\.so\.0' ldconfig -p || fail "the loader does not know the library"
inside dpkg-query -W fonts-liberation fonts-dejavu-core librsvg2-bin >/dev/null ||
    fail "a recommended package did not come along"
[ ! -e "$root/usr/include/svgtool" ] || fail "headers came without the development package"
inside metafile2svg /work/chart.emf -o /work/tool.svg || fail "the tool does not convert"
grep -q '<text ' "$root/work/tool.svg" || fail "the document has no text"
inside metafile2svg --exact /work/chart.emf -o /work/exact.svg || fail "the tool does not convert"
echo "the tool: converts"

for file in usr/bin/metafile2svg usr/lib/metafile2svg/exact.so "usr/lib/$(uname -m)-linux-gnu"/libSVGTool{,Picture}.so.0*; do
    flags=$(readelf -Wld "$root/$file")
    [[ $flags == *GNU_RELRO* && $flags == *BIND_NOW* ]] || fail "$file can be relocated later"
    grep -q '__stack_chk_fail' < <(readelf -W --dyn-syms "$root/$file") ||
        fail "the stack of $file is not protected"
done
echo "the tool and the libraries: hardened"

holds "complete" python3 -c 'import svgtool
print(svgtool.convert(open("/work/chart.emf", "rb").read()).verdict)' || fail "Python does not convert"
echo "Python: converts"

# What is beside the tool.
quietly apt-get install -q -y --no-install-recommends man-db bash-completion
for page in metafile2svg metafile2svg-thumbnailer; do
    inside man -w "$page" >/dev/null || fail "man finds no page of $page"
    holds NAME man "$page" || fail "$page(1) is not shown"
done
inside bash -c '. /usr/share/bash-completion/bash_completion && _completion_loader metafile2svg
    complete -p metafile2svg' >/dev/null || fail "bash-completion does not load our completion"
quietly apt-get install -q -y --no-install-recommends zsh fish
inside zsh -c 'autoload -Uz compinit; compinit -D; [ "$_comps[metafile2svg]" = _metafile2svg ]' ||
    fail "zsh does not load our completion"
holds '^--id-prefix' fish -c 'complete -C "metafile2svg --id"' || fail "fish does not complete"
read -r command < <(sed -n 's/^Exec=//p' "$root/usr/share/thumbnailers/metafile2svg.thumbnailer")
for sample in chart.emf drawing.wmf; do
    line=${command//%s/96}
    line=${line//%i//work/$sample}
    quietly sh -c "${line//%o//work/$sample.png}"
    size=$(od -An -j16 -N8 -t u1 "$root/work/$sample.png" | awk '{ print $4, $8 }')
    [[ " $size " == *" 96 "* ]] || fail "the thumbnail of $sample is $size"
done
echo "manual pages, completion and thumbnailer: work"

# Pictures first, which need no Qt to build a host with.
pictures=()
for deb in "${debs[@]}"; do
    [[ $deb != */libsvgtoolpicture* ]] || pictures+=("$deb")
done
quietly apt-get install -q -y --no-install-recommends "${pictures[@]}" cmake make g++ pkg-config
[ ! -e "$root/usr/include/$(uname -m)-linux-gnu/qt6" ] || fail "Qt's headers are there already"
quietly cmake -S /work/host/picture -B /work/picture
quietly cmake --build /work/picture
inside /work/picture/picture_host /work/chart.emf >"$root/work/picture.svg" || fail "the picture host"
grep -q 'width="800"' "$root/work/picture.svg" || fail "the picture host does not set the width"
echo "host of the picture library, without Qt: draws"

quietly apt-get install -q -y --no-install-recommends "${debs[@]}" cmake make g++ pkg-config
quietly cmake -S /work/host -B /work/build
quietly cmake --build /work/build
quietly /work/build/svgtool_host /work/chart.emf /work/host.svg
cmp "$root/work/exact.svg" "$root/work/host.svg" || fail "the CMake host gets another document"
quietly sh -c 'g++ -std=c++17 -fPIC /work/host/main.cpp -o /work/pc_host $(pkg-config --cflags --libs svgtool)'
quietly /work/pc_host /work/chart.emf /work/pc.svg
cmp "$root/work/exact.svg" "$root/work/pc.svg" || fail "the pkg-config host gets another document"
echo "hosts built with CMake and with pkg-config: convert"

# Purged, the packages leave nothing; the rest of the system stays.
quietly apt-get purge -q -y 'libsvgtool.*' metafile2svg python3-svgtool
left=$(cd "$root" && find . -path ./work -prune -o \
    \( -iname '*svgtool*' -o -iname '*metafile2svg*' -o -iname '*basic_logging*' \) -print)
[ -z "$left" ] || fail "left behind: $left"
! holds libSVGTool ldconfig -p || fail "the loader still names the library"
echo "purge: leaves nothing"
