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

expect 'report' 0 '' "$tool" --report whole.wmf -o whole.svg
is_text out 'whole.wmf: converted
  records: 1 drawn, 0 approximated, 1 skipped, 0 neutral; ended by end record, record 3 (offset 54)
  skipped      META_ARC                         1  first at offset 32
  drawn        META_RECTANGLE                   1  first at offset 18'
is_document whole.svg
expect 'report beside the document' 0 "$(cat out)" "$tool" --report whole.wmf
is_same out whole.svg
expect 'report as JSON' 0 '' "$tool" --report --json --check whole.wmf
is_text out '[
{"end":{"offset":54,"reason":"end record","record":3},"file":"whole.wmf","format":"WMF","records":[{"count":1,"firstOffset":18,"name":"META_RECTANGLE","outcome":"drawn","type":1051},{"count":1,"firstOffset":32,"name":"META_ARC","outcome":"skipped","type":2071}],"result":"converted","skipped":1}
]'
expect 'facts' 0 '' "$tool" --info whole.wmf
is_text out 'whole.wmf: converted
  format   WMF
  size     60 bytes, by its header 60
  records  3 up to the end record at offset 54
    META_RECTANGLE                   1
    META_ARC                         1
  records: 1 drawn, 0 approximated, 1 skipped, 0 neutral; ended by end record, record 3 (offset 54)
  skipped      META_ARC                         1  first at offset 32
  drawn        META_RECTANGLE                   1  first at offset 18'
expect 'facts of an EMF' 0 '' "$tool" --info "$chart"
sed -i 6q out
is_text out "$chart: converted
  format   EMF
  size     5456 bytes, by its header 5456
  bounds   0,0 to 300,200 pixels
  frame    0,0 to 7939,5286 x 0.01 mm
  device   1024 x 768 pixels, 271 x 203 mm"
printf 'This is a text and no picture.' >text.emf
expect 'facts as JSON, of a batch with a failure' 1 \
    "metafile2svg: text.emf: not a metafile: neither an EMF nor a WMF header
metafile2svg: endless.wmf: truncated, 54 of 60 bytes, stopped at record 3 (offset 54)" \
    "$tool" -q --info --json text.emf endless.wmf
is_text out '[
{"bytes":30,"file":"text.emf","format":"unknown","message":"text.emf: not a metafile: neither an EMF nor a WMF header","result":"failed"},
{"bytes":54,"end":{"offset":54,"reason":"end of data","record":3},"file":"endless.wmf","format":"WMF","headerBytes":60,"message":"endless.wmf: truncated, 54 of 60 bytes, stopped at record 3 (offset 54)","recordTypes":[{"count":1,"firstOffset":18,"name":"META_RECTANGLE","type":1051},{"count":1,"firstOffset":32,"name":"META_ARC","type":2071}],"records":[{"count":1,"firstOffset":18,"name":"META_RECTANGLE","outcome":"drawn","type":1051},{"count":1,"firstOffset":32,"name":"META_ARC","outcome":"skipped","type":2071}],"recordsEnd":{"offset":54,"reason":"end of data","record":3},"result":"damaged","skipped":1}
]'
[ ! -c /dev/full ] || expect 'report to a full device' 1 \
    'metafile2svg: standard output: cannot be written: No space left on device' \
    shell '"$tool" --info "$chart" >/dev/full'

# damaged FILE MESSAGE COMMENT: converts with status 3, and marks the document or, with an empty
# COMMENT, does not, since nothing is missing.
damaged() {
    expect "damaged $1" 3 "metafile2svg: $1: $2" "$tool" "$1" -o damaged.svg
    is_document damaged.svg
    local comment
    comment=$(sed -n 's/^<!-- *\(.*[^ ]\) *-->$/\1/p' damaged.svg)
    [ "$comment" = "$3" ] || fault "the comment is: $comment"
}
text='truncated, 40 of 60 bytes, stopped at record 2 (offset 32)'
damaged cut.wmf "$text" "Incomplete: the metafile is $text"
text='truncated, 5440 of 5456 bytes, stopped at record 196 (offset 5436)'
damaged cut.emf "$text" "Incomplete: the metafile is $text"
text='damaged, stopped at record 2 (offset 32): its size makes no sense'
damaged zero.wmf "$text" "Incomplete: the metafile is $text"
damaged long.emf 'damaged header, 5457 of 5456 bytes, all records are there' ''
damaged short.wmf 'damaged header, 60 of 12 bytes, all records are there' ''
damaged limited.wmf 'damaged header, all records are there' ''
"$tool" short.wmf >short.svg 2>/dev/null || true
is_same short.svg whole.svg
expect 'exact of a short header' 0 '' "$tool" --exact short.wmf
! grep -q '<rect' out || fault "draws more than the library"

# Of a file cut anywhere behind its header there is a document, and it is less than the whole one.
name='cut anywhere'
for size in 18 19 31 32 33 53; do
    head -c "$size" whole.wmf >"cut-$size.wmf"
done
for size in 88 100 1000 2001 5455; do
    head -c "$size" "$chart" >"cut-$size.emf"
done
status=0
"$tool" cut-*.?mf -o cut/ 2>messages || status=$?
[ "$status" = 3 ] && [ "$(grep -c ': truncated, ' messages)" = 11 ] || fault "$(cat messages)"
for document in cut/*.svg; do
    is_document "$document"
done
holds cut cut-100.emf.svg cut-1000.emf.svg cut-18.wmf.svg cut-19.wmf.svg cut-2001.emf.svg \
    cut-31.wmf.svg cut-32.wmf.svg cut-33.wmf.svg cut-53.wmf.svg cut-5455.emf.svg cut-88.emf.svg
# Only files cut behind the record that draws hold what it draws.
[ "$(grep -lc '<rect' cut/cut-*.wmf.svg | tr '\n' ' ')" = \
    'cut/cut-32.wmf.svg cut/cut-33.wmf.svg cut/cut-53.wmf.svg ' ] ||
    fault "rectangles in $(grep -lc '<rect' cut/cut-*.wmf.svg)"

finish
