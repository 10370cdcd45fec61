The tool, one file a call: every exit status, what it prints, what it leaves behind.

  $ . "$TESTDIR/tool.sh"

Converted, to standard output, to a file, to a folder, from standard input, with names of all kinds.

  $ xmllint --noout drawing.svg chart.svg
  $ metafile2svg --exact chart.emf -o folder/new.svg
  $ xmllint --noout folder/new.svg 2>/dev/null
  [1]
  $ metafile2svg -o folder/new.svg chart.emf && cmp folder/new.svg chart.svg
  $ cat drawing.wmf | metafile2svg - -o - | cmp - drawing.svg
  $ cp chart.emf "$odd" && cp chart.emf ./-dash.emf
  $ LC_ALL=C metafile2svg "$odd" -o "folder/$odd.svg" && cmp "folder/$odd.svg" chart.svg
  $ metafile2svg -o folder -- -dash.emf && cmp folder/-dash.emf.svg chart.svg && rm folder/*
  $ for name in chart.emf drawing.wmf; do
  >     metafile2svg --width 30.5 --height=20 $name | grep -oE ' (width|height)="[^"]*"' | head -2
  > done
   width="30.5"
   height="20"
   width="30.5"
   height="20"
  $ metafile2svg --dpi 48 chart.emf | grep -m1 -o ' width="[^"]*" height="[^"]*"'
   width="150" height="100"
  $ metafile2svg --id-prefix own- chart.emf | grep -oE '(id="|\(#)[^")]*' | grep -cv own-
  0
  [1]
  $ metafile2svg chart.emf -o folder/a.svgz && gunzip <folder/a.svgz | cmp - chart.svg && rm folder/*
  $ metafile2svg --check chart.emf -o folder/x.svg && ls folder

What a picture lacks is told, in colour on a terminal unless that is not wanted.

  $ metafile2svg lossy.wmf >lossy.svg
  metafile2svg: lossy.wmf: 1 of 27 drawing records not drawn: META 0x177
  $ metafile2svg -q lossy.wmf | cmp - lossy.svg
  $ colored() { TERM=xterm script -qec "$1 metafile2svg $2 >/dev/null" /dev/null </dev/null | tr -d '\r'; }
  $ colored '' lossy.wmf
  \x1b[33mmetafile2svg:\x1b[0m lossy.wmf: 1 of 27 drawing records not drawn: META 0x177 (esc)
  $ colored '' text.emf
  \x1b[31mmetafile2svg:\x1b[0m text.emf: not a metafile: neither an EMF nor a WMF header (esc)
  $ colored NO_COLOR=1 lossy.wmf
  metafile2svg: lossy.wmf: 1 of 27 drawing records not drawn: META 0x177

Packed by gzip, which is told by the contents.

  $ mkdir packed && gzip <chart.emf >packed/a.EMZ && gzip <drawing.wmf >packed/b.wmz
  $ gzip <chart.emf >packed/c.emf && metafile2svg -q packed && ls packed
  a.EMZ
  a.EMZ.svg
  b.wmz
  b.wmz.svg
  c.emf
  c.emf.svg
  $ cmp packed/a.EMZ.svg chart.svg && cmp packed/b.wmz.svg drawing.svg && cmp packed/c.emf.svg chart.svg
  $ metafile2svg --exact packed/a.EMZ >packed/exact && metafile2svg --exact chart.emf | cmp - packed/exact

What is no plain file stays what it is.

  $ mkfifo pipe
  $ timeout 9 cat pipe >piped & metafile2svg chart.emf -o pipe; wait
  $ cmp piped chart.svg && ls -F pipe
  pipe|
  $ metafile2svg chart.emf -o /dev/stdout >piped && cmp piped chart.svg

A link is replaced, and what it leads to stays: a metafile, the page, the list, nothing at all.

  $ cp chart.emf kept.emf && ln -s kept.emf link.svg && ln -s nowhere dangling.svg
  $ ln -s kept.emf page.html && ln -s kept.emf list.txt
  $ metafile2svg kept.emf -o link.svg --gallery page.html --dump-skipped list.txt
  $ metafile2svg chart.emf -o dangling.svg
  $ cmp kept.emf chart.emf && cmp link.svg chart.svg && cmp dangling.svg chart.svg && ls nowhere
  ls: cannot access 'nowhere': No such file or directory
  [2]
  $ find . -type l; grep -c 'Start Of File' list.txt; grep -c '<figcaption>' page.html
  1
  1

Log lines, help and version.

  $ log() { "$@" --exact drawing.wmf 2>&1 >/dev/null | grep -oE 'Setup WMF record handlers|Enter ConvertWMFToSVG' | sort -u; }
  $ QT_LOGGING_RULES=svgtool=true log metafile2svg
  Setup WMF record handlers
  $ log metafile2svg --log-level warning
  $ log metafile2svg --log-level trace
  Enter ConvertWMFToSVG
  Setup WMF record handlers
  $ metafile2svg --help | grep Usage
  Usage: * FILE|FOLDER... (glob)
  $ metafile2svg --version
  metafile2svg \d+\.\d+\.\d+ (re)
  built with Qt \d.+, libdeflate \d.* (re)

Not converted: nothing on standard output, no new file, an existing one as it was.

  $ : >empty.emf && printf 'seventeen bytes..' >short.emf && printf keep >kept.svg
  $ head -c 5455 chart.emf >cut.emf && head -c 87 chart.emf >head.emf
  $ refused() {
  >     metafile2svg "$@"
  >     metafile2svg "$@" -o folder/x.svg 2>/dev/null || metafile2svg "$@" -o kept.svg 2>/dev/null ||
  >         echo "$? $(ls folder)$(cat kept.svg)"
  > }
  $ refused $'missing/it\'s "gone"\nä'
  metafile2svg: missing/it's "gone"?ä: no such file
  1 keep
  $ refused empty.emf
  metafile2svg: empty.emf: is empty
  1 keep
  $ refused short.emf
  metafile2svg: short.emf: has only 17 bytes; a metafile has at least 18
  1 keep
  $ refused head.emf
  metafile2svg: head.emf: not a metafile: neither an EMF nor a WMF header
  1 keep
  $ refused --exact cut.emf
  metafile2svg: cut.emf: its EMF header names 5456 bytes, but it has 5455
  1 keep
  $ head -c 200 packed/a.EMZ >cut.emz && refused cut.emz
  metafile2svg: cut.emz: its gzip data are damaged
  1 keep
  $ metafile2svg - <&-
  metafile2svg: standard input: cannot be read: Bad file descriptor
  [1]
  $ metafile2svg - <folder
  metafile2svg: standard input: cannot be read: Is a directory
  [1]

Converted, but not written.

  $ metafile2svg chart.emf -o missing/x.svg
  metafile2svg: missing/x.svg: cannot be written: No such file or directory
  [1]
  $ mv kept.svg folder
  $ (ulimit -f 0; exec metafile2svg chart.emf -o folder/kept.svg)
  metafile2svg: folder/kept.svg: cannot be written: File too large
  [1]
  $ ls folder; cat folder/kept.svg
  kept.svg
  keep (no-eol)
  $ metafile2svg --help >$full
  metafile2svg: standard output: cannot be written: No space left on device
  [1]
  $ metafile2svg chart.emf -o $full
  metafile2svg: *full: cannot be written: No space left on device (glob)
  [1]
  $ test -c $full
  $ metafile2svg chart.emf >&-
  metafile2svg: standard output: cannot be written: Bad file descriptor
  [1]

The reader has gone away.

  $ mkfifo gone
  $ (exec 4<>gone 5>gone 4<&-; exec metafile2svg chart.emf >&5)
  metafile2svg: standard output: cannot be written: Broken pipe
  [1]

Wrong usage.

  $ while read -r arguments; do
  >     metafile2svg $arguments 2>&1 | sed 's/ (metafile2svg --help explains)$//'
  >     statuses+=${PIPESTATUS[0]}
  > done <<'END'
  > 
  > --fast a.emf
  > a.emf -o a.svg -o b.svg
  > a.emf --output=
  > - a.emf
  > --exact --scale 2 a.emf
  > -j 0 a.emf
  > --width=-1 a.emf
  > --scale nan a.emf
  > --height 1e7 a.emf
  > --text pictures a.emf
  > --log-level loud a.emf
  > --prefer best a.emf
  > --id-prefix 1a a.emf
  > --limit 0 a.emf
  > --exact --limit 9 a.emf
  > --dpi 0 a.emf
  > --dpi 72 --scale 2 a.emf
  > --exact --strict a.emf
  > --exact --prefer wmf a.emf
  > --json a.emf
  > --info --report a.emf
  > --info a.emf -o a.svg
  > --gallery a.emf b.emf
  > a.emf -o a.pdf
  > chart.emf a.svg
  > chart.emf chart.svg
  > -qx a.emf
  > END
  metafile2svg: no input file or folder is given
  metafile2svg: Unknown option 'fast'
  metafile2svg: --output is given more than once
  metafile2svg: the value of --output is empty
  metafile2svg: - is standard input and cannot be one of several inputs
  metafile2svg: --exact leaves the size as it is
  metafile2svg: --jobs needs a number from 1 to 1024
  metafile2svg: --width needs a number above 0 and up to 1000000
  metafile2svg: --scale needs a number above 0 and up to 1000000
  metafile2svg: --height needs a number above 0 and up to 1000000
  metafile2svg: --text needs characters or outlines
  metafile2svg: there is no log level loud
  metafile2svg: --prefer can be wmf or emf
  metafile2svg: --id-prefix needs a letter, and up to 63 letters, digits, - and _
  metafile2svg: --limit needs a number above 0 and up to 1000000
  metafile2svg: --exact leaves nothing out for its length
  metafile2svg: --dpi needs a number above 0 and up to 1000000
  metafile2svg: --dpi and --scale exclude each other
  metafile2svg: --exact leaves out what it leaves out, so --strict has no use
  metafile2svg: --exact always takes the file's own records
  metafile2svg: --json needs --info or --report
  metafile2svg: --info and --report exclude each other
  metafile2svg: --info writes no documents, so -o has no use
  metafile2svg: --gallery needs the name of a page, which ends in .html
  metafile2svg: a.pdf: documents are SVG; give a name that ends in .svg, and convert that further
  metafile2svg: a.svg is no metafile; to write it, say -o a.svg
  metafile2svg: chart.svg is no metafile; to write it, say -o chart.svg
  metafile2svg: Unknown option 'x'
  $ echo $statuses
  2222222222222222222222222222
  $ metafile2svg ''
  metafile2svg: a file name is empty (metafile2svg --help explains)
  [2]
