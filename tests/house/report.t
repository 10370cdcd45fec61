What the tool tells of metafiles, and what it makes of damaged ones.

  $ . "$TESTDIR/tool.sh"

A WMF of a rectangle, a record of no known type, which is skipped, and the end: 60 bytes.

  $ head='\1\0\11\0\0\3\36\0\0\0\0\0\13\0\0\0\0\0'
  $ rectangle='\7\0\0\0\33\4\11\0\11\0\1\0\1\0'
  $ arc='\13\0\0\0\27\10\0\0\0\0\0\0\0\0\11\0\11\0\1\0\1\0'
  $ end='\3\0\0\0\0\0' odd=${arc/'\27'/'\120'}
  $ printf "$head$rectangle$odd$end" >whole.wmf
  $ metafile2svg --report whole.wmf -o whole.svg >report
  metafile2svg: whole.wmf: 1 of 2 drawing records not drawn: META 0x850

With the document on standard output the report is on standard error.

  $ metafile2svg -q --report whole.wmf 2>errors | cmp - whole.svg && cmp errors report
  $ metafile2svg --report --json text.emf 2>&1 | grep -c metafile2svg:
  0
  [1]
  $ metafile2svg -q --report --json --check whole.wmf
  [
  {"file":"whole.wmf","result":"converted","verdict":"lost","format":"WMF","width":*,"totals":{"drawing":2,"drawingLost":1,"stateIgnored":0,"approximated":0},"records":[{"name":"META_RECTANGLE","type":1051,"weight":"drawing","outcome":"drawn","count":1,"firstOffset":18},{"name":"META 0x850","type":2128,"weight":"drawing","outcome":"skipped","count":1,"firstOffset":32,"reason":"its type is not known"}],"end":{"reason":"end record","record":3,"offset":54}} (glob)
  ]
  $ metafile2svg -q --info whole.wmf | tee info
  whole.wmf: converted, lost
    format   WMF
    size     60 bytes, by its header 60
    picture  * pixels* (glob)
    records  3 up to the end record at offset 54
      META_RECTANGLE                   1
      META 0x850                       1
    records: 1 drawn, 0 approximated, 1 skipped, 0 neutral; ended by end record, record 3 (offset 54)
    skipped      META 0x850                       1  first at offset 32: its type is not known
    drawn        META_RECTANGLE                   1  first at offset 18
  $ sed 2,7d info | cmp - report
  $ metafile2svg --info chart.emf --scale 1.25 | sed -n 4,7p
    bounds   0,0 to 300,200 pixels
    frame    0,0 to 7939,5286 x 0.01 mm
    device   1024 x 768 pixels, 271 x 203 mm
    picture  375 x 250 pixels
  $ printf "$head$rectangle$odd" >endless.wmf
  $ metafile2svg -q --info --json text.emf endless.wmf 2>messages
  [
  {"file":"text.emf","result":"failed","verdict":"refused","format":"unknown","message":"text.emf: not a metafile: neither an EMF nor a WMF header","bytes":30},
  {"file":"endless.wmf","result":"damaged","verdict":"damaged","format":"WMF","message":"endless.wmf: truncated, 54 of 60 bytes, stopped at record 3 (offset 54)","bytes":54,"headerBytes":60,"recordTypes":[{"name":"META_RECTANGLE","type":1051,"count":1,"firstOffset":18},{"name":"META 0x850","type":2128,"count":1,"firstOffset":32}],"recordsEnd":{"reason":"end of data","record":3,"offset":54},"width":*,"records":[*],"end":{"reason":"end of data","record":3,"offset":54}} (glob)
  ]
  [1]
  $ cat messages
  metafile2svg: text.emf: not a metafile: neither an EMF nor a WMF header
  metafile2svg: endless.wmf: truncated, 54 of 60 bytes, stopped at record 3 (offset 54)

