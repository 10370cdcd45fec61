The page of all results, as text.

  $ . "$TESTDIR/tool.sh"
  $ mkdir -p batch/sub && cp lossy.wmf $'batch/sub/<b>&"\n\'.wmf'
  $ cp text.emf batch && head -c 600 drawing.wmf >batch/cut.wmf
  $ touch -d '1 hour ago' batch/*.?mf batch/sub/*
  $ metafile2svg -q -j1 -r batch -o made/svg --gallery made/page.html
  metafile2svg: batch/cut.wmf: truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)
  metafile2svg: batch/text.emf: not a metafile: neither an EMF nor a WMF header
  [1]

The pictures are the documents, in the same order. Their sizes depend on the fonts.

  $ documents=(made/svg/cut.wmf.svg made/svg/sub/$'<b>&"\n\''.wmf.svg)
  $ sed -n 's/.* src="data:image\/svg+xml;base64,\([^"]*\)".*/\1/p' made/page.html >pictures
  $ while read -r picture; do base64 -d <<<"$picture"; done <pictures | cmp - <(cat "${documents[@]}")
  $ sed -n 's/.*SVG \(.*\)<\/p>/\1/p' made/page.html >sizes
  $ wc -c "${documents[@]}" | sed '$d' | awk '{ print $1 }' |
  >     numfmt --to=si --round=nearest --format=%.1f | sed 's/K/ kB/' | diff - sizes
  $ sed -n '/^<main>/,/^<\/main>/{s/ src="[^"]*"//;s/SVG .*</SVG</;p}' made/page.html |
  >     grep -vE '^</?table>|data-fate="drawn"|^</details>'
  <main>
  <figure data-status="damaged">
  <button type="button"><img loading="lazy" decoding="async" alt="batch/cut.wmf"></button>
  <figcaption><span class="status">damaged</span><bdi><span>batch/</span>cut.wmf</bdi>
  <p>placeable WMF 600 bytes &rarr; SVG</p>
  <p>260 &times; 200 pixels</p>
  <details><summary>Records: 12 of 12 drawn</summary>
  <p class="reason">truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)</p>
  </figcaption>
  </figure>
  <figure data-status="refused">
  <p class="none">no picture</p>
  <figcaption><span class="status">refused</span><bdi><span>batch/</span>text.emf</bdi>
  <p>30 bytes</p>
  <p class="reason">not a metafile: neither an EMF nor a WMF header</p>
  </figcaption>
  </figure>
  <figure data-status="lost">
  <button type="button"><img loading="lazy" decoding="async" alt="batch/sub/&lt;b&gt;&amp;&quot;?'.wmf"></button>
  <figcaption><span class="status">lost</span><bdi><span>batch/sub/</span>&lt;b&gt;&amp;&quot;?'.wmf</bdi>
  <p>placeable WMF 1.2 kB &rarr; SVG</p>
  <p>260 &times; 200 pixels</p>
  <details><summary>Records: 26 of 27 drawn</summary>
  <tr data-fate="skipped"><td>META 0x177<td>1<td>skipped: its type is not known
  </figcaption>
  </figure>
  </main>
  $ grep -o '<script' made/page.html
  <script
  $ grep -iE '://|@[A-Z]+@|<link|<iframe|<object' made/page.html
  [1]

The same page whatever is there already, and nothing that is newer is replaced.

  $ printf 'mine' >"${documents[1]}"
  $ metafile2svg -q -r batch -o made/svg --gallery again.html 2>/dev/null || cat "${documents[1]}"
  mine (no-eol)
  $ metafile2svg -q --check -r batch --gallery checked/page.html 2>/dev/null
  [1]
  $ cmp made/page.html again.html && cmp made/page.html checked/page.html
  $ find batch -name '*.svg'

The same page with any number of threads, also where one waits for an early file.

  $ mkdir many && for i in {100..150}; do cp batch/cut.wmf many/$i.wmf; cp chart.emf many/$i.emf; done
  $ { printf '\1\0\11\0\0\3\36\0\0\0\0\0\13\0\0\0\0\0'
  >   printf '\7\0\0\0\33\4\11\0\11\0\1\0\1\0%.0s' {1..20000}; } >many/000.wmf
  $ for threads in 1 2 7; do
  >     metafile2svg -q --check -j$threads many --gallery $threads.html 2>messages-$threads
  >     cmp 1.html $threads.html; cmp messages-1 messages-$threads
  > done
  $ metafile2svg -q -j1 --check --fail-fast text.emf chart.emf --gallery fast.html
  metafile2svg: text.emf: not a metafile: neither an EMF nor a WMF header
  [1]
  $ grep -o 'not tried</span>' fast.html
  not tried</span>

The page appears only when it is complete.

  $ printf 'old' >old.html
  $ (ulimit -f 8; exec metafile2svg -q --check chart.emf drawing.wmf --gallery old.html)
  metafile2svg: old.html: cannot be written: File too large
  [1]
  $ ls old.html*; cat old.html
  old.html
  old (no-eol)
  $ mkdir f.html
  $ metafile2svg --check chart.emf --gallery f.html
  metafile2svg: f.html: cannot be written: it is a folder
  [1]
