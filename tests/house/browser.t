The gallery and its documents in a headless Chromium; scripts/setup.sh browser installs it.

  $ . "$TESTDIR/tool.sh"
  $ hash chromium chromedriver 2>/dev/null && /usr/bin/python3 -c 'import numpy, PIL, selenium' 2>/dev/null || exit 80

Names that would become markup or a script, a picture of many kinds of elements, a part of one.

  $ mkdir -p "batch/</figure><script>alert(1)<"
  $ cp chart.emf 'batch/</figure><script>alert(1)</script>.emf'
  $ cp drawing.wmf "batch/\"onload='alert(1)'.WMF"
  $ head -c 3000 chart.emf >'batch/<!-- &lt; %1.emf'
  $ cp text.emf 'batch/"><img src=x onerror=alert(1)>.emf'
  $ metafile2svg -q -r batch -o made/ --gallery page.html 2>/dev/null
  [1]
  $ "$ROOT/tests/house/browser.py" gallery page.html
  4 results, 3 pictures looked at
  $ find made -type f | "$ROOT/tests/house/browser.py" documents
  3 documents opened

What a browser refuses is found.

  $ metafile2svg --exact drawing.wmf >exact.svg
  $ "$ROOT/tests/house/browser.py" documents <<<exact.svg
  FOUND: exact.svg: * (glob)
  1 documents opened
  [1]

On one page with others a document looks as it does alone, unless they are made to clash.

  $ mkdir alike
  $ for file in "$ROOT"/samples/*.?mf; do
  >   metafile2svg "$file" >"inline-${file##*/}.svg"
  >   metafile2svg --id-prefix p "$file" >"alike/${file##*/}.svg"
  > done
  $ printf '%s\n' inline-*.svg | "$ROOT/tests/house/browser.py" inline
  6 documents on one page
  $ printf '%s\n' alike/*.svg | "$ROOT/tests/house/browser.py" inline
  FOUND: alike/drawing.wmf.svg looks different among others
  FOUND: alike/hatches.wmf.svg looks different among others
  FOUND: alike/sales.emf.svg looks different among others
  6 documents on one page
  [1]
