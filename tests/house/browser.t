The gallery and its documents in a headless Chromium; scripts/setup.sh browser installs it.

  $ . "$TESTDIR/tool.sh"
  $ hash chromium chromedriver 2>/dev/null && /usr/bin/python3 -c 'import selenium' 2>/dev/null || exit 80

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