Names stand in messages without what a terminal would obey.

  $ cp text.emf $'\e[2J\u202efme.emf' && metafile2svg *fme.emf
  metafile2svg: ?[2J?fme.emf: not a metafile: neither an EMF nor a WMF header
  [1]
  $ rm *fme.emf

Damaged files are converted, and their documents marked if something is missing.

  $ damaged() {
  >     metafile2svg -q "$1" -o damaged.svg
  >     echo "$?$(xmllint --noout damaged.svg; grep '^<!--' damaged.svg)"
  > }
  $ put() { cp chart.emf patched.emf; printf "$2" | dd of=patched.emf bs=1 seek=$1 conv=notrunc status=none; damaged patched.emf; }
  $ head -c 40 whole.wmf >cut.wmf
  $ damaged cut.wmf
  metafile2svg: cut.wmf: truncated, 40 of 60 bytes, stopped at record 2 (offset 32)
  3<!-- Incomplete: the metafile is truncated, 40 of 60 bytes, stopped at record 2 (offset 32) -->
  $ metafile2svg --info cut.wmf 2>/dev/null | grep ' records  '
    records  2 up to the record cut off at offset 32
  $ printf "$head$rectangle"'\0\0\0\0\33\4'"$arc$end" >zero.wmf
  $ damaged zero.wmf
  metafile2svg: zero.wmf: damaged, went on behind 6 bytes at offset 32
  3<!-- Incomplete: the metafile is damaged, went on behind 6 bytes at offset 32 -->
  $ (cat chart.emf; printf x) >long.emf
  $ damaged long.emf
  metafile2svg: long.emf: damaged header, 5457 of 5456 bytes, all records are there
  3
  $ printf "${head/'\13'/'\7'}$rectangle$arc$end" >limited.wmf
  $ damaged limited.wmf
  metafile2svg: limited.wmf: damaged header, all records are there
  3
  $ put 52 '\2\0\0\0'
  metafile2svg: patched.emf: damaged header, all records are there
  3
  $ printf "${head/'\36'/'\6'}$rectangle$odd$end" >short.wmf
  $ damaged short.wmf
  metafile2svg: short.wmf: damaged header, 60 of 12 bytes, all records are there
  3
  $ cmp damaged.svg whole.svg
  $ metafile2svg --exact short.wmf | grep -c '<rect'
  0
  [1]

An end record before the end by the header is passed, and padding is nothing.

  $ printf "$head$rectangle$end$arc$rectangle$end" >middle.wmf
  $ damaged middle.wmf
  metafile2svg: middle.wmf: damaged, went on behind 6 bytes at offset 32
  3<!-- Incomplete: the metafile is damaged, went on behind 6 bytes at offset 32 -->
  $ put 192 '\16' >/dev/null
  metafile2svg: patched.emf: damaged, went on behind 24 bytes at offset 192
  $ printf "$head$rectangle$odd$end$end\0\0\0\0\0\0" >padded.wmf
  $ metafile2svg -q padded.wmf | cmp - whole.svg

A header that names no place of a record. The ids of a document come from the metafile's bytes.

  $ unnamed() { sed -E 's/(id="|\(#).{6}/\1/g' "$1"; }
  $ same() { cmp <(unnamed chart.svg) <(unnamed damaged.svg); }
  $ put 4 '\254' && same
  metafile2svg: patched.emf: damaged header, first record found at offset 168 and not at 172, all from there on are read
  3
  $ put 4 '\120\25\0\0' && same
  metafile2svg: patched.emf: damaged header, first record found at offset 168 and not at 5456, all from there on are read
  3
  $ metafile2svg --exact patched.emf | grep -c '<rect'
  0
  [1]

What a picture lacks, and why: here the type of a record is an unknown one. What the exact text lacks
is another matter.

  $ put 228 '\310'
  0
  $ metafile2svg -q --report patched.emf 2>&1 >/dev/null | sed -n 2,3p
    records: 193 drawn, 0 approximated, 1 skipped, 0 neutral; ended by end record, record 196 (offset 5436)
    skipped      EMR 200                          1  first at offset 228: its type is not known
  $ metafile2svg -q --check --report --json patched.emf | grep -o '{[^{]*EMR 200[^}]*}'
  {"name":"EMR 200","type":200,"weight":"drawing","outcome":"skipped","count":1,"firstOffset":228,"reason":"its type is not known"}
  $ metafile2svg --check --exact --report patched.emf | grep 'EMR 200'
    skipped      EMR 200                          1  first at offset 228

Of a file cut anywhere behind its header there is a document; only those cut behind the record that
draws hold what it draws.

  $ mkdir cuts
  $ for size in 18 19 31 32 33 53; do head -c $size whole.wmf >cuts/$size.wmf; done
  $ for size in 88 100 1000 2001 5455; do head -c $size chart.emf >cuts/$size.emf; done
  $ metafile2svg -q cuts 2>messages
  [3]
  $ grep -c ': truncated, ' messages
  11
  $ xmllint --noout cuts/*.svg && ls cuts/*.svg | wc -l
  11
  $ grep -l '<rect' cuts/*.wmf.svg
  cuts/32.wmf.svg
  cuts/33.wmf.svg
  cuts/53.wmf.svg

JSON is what its description says.

  $ json() { metafile2svg -q --check --json "$@" 2>/dev/null >told.json
  >     python3 -c 'import json, jsonschema
  > jsonschema.validate(json.load(open("told.json")), json.load(open("'"$ROOT"'/docs/report.schema.json")))'
  > }
  $ for how in --report --info '--exact --report'; do json $how *.[ew]mf cuts missing; done
  $ metafile2svg -q --json --report text.emf 2>&1 | grep -c verdict
  1
