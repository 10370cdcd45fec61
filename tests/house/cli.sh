#!/usr/bin/env bash
# The tool from outside, one file a call: every exit status, what it prints, what it leaves behind.
# usage: cli.sh TOOL SAMPLES
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/cli_support.sh"
mkdir folder
printf 'keep' >kept.svg

# Converted.
for input in "$chart" "$drawing"; do
    check 0 '' "$tool" "$input"
    is_document out
    cp out "$(basename "${input%.*}").svg"
done
check 0 '' "$tool" --exact "$chart"
cp out exact.svg
! xmllint --noout exact.svg 2>/dev/null || fault "the exact document is changed"
converts folder/new.svg chart.svg "$tool" "$chart" -o folder/new.svg
is_text out ''
converts folder/new.svg exact.svg "$tool" -o folder/new.svg --exact "$chart"
holds folder new.svg
converts out drawing.svg 'cat "$drawing" | "$tool" - -o -'
odd="it's a \"näme\" 图 %1.emf"
cp "$chart" "$odd"
converts "folder/$odd.svg" chart.svg env LC_ALL=C "$tool" "$odd" -o "folder/$odd.svg"
cp "$chart" ./-dash.emf
converts out chart.svg "$tool" -- -dash.emf
converts folder/chart.emf.svg chart.svg "$tool" "$chart" -o folder
rm folder/*
check 0 '' "$tool" --width 30.5 --height=20 "$chart"
has out '<svg width="30.5" height="20" '
check 0 '' "$tool" --scale 2 "$chart"
has out '<svg width="600" height="400" '
check 0 '' "$tool" --check "$chart" -o folder/x.svg
is_text out ''
holds folder
converts piped chart.svg 'mkfifo pipe; timeout 9 cat pipe >piped & "$tool" "$chart" -o pipe; wait'
[ -p pipe ] || fault "the pipe was replaced"
cp kept.svg target.svg
ln -s ../target.svg folder/link.svg
converts target.svg chart.svg "$tool" "$chart" -o folder/link.svg
[ -L folder/link.svg ] || fault "the link was replaced"
rm folder/link.svg
log_lines() {
    name="log lines: ${*:2}"
    "${@:2}" "$drawing" >/dev/null 2>lines
    has lines "$1"
}
log_lines 'Setup WMF record handlers' env QT_LOGGING_RULES=svgtool=true "$tool"
log_lines 'Setup WMF record handlers' "$tool" --log-level info
log_lines 'Enter ConvertWMFToSVG' "$tool" --log-level trace
check 0 '' "$tool" --log-level warning "$drawing"
check 0 '' "$tool" --help
has out '^Usage: .* FILE|FOLDER\.\.\.$'
has out '^Examples:'
check 0 '' "$tool" --version
has out '^metafile2svg [0-9]*\.[0-9]*\.[0-9]*$'

# Not converted: nothing on standard output, no new file, an existing one as it was.
refuses() {
    for output in '' folder/x.svg kept.svg; do
        check 1 "$1" "$tool" "${@:2}" ${output:+-o $output}
        is_text out ''
        holds folder
        is_text kept.svg keep
    done
}
: >empty.emf
printf 'seventeen bytes..' >short.emf
printf 'This is a text and not a picture.\n' >text.emf
head -c 5455 "$chart" >cut.emf
head -c 87 "$chart" >head.emf
{ cat "$chart"; printf 'x'; } >long.emf
ln -s nowhere dangling.emf
refuses 'missing/a.emf: no such file' missing/a.emf
refuses 'dangling.emf: no such file' dangling.emf
refuses "it's \"gone\" ä: no such file" "it's \"gone\" ä"
refuses 'two?lines: no such file' $'two\nlines'
refuses 'empty.emf: is empty' empty.emf
refuses 'short.emf: has only 17 bytes; a metafile has at least 18' short.emf
refuses 'text.emf: not a metafile: neither an EMF nor a WMF header' text.emf
refuses 'head.emf: not a metafile: neither an EMF nor a WMF header' head.emf
refuses 'cut.emf: its EMF header names 5456 bytes, but it has 5455' cut.emf --exact
refuses 'long.emf: its EMF header names 5456 bytes, but it has 5457' long.emf --exact
unreadable='standard input: cannot be read:'
check 1 'standard input: is empty' '"$tool" - </dev/null'
check 1 "$unreadable Bad file descriptor" '"$tool" - <&-'
check 1 "$unreadable Is a directory" '"$tool" - <folder'

# Converted, but not written.
unwritable='cannot be written:'
large="$unwritable File too large"
check 1 "missing/x.svg: $unwritable No such file or directory" "$tool" "$chart" -o missing/x.svg
check 1 "folder/x.svg: $large" 'ulimit -f 0; exec "$tool" "$chart" -o folder/x.svg'
holds folder
check 1 "kept.svg: $large" 'ulimit -f 0; exec "$tool" "$chart" -o kept.svg'
is_text kept.svg keep
if [ -c "$full" ]; then
    no_space="$unwritable No space left on device"
    check 1 "standard output: $no_space" '"$tool" "$chart" >"$full"'
    check 1 "$full: $no_space" "$tool" "$chart" -o "$full"
    [ -c "$full" ] || fault "the device was replaced"
    check 1 "standard output: $no_space" '"$tool" --help >"$full"'
fi
check 1 "standard output: $unwritable Bad file descriptor" '"$tool" "$chart" >&-'
# The reader has gone away.
check 1 "standard output: $unwritable Broken pipe" \
    'mkfifo gone; exec 4<>gone 5>gone 4<&-; "$tool" "$chart" >&5'

# Wrong usage.
wrong() {
    check 2 "$1 (metafile2svg --help explains)" "$tool" "${@:2}"
    is_text out ''
}
wrong 'no input file or folder is given'
wrong "Unknown option 'fast'" --fast a.emf
wrong "Missing value after '-o'" a.emf -o
wrong '--output is given more than once' a.emf -o a.svg -o b.svg
wrong 'a file name is empty' ''
wrong 'the value of --output is empty' a.emf -o ''
wrong '- is standard input and cannot be one of several inputs' - a.emf
wrong '--exact leaves the size as it is' --exact --scale 2 a.emf
wrong '--jobs needs a number from 1 to 1024' -j 0 a.emf
wrong '--width needs a number above 0 and up to 1000000' --width=-1 a.emf
wrong '--scale needs a number above 0 and up to 1000000' --scale nan a.emf
wrong 'there is no log level loud' --log-level loud a.emf
wrong '--json needs --info or --report' --json a.emf
wrong '--info and --report exclude each other' --info --report a.emf
wrong '--info writes no documents, so -o has no use' --info a.emf -o a.svg

finish
