#!/bin/bash
# Checks the SVG documents in a folder: each is valid by the DTD of SVG 1.1, has neither negative
# sizes nor numbers that are none, and a viewer opens it within ten seconds of work.
#
#   check-documents.sh FOLDER [N]
#
# Only every Nth document is opened, which takes the most time. Lists what is wrong, and ends with
# status 1 if anything is. Needs Debian's python3-lxml, w3c-sgml-lib and librsvg2-bin; nothing is
# fetched from the network.
set -u
folder=${1:?a folder of SVG documents}
every=${2:-1}
faults=$(mktemp)
trap 'rm -f "$faults"' EXIT

find "$folder" -name '*.svg' -print0 | /usr/bin/python3 -c '
import sys
from lxml import etree

dtd = etree.DTD(external_id=b"-//W3C//DTD SVG 1.1//EN")
parser = etree.XMLParser(huge_tree=True, no_network=True)
for path in filter(None, sys.stdin.buffer.read().split(b"\0")):
    try:
        if not dtd.validate(etree.parse(path.decode(), parser)):
            print(dtd.error_log.last_error)
    except etree.XMLSyntaxError as error:
        print(path.decode(), error)' >> "$faults"
find "$folder" -name '*.svg' -print0 | xargs -0 -r grep -HnoE \
  -e ' (width|height|r|rx|ry|font-size|stroke-width|stroke-miterlimit)="-[^"]*"' \
  -e ' (x|y|d|points|width|height|viewBox|transform|cx|cy)="[^"]*(nan|inf|[0-9]e[+-]?[0-9])[^"]*"' \
  >> "$faults"
find "$folder" -name '*.svg' -print0 | sed -zn "0~${every}p" |
  xargs -0 -r -n 1 -P "$(nproc)" sh -c \
  'ulimit -t 10; rsvg-convert --unlimited "$0" >/dev/null 2>&1 || echo "$0: not opened, status $?"' \
  >> "$faults"

cat "$faults"
echo "$(find "$folder" -name '*.svg' | wc -l) documents, $(wc -l < "$faults") faults"
[ ! -s "$faults" ]
