A full disk: the first document that does not fit fails, what was there stays.

  $ . "$TESTDIR/tool.sh"
  $ mkdir disk && mount -t tmpfs -o size=24k none disk 2>/dev/null || exit 80
  $ cp chart.emf 1.emf && cp chart.emf 2.emf
  $ trap 'umount disk' EXIT
  $ printf 'keep' >disk/1.emf.svg && touch -d '2 hours ago' disk/1.emf.svg
  $ head -c 20000 /dev/zero >disk/filler
  $ metafile2svg -j1 --fail-fast [12].emf -o disk/
  metafile2svg: disk/1.emf.svg: cannot be written: No space left on device
  metafile2svg: 2 files: 1 failed, 1 not tried
  [1]
  $ ls disk; cat disk/1.emf.svg
  1.emf.svg
  filler
  keep (no-eol)
