The same bytes, messages and numbers in languages that write them otherwise: a Turkish I, a German
comma.

  $ . "$TESTDIR/tool.sh"
  $ mkdir many && cp chart.emf "many/$odd" && cp drawing.wmf many/b.WMF && cp text.emf many/c.emf
  $ metafile2svg many -o C/ --scale 1.5
  metafile2svg: many/c.emf: not a metafile: neither an EMF nor a WMF header
  metafile2svg: 3 files: 2 converted, 1 failed
  [1]
  $ metafile2svg many -o C/ --force --scale 1.5 2>messages
  [1]
  $ for language in tr_TR de_DE; do
  >     localedef -i $language -f UTF-8 "$PWD/$language.UTF-8" >/dev/null 2>&1 || exit 80
  >     env "LOCPATH=$PWD" LC_ALL=$language.UTF-8 metafile2svg many -o $language/ --scale 1.5 2>&1 |
  >         cmp - messages
  >     diff -r C $language
  > done
  $ localedef -i de_DE -f ISO-8859-1 "$PWD/de_DE.ISO-8859-1" >/dev/null 2>&1; cp chart.emf $'many/\xe4.emf'
  $ LOCPATH=$PWD LC_ALL=de_DE.ISO-8859-1 metafile2svg $'many/\xe4.emf' --scale 1.5 -o $'\xe4.svg'
  $ cmp $'\xe4.svg' "C/$odd.svg"
  $ LOCPATH=$PWD LC_ALL=de_DE.UTF-8 locale decimal_point
  ,
  $ grep -m1 -o ' width="[^"]*"' "de_DE/$odd.svg"
   width="450"
