#!/bin/bash
# Checks the SVG documents in a folder: each is valid by the DTD of SVG 1.1, has neither negative
# sizes nor numbers that are none, and a viewer opens it within ten seconds of work.
#
#   check-documents.sh FOLDER
#
# Lists what is wrong, and ends with status 1 if anything is. Needs Debian's libxml2-utils,
# w3c-sgml-lib and librsvg2-bin; nothing is fetched from the network.
set -u
folder=${1:?a folder of SVG documents}
faults=$(mktemp)
trap 'rm -f "$faults"' EXIT

find "$folder" -name '*.svg' -print0 | xargs -0 -r -n 200 xmllint --noout --nonet --huge \
  --dtdvalidfpi '-//W3C//DTD SVG 1.1//EN' 2>&1 | grep -E ': (validity|parser|namespace) error|does not validate|not an? ' >> "$faults"
find "$folder" -name '*.svg' -print0 | xargs -0 -r grep -HnoE \
  -e ' (width|height|r|rx|ry|font-size|stroke-width|stroke-miterlimit)="-[^"]*"' \
  -e ' (x|y|d|points|width|height|viewBox|transform|cx|cy)="[^"]*(nan|inf|[0-9]e[+-]?[0-9])[^"]*"' \
  >> "$faults"
find "$folder" -name '*.svg' -print0 | xargs -0 -r -n 1 -P "$(nproc)" sh -c \
  'ulimit -t 10; rsvg-convert --unlimited "$0" >/dev/null 2>&1 || echo "$0: not opened, status $?"' \
  >> "$faults"

cat "$faults"
echo "$(find "$folder" -name '*.svg' | wc -l) documents, $(wc -l < "$faults") faults"
[ ! -s "$faults" ]
