The options of --help, which fits a screen, of the manual page and of the completions are the same.

  $ . "$TESTDIR/tool.sh" && . "$ROOT/cli/metafile2svg.bash"
  $ completed() {
  >     COMP_WORDS=(metafile2svg "$@") COMP_CWORD=$#
  >     _metafile2svg
  >     printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort
  > }
  $ metafile2svg --help | grep -E '^ +-' | grep -oE '(^ +|, )--?[A-Za-z-]+' | sed 's/.*[ ,]//' |
  >     LC_ALL=C sort >helped
  $ sed -nE '/^\.It Fl/{s/^\.It //;s/ , /\n/g;p}' "$ROOT/docs/metafile2svg.1" |
  >     sed -nE 's/^Fl ([^ ]+).*/-\1/p' | LC_ALL=C sort | diff helped -
  $ completed - | diff helped -
  $ metafile2svg --help | awk 'length > 79 || NR > 50'
  $ options() { tr -s "[]'\"{},+=: " '\n' | grep -E '^--?[A-Za-z][a-z-]*$' | LC_ALL=C sort -u; }
  $ sed -n '/-C$/d;/_arguments/d;s/\[.*//p' "$ROOT/cli/metafile2svg.zsh" | options | diff helped -
  $ sed -nE 's/.* -s (.) -l ([^ ]*).*/-\1 --\2/p;t;s/.* -l ([^ ]*).*/--\1/p' \
  >     "$ROOT/cli/metafile2svg.fish" | options | diff helped -
  $ sed -n '/^--o/p;$p' helped
  --output
  -r

Command lines are completed as bash does.

  $ mkdir files && cd files && mkdir 'a folder' && touch 'a b.emf' a.WMF a.txt
  $ completed a
  a b.emf
  a folder
  a.WMF
  $ completed x.emf -o a
  a b.emf
  a folder
  a.WMF
  a.txt
  $ completed --log-level i
  info
  $ completed -- 'a b'
  a b.emf
  $ completed -- --he
  
  $ completed --hel
  --help
