The tool, many files a call: folders, threads, what is left out and what goes wrong.

  $ . "$TESTDIR/tool.sh"

A tree with names of all kinds, and files that are no business of the tool.

  $ mkdir -p tree/sub/deep
  $ cp chart.emf tree/a.emf && cp drawing.wmf tree/b.wmf
  $ cp chart.emf "tree/sub/$odd" && cp drawing.wmf tree/sub/deep/c.WMF
  $ printf 'text' >tree/readme.txt
  $ find tree -type f -exec touch -d '1 hour ago' {} +
  $ documents() { (cd "$1" && find . -name '*.svg' | sort); }

Where the documents go.

  $ cp -a tree beside
  $ metafile2svg beside/a.emf beside/b.wmf
  metafile2svg: 2 files: 2 converted
  $ cmp beside/a.emf.svg chart.svg && cmp beside/b.wmf.svg drawing.svg && rm beside/*.svg
  $ metafile2svg -q beside && documents beside
  ./a.emf.svg
  ./b.wmf.svg
  $ metafile2svg -q -r tree -o made/svg && cmp "made/svg/sub/$odd.svg" chart.svg
  $ documents made/svg
  ./a.emf.svg
  ./b.wmf.svg
  ./sub/deep/c.WMF.svg
  ./sub/it's a "näme" 图 %1 I.EMF.svg
  $ metafile2svg -q tree/sub chart.emf -o mixed/ && documents mixed
  ./chart.emf.svg
  ./it's a "näme" 图 %1 I.EMF.svg
  $ metafile2svg --check -r tree -o checked/
  metafile2svg: 4 files: 4 converted
  $ ls checked 2>/dev/null
  [2]

What is newer than its metafile stays, unless forced or named.

  $ printf 'mine' | tee made/svg/a.emf.svg >named.svg
  $ touch -d '2 hours ago' made/svg/b.wmf.svg
  $ metafile2svg -r tree -o made/svg
  metafile2svg: 4 files: 1 converted, 3 up to date
  $ cat made/svg/a.emf.svg
  mine (no-eol)
  $ metafile2svg -q --force -r tree -o made/svg && cmp made/svg/a.emf.svg chart.svg
  $ metafile2svg tree/a.emf -o named.svg && cmp named.svg chart.svg

One document for each, and no metafile lost.

  $ mkdir other empty && cp chart.emf other/a.emf && cp chart.emf chart.html
  $ metafile2svg tree/a.emf other/a.emf -o new/
  metafile2svg: both tree/a.emf and other/a.emf would become new/a.emf.svg
  [2]
  $ metafile2svg --dump-skipped list.svg tree/a.emf -o ./list.svg
  metafile2svg: --dump-skipped would replace list.svg
  [2]
  $ metafile2svg tree/a.emf -o ./tree/a.emf
  metafile2svg: ./tree/a.emf would be replaced, and is a metafile
  [2]
  $ metafile2svg --info chart.html --gallery ./chart.html
  metafile2svg: ./chart.html would replace a metafile
  [2]
  $ ln -s tree/a.emf away.html && metafile2svg away.html -o tree/a.emf.svg --gallery tree/../away.html
  metafile2svg: tree/../away.html would replace a metafile
  [2]
  $ metafile2svg tree -o one.svg
  metafile2svg: one.svg cannot hold several documents; give a folder, whose name ends in /
  [2]
  $ cmp tree/a.emf chart.emf && cmp chart.html chart.emf && ls new list.svg one.svg 2>/dev/null
  [2]
  $ metafile2svg tree -o -
  metafile2svg: several documents cannot go to standard output
  [2]
  $ metafile2svg tree -o named.svg
  metafile2svg: named.svg is to hold documents and is no folder
  [2]
  $ metafile2svg - -o tree <chart.emf
  metafile2svg: standard input has no name, so -o needs one for a file
  [2]
  $ metafile2svg empty
  metafile2svg: empty: holds no metafiles; -r looks into its folders too
  metafile2svg: 1 file: 1 failed
  [1]

Links that lie where documents go are replaced or, below the folder that was named, not followed.

  $ mkdir -p links/sub away svg && cp chart.emf links/a.emf && cp chart.emf links/sub/b.emf
  $ printf keep >away/kept && ln -s ../away/kept links/a.emf.svg && ln -s ../away svg/sub
  $ metafile2svg -q links && ls -F links && cat away/kept
  a.emf
  a.emf.svg
  sub/
  keep (no-eol)
  $ mkfifo links/sub/b.emf.svg && metafile2svg -q links/sub
  metafile2svg: links/sub/b.emf.svg: cannot be written: it is no file
  [1]
  $ ln -s svg named && metafile2svg -r links -o named
  metafile2svg: named/sub/b.emf.svg: cannot be written: sub is a link and is not followed
  metafile2svg: 2 files: 1 converted, 1 failed
  [1]
  $ ls svg away
  away:
  kept
  
  svg:
  a.emf.svg
  sub

What a tree leaves out is counted. Names are bytes, in whatever locale.

  $ mkdir -p rest/.hidden $'rest/f\xe4' && cp chart.emf rest/.a.emf && cp chart.emf $'rest/f\xe4/n\xe4.emf'
  $ ln -s nowhere rest/b.emf && ln -s . rest/loop && mkfifo rest/c.wmf && touch rest/.profile
  $ for locale in C C.UTF-8; do LC_ALL=$locale metafile2svg -r rest -o $locale/; done
  metafile2svg: 1 file: 1 converted; left out 1 hidden folder, 1 hidden file, 1 linked folder, 1 dangling link, 1 special file
  metafile2svg: 1 file: 1 converted; left out 1 hidden folder, 1 hidden file, 1 linked folder, 1 dangling link, 1 special file
  $ cmp $'C/f\xe4/n\xe4.emf.svg' chart.svg && diff -r C C.UTF-8
  $ metafile2svg $'rest/f\xe4/n\xe4.emf' -o $'C/\xe4.svg' && cmp $'C/\xe4.svg' chart.svg
  $ metafile2svg --info --json $'rest/f\xe4/n\xe4.emf' | iconv -f UTF-8 -t UTF-8 | grep -o '"file":[^,]*'
  "file":"rest/f\xef\xbf\xbd/n\xef\xbf\xbd.emf" (esc)

The same bytes and messages whatever the threads.

  $ mkdir many
  $ for i in 1 2 3 4 5 6; do cp chart.emf many/$i.emf; cp drawing.wmf many/$i.wmf; done
  $ cp text.emf many/3.emf && head -c 600 drawing.wmf >many/4.wmf
  $ metafile2svg -j1 many -o one/
  metafile2svg: many/3.emf: not a metafile: neither an EMF nor a WMF header
  metafile2svg: many/4.wmf: truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)
  metafile2svg: 12 files: 10 converted, 1 damaged, 1 failed
  [1]
  $ metafile2svg many -o other/ 2>messages
  [1]
  $ metafile2svg -j 4 many -o four/ 2>&1 | cmp - messages && diff -r one four
  $ metafile2svg -j1 --fail-fast many/1.emf many/3.emf many/5.wmf -o fast/ 2>&1 | tail -1
  metafile2svg: 3 files: 1 converted, 1 failed, 1 not tried
  $ documents fast
  ./1.emf.svg
  $ metafile2svg -j2 --fail-fast text.emf many -o fast/ 2>&1 | grep -o 'not tried'
  not tried

Each run tells of damage and of what is lost, which is a failure for who wants it to be one.

  $ cp lossy.wmf many && lossy='lossy.wmf many/1.emf -o again/'
  $ for i in 1 2; do metafile2svg $lossy; echo $?; done
  metafile2svg: lossy.wmf: 1 of 27 drawing records not drawn: META 0x177
  metafile2svg: 2 files: 2 converted; 1 drawing record not drawn in 1 of them
  0
  metafile2svg: lossy.wmf: 1 of 27 drawing records not drawn: META 0x177
  metafile2svg: 2 files: 1 converted, 1 up to date; 1 drawing record not drawn in 1 of them
  0
  $ metafile2svg -q --strict $lossy; echo $?; metafile2svg -q --strict many/1.emf many/4.wmf -o again/
  4
  metafile2svg: many/4.wmf: truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)
  [4]
  $ metafile2svg -q --strict many/1.emf text.emf lossy.wmf -o again/ 2>/dev/null
  [1]
  $ metafile2svg -q --strict --check many/1.emf drawing.wmf
  $ for i in 1 2; do metafile2svg many/4.emf many/4.wmf -o again/; echo $?; done
  metafile2svg: many/4.wmf: truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)
  metafile2svg: 2 files: 1 converted, 1 damaged
  3
  metafile2svg: many/4.wmf: truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)
  metafile2svg: 2 files: 1 damaged, 1 up to date
  3

The list of records without a handler.

  $ metafile2svg -j2 --force --dump-skipped list.txt tree -o dumped/
  metafile2svg: --dump-skipped converts one file at a time
  metafile2svg: 2 files: 2 converted
  $ grep -oE 'Start Of File|^META_SETMAPMODE' list.txt
  Start Of File
  Start Of File
  META_SETMAPMODE
  $ metafile2svg --dump-skipped no/list.txt tree/a.emf
  metafile2svg: no/list.txt: cannot be written: No such file or directory
  [1]
