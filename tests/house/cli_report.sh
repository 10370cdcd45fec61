#!/usr/bin/env bash
# The tool from outside: what it tells of metafiles, and what it makes of damaged ones.
# usage: cli_report.sh TOOL SAMPLES
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/cli_support.sh"

# A WMF of a rectangle, an arc, which is skipped, and the end: 60 bytes.
head='\1\0\11\0\0\3\36\0\0\0\0\0\13\0\0\0\0\0'
rectangle='\7\0\0\0\33\4\11\0\11\0\1\0\1\0'
arc='\13\0\0\0\27\10\0\0\0\0\0\0\0\0\11\0\11\0\1\0\1\0'
end='\3\0\0\0\0\0'
printf "$head$rectangle$arc$end" >whole.wmf
printf "$head$rectangle$arc" >endless.wmf
head -c 40 whole.wmf >cut.wmf
printf "${head/'\36'/'\6'}$rectangle$arc$end" >short.wmf
printf "${head/'\13'/'\7'}$rectangle$arc$end" >limited.wmf
printf "$head$rectangle"'\0\0\0\0\33\4'"$arc$end" >zero.wmf
head -c 5440 "$chart" >cut.emf
{ cat "$chart"; printf 'x'; } >long.emf

# is_text with a line feed behind it.
is_lines() {
    is_text "$1" "$2"$'\n'
}
lines='  records: 1 drawn, 0 approximated, 1 skipped, 0 neutral; ended by end record, record 3 (offset 54)
  skipped      META_ARC                         1  first at offset 32
  drawn        META_RECTANGLE                   1  first at offset 18'
check 0 '' "$tool" --report whole.wmf -o whole.svg
is_lines out "whole.wmf: converted
$lines"
is_document whole.svg
# With the document on standard output the report is on standard error.
name='report beside the document'
cp out report
"$tool" --report whole.wmf >out 2>errors
is_same errors report
is_same out whole.svg
check 0 '' "$tool" --report --json --check whole.wmf
is_lines out '[
{"end":{"offset":54,"reason":"end record","record":3},"file":"whole.wmf","format":"WMF","records":[{"count":1,"firstOffset":18,"name":"META_RECTANGLE","outcome":"drawn","type":1051},{"count":1,"firstOffset":32,"name":"META_ARC","outcome":"skipped","type":2071}],"result":"converted","skipped":1}
]'
check 0 '' "$tool" --info whole.wmf
is_lines out "whole.wmf: converted
  format   WMF
  size     60 bytes, by its header 60
  records  3 up to the end record at offset 54
    META_RECTANGLE                   1
    META_ARC                         1
$lines"
check 0 '' "$tool" --info "$chart"
sed -i 6q out
is_lines out "$chart: converted
  format   EMF
  size     5456 bytes, by its header 5456
  bounds   0,0 to 300,200 pixels
  frame    0,0 to 7939,5286 x 0.01 mm
  device   1024 x 768 pixels, 271 x 203 mm"
cut='truncated, 40 of 60 bytes, stopped at record 2 (offset 32)'
check 3 "cut.wmf: $cut" "$tool" --info cut.wmf
has out '  records  2 up to the record cut off at offset 32'
printf 'This is a text and no picture.' >text.emf
failed='text.emf: not a metafile: neither an EMF nor a WMF header'
ended='endless.wmf: truncated, 54 of 60 bytes, stopped at record 3 (offset 54)'
check 1 "$failed"$'\n'"$ended" "$tool" -q --info --json text.emf endless.wmf
is_lines out '[
{"bytes":30,"file":"text.emf","format":"unknown","message":"'"$failed"'","result":"failed"},
{"bytes":54,"end":{"offset":54,"reason":"end of data","record":3},"file":"endless.wmf","format":"WMF","headerBytes":60,"message":"'"$ended"'","recordTypes":[{"count":1,"firstOffset":18,"name":"META_RECTANGLE","type":1051},{"count":1,"firstOffset":32,"name":"META_ARC","type":2071}],"records":[{"count":1,"firstOffset":18,"name":"META_RECTANGLE","outcome":"drawn","type":1051},{"count":1,"firstOffset":32,"name":"META_ARC","outcome":"skipped","type":2071}],"recordsEnd":{"offset":54,"reason":"end of data","record":3},"result":"damaged","skipped":1}
]'
[ ! -c "$full" ] ||
    check 1 'standard output: cannot be written: No space left on device' \
        '"$tool" --info "$chart" >"$full"'

# damaged FILE MESSAGE: converts with status 3, and marks the document if something is missing.
damaged() {
    check 3 "$1: $2" "$tool" "$1" -o damaged.svg
    is_document damaged.svg
    grep '^<!--' damaged.svg >comment || true
    is_text comment "${3:+<!-- Incomplete: the metafile is $2 -->$'\n'}"
}
damaged cut.wmf "$cut" marked
damaged cut.emf 'truncated, 5440 of 5456 bytes, stopped at record 196 (offset 5436)' marked
damaged zero.wmf 'damaged, stopped at record 2 (offset 32): its size makes no sense' marked
damaged long.emf 'damaged header, 5457 of 5456 bytes, all records are there'
damaged limited.wmf 'damaged header, all records are there'
damaged short.wmf 'damaged header, 60 of 12 bytes, all records are there'
is_same damaged.svg whole.svg
check 0 '' "$tool" --exact short.wmf
! grep -q '<rect' out || fault "draws more than the library"

# Of a file cut anywhere behind its header there is a document, and it is less than the whole one.
cuts=(emf/{88,100,1000,2001,5455} wmf/{18,19,31,32,33,53})
mkdir cuts
for cut in "${cuts[@]}"; do
    whole=whole.wmf
    [[ $cut == wmf/* ]] || whole=$chart
    head -c "${cut#*/}" "$whole" >"cuts/${cut#*/}.${cut%/*}"
done
name='cut anywhere' status=0
"$tool" -q cuts 2>messages || status=$?
[ "$status" = 3 ] && [ "$(grep -c ': truncated, ' messages)" = "${#cuts[@]}" ] ||
    fault "status $status: $(cat messages)"
for document in cuts/*.?mf; do
    is_document "$document.svg"
done
# Only files cut behind the record that draws hold what it draws.
is_text <(cd cuts && grep -l '<rect' *.wmf.svg | tr '\n' ' ') '32.wmf.svg 33.wmf.svg 53.wmf.svg '

finish
