#!/usr/bin/env bash
# Puts the picture that GDI painted of a metafile beside the SVG that the tool makes of it.
# usage: scripts/make-picture.sh METAFILE PAINTED.png OUT.png [GDI+]
# Needs a release build (scripts/convert.sh makes one) and rsvg-convert (Debian's librsvg2-bin).
set -euo pipefail
if [ $# -lt 3 ]; then
    sed -n '3,4s/^# //p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
metafile=$1 painted=$2 out=$3 painter=${4-GDI}
tool=${TOOL:-$(dirname "${BASH_SOURCE[0]}")/../build/release/cli/metafile2svg}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$tool" "$metafile" -o "$work/ours.svg"
rsvg-convert "$work/ours.svg" -o "$work/ours.png"

# Width and height of a PNG: two big-endian numbers at byte 16.
read -ra size < <(od -An -j16 -N8 -t u1 "$painted")
width=$((size[2] * 256 + size[3])) height=$((size[6] * 256 + size[7]))
image() {
    echo "<g transform=\"translate($2, 10)\">"
    echo "<image width=\"$width\" height=\"$height\" xlink:href=\"data:image/png;base64,$(base64 -w0 "$1")\"/>"
    echo "<rect width=\"$width\" height=\"$height\" fill=\"none\" stroke=\"#bbb\"/>"
    echo "<text x=\"$((width / 2))\" y=\"$((height + 18))\" text-anchor=\"middle\">$3</text></g>"
}
{
    echo "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\""
    echo " width=\"$((2 * width + 30))\" height=\"$((height + 40))\""
    echo " font-family=\"DejaVu Sans\" font-size=\"12\" fill=\"#333\">"
    echo "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>"
    image "$painted" 10 "painted by $painter"
    image "$work/ours.png" $((width + 20)) "the SVG, rendered by librsvg"
    echo "</svg>"
} >"$work/both.svg"
rsvg-convert "$work/both.svg" -o "$out"
