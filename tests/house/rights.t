The tool where it may not read or write, as somebody who is bound by that.

  $ . "$TESTDIR/tool.sh"
  $ chmod a+rx "$CRAMTMP" "$PWD"
  $ nobody='setpriv --reuid=65534 --regid=65534 --clear-groups'
  $ somebody() { if [ "$(id -u)" = 0 ]; then $nobody "$@"; else "$@"; fi; }
  $ somebody metafile2svg --version >/dev/null 2>&1 || exit 80
  $ mkdir -m 777 closed readable open
  $ cp chart.emf readable/1.emf && cp chart.emf readable/2.emf
  $ chmod 0 readable/1.emf closed && chmod 555 readable
  $ somebody metafile2svg readable closed -o open/
  metafile2svg: readable/1.emf: cannot be read: Permission denied
  metafile2svg: closed: cannot be read: Permission denied
  metafile2svg: 3 files: 1 converted, 2 failed
  [1]
  $ cmp chart.svg open/2.emf.svg
  $ somebody metafile2svg readable/2.emf -o readable
  metafile2svg: readable/2.emf.svg: cannot be written: Permission denied
  [1]
  $ chmod -R u+rwx .
