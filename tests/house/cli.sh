#!/usr/bin/env bash
# The tool from outside, one file a call: every exit status, what it prints, what it leaves behind.
# usage: cli.sh TOOL SAMPLES
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/cli_support.sh"
mkdir folder

# Converted.
expect 'EMF to standard output' 0 '' "$tool" "$chart"
is_document out
cp out chart.svg
expect 'WMF to standard output' 0 '' "$tool" "$drawing"
is_document out
cp out drawing.svg
expect 'exact' 0 '' "$tool" --exact "$chart"
cp out exact.svg
! xmllint --noout exact.svg 2>/dev/null || fault "the exact document is changed"
expect 'output file' 0 '' "$tool" "$chart" -o folder/new.svg
is_same folder/new.svg chart.svg
[ ! -s out ] || fault "wrote standard output too"
expect 'output file replaced, exact' 0 '' "$tool" -o folder/new.svg --exact "$chart"
is_same folder/new.svg exact.svg
holds folder new.svg
rm folder/new.svg
expect 'standard input and output' 0 '' shell '"$tool" - -o - <"$drawing"'
is_same out drawing.svg
expect 'standard input from a pipe' 0 '' shell 'cat "$chart" | "$tool" -'
is_same out chart.svg
odd="it's a \"näme\" 图 %1.emf"
cp "$chart" "$odd"
expect 'odd names' 0 '' "$tool" "$odd" -o "folder/$odd.svg"
is_same "folder/$odd.svg" chart.svg
expect 'odd names without a UTF-8 locale' 0 '' env LC_ALL=C "$tool" "$odd"
is_same out chart.svg
rm folder/*
cp "$chart" ./-dash.emf
expect 'name that looks like an option' 0 '' "$tool" -- -dash.emf
is_same out chart.svg
expect 'output folder' 0 '' "$tool" "$chart" -o folder
is_same folder/chart.emf.svg chart.svg
rm folder/*
expect 'width and height' 0 '' "$tool" --width 30.5 --height=20 "$chart"
grep -q '<svg width="30.5" height="20" ' out || fault "it is $(grep '<svg' out)"
expect 'scale' 0 '' "$tool" --scale 2 "$chart"
grep -q '<svg width="600" height="400" ' out || fault "it is $(grep '<svg' out)"
expect 'check' 0 '' "$tool" --check "$chart" -o folder/x.svg
[ ! -s out ] || fault "wrote to standard output"
holds folder
expect 'output to a device' 0 '' "$tool" "$chart" -o /dev/null
[ -c /dev/null ] || fault "/dev/null was replaced"
printf 'keep' >target.svg
ln -s ../target.svg folder/link.svg
expect 'output through a link' 0 '' "$tool" "$chart" -o folder/link.svg
[ -L folder/link.svg ] || fault "the link was replaced"
is_same target.svg chart.svg
rm folder/link.svg
log_lines() {
    name="log lines: $*"
    "$@" "$drawing" 2>&1 >/dev/null | grep -q "$pattern" || fault "there are none"
}
pattern='Setup WMF record handlers'
log_lines env QT_LOGGING_RULES=svgtool=true "$tool"
log_lines "$tool" --log-level info
pattern='Enter ConvertWMFToSVG'
log_lines "$tool" --log-level trace
expect 'no log lines of a lower level' 0 '' "$tool" --log-level warning "$drawing"
expect 'help' 0 '' "$tool" --help
grep -q '^Usage: .* FILE|FOLDER\.\.\.$' out && grep -q '^Examples:' out || fault "standard output is: $(cat out)"
expect 'version' 0 '' "$tool" --version
grep -qxE 'metafile2svg [0-9]+\.[0-9]+\.[0-9]+' out || fault "standard output is: $(cat out)"

# Not converted: nothing on standard output, no new file, an existing one as it was.
printf 'keep' >kept.svg
refuses() {
    local case_name=$1 message=$2 input=$3
    local options=${4-}
    expect "$case_name" 1 "metafile2svg: $message" "$tool" $options "$input"
    [ ! -s out ] || fault "wrote to standard output"
    expect "$case_name, new output" 1 "metafile2svg: $message" "$tool" $options "$input" -o folder/x.svg
    holds folder
    expect "$case_name, existing output" 1 "metafile2svg: $message" "$tool" $options "$input" -o kept.svg
    [ "$(cat kept.svg)" = keep ] || fault "the existing output changed"
}
: >empty.emf
printf 'seventeen bytes..' >short.emf
printf 'This is a text and not a picture.\n' >text.emf
head -c 5455 "$chart" >cut.emf
head -c 87 "$chart" >head.emf
{ cat "$chart"; printf 'x'; } >long.emf
ln -s nowhere dangling.emf
refuses 'missing file' 'missing.emf: no such file' missing.emf
refuses 'missing folder' 'missing/a.emf: no such file' missing/a.emf
refuses 'dangling link' 'dangling.emf: no such file' dangling.emf
refuses 'missing, odd name' "it's \"gone\" ä: no such file" "it's \"gone\" ä"
refuses 'missing, line feed in the name' 'two?lines: no such file' $'two\nlines'
refuses 'empty file' 'empty.emf: is empty' empty.emf
refuses 'short file' 'short.emf: has only 17 bytes; a metafile has at least 18' short.emf
refuses 'text file' 'text.emf: not a metafile: neither an EMF nor a WMF header' text.emf
refuses 'cut header' 'head.emf: not a metafile: neither an EMF nor a WMF header' head.emf
refuses 'cut EMF' 'cut.emf: its EMF header names 5456 bytes, but it has 5455' cut.emf --exact
refuses 'long EMF' 'long.emf: its EMF header names 5456 bytes, but it has 5457' long.emf --exact
expect 'empty standard input' 1 'metafile2svg: standard input: is empty' \
    shell '"$tool" - </dev/null'
expect 'closed standard input' 1 \
    'metafile2svg: standard input: cannot be read: Bad file descriptor' shell '"$tool" - <&-'
expect 'folder as standard input' 1 \
    'metafile2svg: standard input: cannot be read: Is a directory' shell '"$tool" - <folder'
# Converted, but not written.
expect 'output in a missing folder' 1 \
    'metafile2svg: missing/x.svg: cannot be written: No such file or directory' \
    "$tool" "$chart" -o missing/x.svg
expect 'file too large' 1 'metafile2svg: folder/x.svg: cannot be written: File too large' \
    shell 'ulimit -f 0; exec "$tool" "$chart" -o folder/x.svg'
holds folder
expect 'file too large, existing output' 1 \
    'metafile2svg: kept.svg: cannot be written: File too large' \
    shell 'ulimit -f 0; exec "$tool" "$chart" -o kept.svg'
[ "$(cat kept.svg)" = keep ] || fault "the existing output changed"
if [ -c /dev/full ]; then
    full='cannot be written: No space left on device'
    expect 'full standard output' 1 "metafile2svg: standard output: $full" \
        shell '"$tool" "$chart" >/dev/full'
    expect 'full device' 1 "metafile2svg: /dev/full: $full" "$tool" "$chart" -o /dev/full
    [ -c /dev/full ] || fault "/dev/full was replaced"
    expect 'help to a full device' 1 "metafile2svg: standard output: $full" \
        shell '"$tool" --help >/dev/full'
fi
expect 'closed standard output' 1 \
    'metafile2svg: standard output: cannot be written: Bad file descriptor' \
    shell '"$tool" "$chart" >&-'
expect 'reader that went away' 1 'metafile2svg: standard output: cannot be written: Broken pipe' \
    shell 'mkfifo gone; exec 4<>gone 5>gone 4<&-; "$tool" "$chart" >&5'

# Wrong usage.
wrong() {
    local case_name=$1 message="metafile2svg: $2 (metafile2svg --help explains)"
    shift 2
    expect "$case_name" 2 "$message" "$tool" "$@"
    [ ! -s out ] || fault "wrote to standard output"
}
wrong 'no input' 'no input file or folder is given'
wrong 'unknown option' "Unknown option 'fast'" --fast a.emf
wrong 'option without value' "Missing value after '-o'" a.emf -o
wrong 'two outputs' '--output is given more than once' a.emf -o a.svg -o b.svg
wrong 'empty input name' 'a file name is empty' ''
wrong 'empty output name' 'the value of --output is empty' a.emf -o ''
wrong 'two standard inputs' '- is standard input and cannot be one of several inputs' - a.emf
wrong 'exact, but larger' '--exact leaves the size as it is' --exact --scale 2 a.emf
wrong 'no threads' '--jobs needs a number from 1 to 1024' -j 0 a.emf
wrong 'negative width' '--width needs a number above 0 and up to 1000000' --width=-1 a.emf
wrong 'scale of no number' '--scale needs a number above 0 and up to 1000000' --scale nan a.emf
wrong 'log level' 'there is no log level loud' --log-level loud a.emf
wrong 'JSON of nothing' '--json needs --info or --report' --json a.emf
wrong 'two reports' '--info and --report exclude each other' --info --report a.emf
wrong 'facts to a file' '--info writes no documents, so -o has no use' --info a.emf -o a.svg

finish
