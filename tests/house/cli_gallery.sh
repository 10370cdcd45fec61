#!/usr/bin/env bash
# The page of all results, as text. gallery_browser.sh looks at it.
# usage: cli_gallery.sh TOOL SAMPLES
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/cli_support.sh"

mkdir -p batch/sub
cp "$chart" batch/sub/chart.emf
cp "$drawing" $'batch/<b>&"\n\'.wmf'
printf 'This is a text and no picture.' >batch/text.emf
head -c 600 "$drawing" >batch/cut.wmf
touch -d '1 hour ago' batch/*.?mf batch/sub/*
text='not a metafile: neither an EMF nor a WMF header'
cut='truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)'
messages="batch/cut.wmf: $cut"$'\n'"batch/text.emf: $text"

check 1 "$messages" "$tool" -q -j1 -r batch -o made/svg --gallery made/page.html
is_same made/svg/sub/chart.emf.svg <("$tool" "$chart")
# The pictures are the documents, in the same order.
sed -n 's/.* src="data:image\/svg+xml;base64,\([^"]*\)".*/\1/p' made/page.html >pictures
for document in $'<b>&"\n\'.wmf' cut.wmf sub/chart.emf; do
    read -r picture && base64 -d <<<"$picture" >picture.svg
    is_same picture.svg "made/svg/$document.svg"
done <pictures
[ "$(wc -l <pictures)" = 3 ] || fault "$(wc -l <pictures) pictures"
sed -n '/^<main>/,/^<\/main>/{s/ src="[^"]*"//;p}' made/page.html >results
bytes() {
    numfmt --to=si --round=nearest --format=%.1f "$(wc -c <"made/svg/$1.svg")" |
        sed 's/[0-9]$/& bytes/;s/K/ kB/'
}
is_text results '<main>
<figure data-status="converted">
<button type="button"><img loading="lazy" decoding="async" alt="batch/&lt;b&gt;&amp;&quot;?'\''.wmf"></button>
<figcaption><bdi><span>batch/</span>&lt;b&gt;&amp;&quot;?'\''.wmf</bdi>
<p>placeable WMF 1.2 kB &rarr; SVG '"$(bytes $'<b>&"\n\'.wmf')"'</p>
<p>259 &times; 199 pixels</p>
<p class="missing">Records: 7 skipped, 9 approximated</p>
</figcaption>
</figure>
<figure data-status="damaged">
<button type="button"><img loading="lazy" decoding="async" alt="batch/cut.wmf"></button>
<figcaption><span class="status">damaged</span><bdi><span>batch/</span>cut.wmf</bdi>
<p>placeable WMF 600 bytes &rarr; SVG '"$(bytes cut.wmf)"'</p>
<p>259 &times; 199 pixels</p>
<p class="missing">Records: 1 skipped, 1 approximated</p>
<p class="reason">truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)</p>
</figcaption>
</figure>
<figure data-status="failed">
<p class="none">no picture</p>
<figcaption><span class="status">failed</span><bdi><span>batch/</span>text.emf</bdi>
<p>30 bytes</p>
<p class="reason">not a metafile: neither an EMF nor a WMF header</p>
</figcaption>
</figure>
<figure data-status="converted">
<button type="button"><img loading="lazy" decoding="async" alt="batch/sub/chart.emf"></button>
<figcaption><bdi><span>batch/sub/</span>chart.emf</bdi>
<p>EMF 5.5 kB &rarr; SVG '"$(bytes sub/chart.emf)"'</p>
<p>300 &times; 200 pixels</p>
<p class="missing">Records: 0 skipped, 35 approximated</p>
</figcaption>
</figure>
</main>
'
[ "$(grep -o '<script' made/page.html | wc -l)" = 1 ] || fault "not one script"
! grep -iE '://|@[A-Z]+@|<link|<iframe|<object' made/page.html || fault "not in one piece"

# The same page whatever is there already, and nothing that is newer is replaced.
printf 'mine' >made/svg/sub/chart.emf.svg
check 1 "$messages" "$tool" -q -r batch -o made/svg --gallery again.html
is_same made/page.html again.html
is_text made/svg/sub/chart.emf.svg mine
check 1 "$messages" "$tool" -q --check -r batch --gallery checked/page.html
is_same made/page.html checked/page.html
[ -z "$(find batch -name '*.svg')" ] || fault "wrote documents"

# The same page with any number of threads, also where one waits for an early file.
mkdir many
for ((i = 100; i < 250; ++i)); do
    cp "batch/$( ((i % 3)) && echo sub/chart.emf || echo cut.wmf)" "many/$i.emf"
done
{ printf '\1\0\11\0\0\3\36\0\0\0\0\0\13\0\0\0\0\0'
  printf '\7\0\0\0\33\4\11\0\11\0\1\0\1\0%.0s' {1..20000}; } >many/000.wmf
for threads in 1 2 7; do
    "$tool" -q --check "-j$threads" many --gallery "many-$threads.html" 2>"messages-$threads" || true
    is_same many-1.html "many-$threads.html"
    is_same messages-1 "messages-$threads"
done
[ "$(grep -c ' src=' many-1.html)" = 151 ] || fault "$(grep -c ' src=' many-1.html) pictures"
check 1 "batch/text.emf: $text" \
    "$tool" -q -j1 --check --fail-fast batch/text.emf "$chart" --gallery fast.html
has fast.html 'not tried</span>'

# The page appears only when it is complete.
printf 'old' >old.html
unwritable='cannot be written:'
check 1 "old.html: $unwritable File too large" \
    'ulimit -f 16; exec "$tool" -q --check "$chart" "$drawing" --gallery old.html'
is_text old.html old
[ -z "$(find . -maxdepth 1 -name 'old.html?*')" ] || fault "left $(ls old.html*)"
[ ! -c "$full" ] || check 1 "full.html: $unwritable No space left on device" \
    'ln -s "$full" full.html; "$tool" --check "$chart" --gallery full.html'
check 1 "f.html: $unwritable it is a folder" \
    'mkdir f.html; "$tool" --check "$chart" --gallery f.html'

# Nothing else is taken for the page.
check 2 '--gallery needs the name of a page, which ends in .html (metafile2svg --help explains)' \
    "$tool" --gallery batch/cut.wmf batch/text.emf
cp "$chart" chart.html
check 2 './chart.html would replace a metafile' "$tool" --info chart.html --gallery ./chart.html
check 2 'both the gallery and chart.html would become ./new.html' \
    "$tool" chart.html -o ./new.html --gallery new.html
is_same chart.html "$chart"
finish
