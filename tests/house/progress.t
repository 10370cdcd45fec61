Progress is shown on a terminal, unless quietly. script(1) makes one.

  $ . "$TESTDIR/tool.sh"
  $ terminal() { script -qec "$1" /dev/null </dev/null; }
  $ test "$(terminal 'echo made' 2>/dev/null)" = $'made\r' || exit 80
  $ mkdir many && for i in 1 2 3; do cp chart.emf many/$i.emf; cp drawing.wmf many/$i.wmf; done
  $ terminal 'metafile2svg -j1 many -o shown/' | grep -oE '\] 1 of 6, .*/s, .* s left|6 files: '
  ] 1 of 6, * s left (glob)
  6 files: 
  $ terminal 'metafile2svg -q -j1 --force many -o shown/'
