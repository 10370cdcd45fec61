#!/usr/bin/env bash
# The tool's gallery in a headless Chromium; skipped where there is none.
# usage: gallery_browser.sh TOOL SAMPLES
set -euo pipefail
browser=$(realpath "$(dirname "${BASH_SOURCE[0]}")/browser.py")
if ! hash chromium chromedriver 2>/dev/null || ! /usr/bin/python3 -c 'import selenium' 2>/dev/null; then
    echo "skipped: Chromium or Selenium is missing; scripts/setup.sh browser installs them"
    exit 77
fi
. "$(dirname "${BASH_SOURCE[0]}")/cli_support.sh"

# Names that would become markup or a script, a picture of many kinds of elements, a part of one.
mkdir -p "batch/</figure><script>alert(1)<"
cp "$chart" 'batch/</figure><script>alert(1)</script>.emf'
cp "$drawing" "batch/\"onload='alert(1)'.WMF"
head -c 3000 "$chart" >'batch/<!-- &lt; %1.emf'
printf 'This is a text and no picture.' >'batch/"><img src=x onerror=alert(1)>.emf'
"$tool" -q --check -r batch --gallery page.html 2>/dev/null || true
name=gallery
"$browser" gallery page.html || fault "see above"
"$tool" -q -r batch -o made/ 2>/dev/null || true
find made -type f | "$browser" documents || fault "see above"
# What a browser refuses is found.
"$tool" --exact "$drawing" >exact.svg
! "$browser" documents <<<exact.svg >/dev/null || fault "a broken document was not found"
finish
