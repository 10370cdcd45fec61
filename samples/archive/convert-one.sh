#!/bin/sh
# Converts one file of an archive: IN/NAME becomes OUT/NAME.svg, which appears when it is complete.
# The exit status is the tool's.
# usage: convert-one.sh IN OUT NAME
svg=$2/$3.svg
mkdir -p "$(dirname "$svg")" || exit 1
metafile2svg - -o - <"$1/$3" >"$svg.part"
status=$?
case $status in
0 | 3) mv "$svg.part" "$svg" || exit 1 ;; # 3: drawn as far as the damaged file can be read
*) rm -f "$svg.part" ;;
esac
exit $status
