#!/usr/bin/env bash
# The tool's gallery in a headless Chromium; skipped where there is none.
# usage: gallery_browser.sh TOOL SAMPLES
set -euo pipefail
browser=$(realpath "$(dirname "${BASH_SOURCE[0]}")/browser.py")
for program in python3 chromium chromedriver; do
    command -v "$program" >/dev/null || {
        echo "skipped: there is no $program; scripts/setup.sh browser installs it"
        exit 77
    }
done
. "$(dirname "${BASH_SOURCE[0]}")/cli_support.sh"

# Names that would become markup or a script, a picture of many kinds of elements, a part of one.
mkdir -p "batch/</figure><script>alert(1)<"
cp "$chart" 'batch/</figure><script>alert(1)</script>.emf'
cp "$drawing" "batch/\"onload='alert(1)'.WMF"
head -c 3000 "$chart" >'batch/<!-- &lt; %1.emf'
printf 'This is a text and no picture.' >'batch/"><img src=x onerror=alert(1)>.emf'
expect 'gallery' 1 "$("$tool" -q --check -r batch 2>&1)" \
    "$tool" -q --check -r batch --gallery page.html
python3 "$browser" gallery page.html || fault "see above"
"$tool" -q -r batch -o made/ 2>/dev/null || true
find made -type f | python3 "$browser" documents || fault "see above"
# What a browser refuses is found.
"$tool" --exact "$drawing" >exact.svg
! python3 "$browser" documents <<<exact.svg >/dev/null || fault "a broken document was not found"
finish
