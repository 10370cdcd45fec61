#!/usr/bin/env bash
# The tool from outside: every exit status, what it prints, and what it leaves behind.
# usage: cli.sh TOOL SAMPLES
set -euo pipefail
tool=$1 samples=$2
chart=$samples/chart.emf
drawing=$samples/drawing.wmf

work=$(mktemp -d)
trap 'chmod -R u+rwx "$work"; rm -rf "$work"' EXIT
cd "$work"
unset QT_LOGGING_RULES QT_LOGGING_CONF
export LC_ALL=C.UTF-8

cases=0 failures=0
fault() {
    echo "FAILED: $name: $*"
    failures=$((failures + 1))
}

# expect NAME STATUS MESSAGE COMMAND...: runs the command, compares its exit status, and its
# standard error with MESSAGE and a line feed, or with nothing when MESSAGE is empty. Standard
# output goes to the file `out`.
expect() {
    name=$1
    local status=$2 message=$3 actual=0 errors
    shift 3
    cases=$((cases + 1))
    { errors=$("$@" 2>&1 >&3; echo "status $?"); } 3>out
    actual=${errors##*status }
    errors=${errors%status *}
    [ "$actual" = "$status" ] || fault "exit status $actual, not $status"
    [ "$errors" = "${message:+$message$'\n'}" ] || fault "standard error is: $errors"
}

# Runs a shell line with the tool as $tool.
shell() {
    tool=$tool chart=$chart drawing=$drawing bash -c "$1"
}

is_document() {
    [ -s "$1" ] && head -c 5 "$1" | grep -q '<?xml' && tail -n 1 "$1" | grep -q '</svg>$' ||
        fault "$1 is no SVG document"
}
is_same() {
    cmp -s "$1" "$2" || fault "$1 and $2 differ"
}
nothing_left() {
    [ -z "$(ls -A folder)" ] || fault "left behind: $(ls -A folder)"
}
mkdir folder

# Converted.
expect 'EMF to standard output' 0 '' "$tool" "$chart"
is_document out
cp out chart.svg
expect 'WMF to standard output' 0 '' "$tool" "$drawing"
is_document out
cp out drawing.svg
expect 'exact' 0 '' "$tool" --exact "$chart"
is_same out chart.svg
expect 'output file' 0 '' "$tool" "$chart" -o folder/new.svg
is_same folder/new.svg chart.svg
[ ! -s out ] || fault "wrote standard output too"
expect 'output file replaced' 0 '' "$tool" -o folder/new.svg --exact "$drawing"
is_same folder/new.svg drawing.svg
[ "$(ls -A folder)" = new.svg ] || fault "left behind: $(ls -A folder)"
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
expect 'output to a device' 0 '' "$tool" "$chart" -o /dev/null
[ -c /dev/null ] || fault "/dev/null was replaced"
printf 'keep' >target.svg
ln -s ../target.svg folder/link.svg
expect 'output through a link' 0 '' "$tool" "$chart" -o folder/link.svg
[ -L folder/link.svg ] || fault "the link was replaced"
is_same target.svg chart.svg
rm folder/link.svg
name='log lines on request'
QT_LOGGING_RULES=svgtool=true "$tool" "$drawing" 2>&1 >/dev/null |
    grep -q 'Setup WMF record handlers' || fault "there are none"
expect 'help' 0 '' "$tool" --help
grep -q '^Usage: .* IN$' out && grep -q -- '--exact' out || fault "standard output is: $(cat out)"
expect 'version' 0 '' "$tool" --version
grep -qxE 'metafile2svg [0-9]+\.[0-9]+\.[0-9]+' out || fault "standard output is: $(cat out)"

# Not converted: nothing on standard output, no new file, an existing one as it was.
printf 'keep' >kept.svg
refuses() {
    local case_name=$1 message=$2 input=$3
    expect "$case_name" 1 "metafile2svg: $message" "$tool" "$input"
    [ ! -s out ] || fault "wrote to standard output"
    expect "$case_name, new output" 1 "metafile2svg: $message" "$tool" "$input" -o folder/x.svg
    nothing_left
    expect "$case_name, existing output" 1 "metafile2svg: $message" "$tool" "$input" -o kept.svg
    [ "$(cat kept.svg)" = keep ] || fault "the existing output changed"
}
: >empty.emf
printf 'seventeen bytes..' >short.emf
printf 'This is a text and not a picture.\n' >text.emf
head -c 5455 "$chart" >cut.emf
{ cat "$chart"; printf 'x'; } >long.emf
ln -s nowhere dangling.emf
refuses 'missing file' 'missing.emf: no such file' missing.emf
refuses 'missing folder' 'missing/a.emf: no such file' missing/a.emf
refuses 'dangling link' 'dangling.emf: no such file' dangling.emf
refuses 'missing, odd name' "it's \"gone\" ä: no such file" "it's \"gone\" ä"
refuses 'missing, line feed in the name' 'two?lines: no such file' $'two\nlines'
refuses 'folder' 'folder: is a folder' folder
refuses 'empty file' 'empty.emf: is empty' empty.emf
refuses 'short file' 'short.emf: has only 17 bytes; a metafile has at least 18' short.emf
refuses 'text file' 'text.emf: not a metafile: neither an EMF nor a WMF header' text.emf
refuses 'cut EMF' 'cut.emf: its EMF header names 5456 bytes, but it has 5455' cut.emf
refuses 'long EMF' 'long.emf: its EMF header names 5456 bytes, but it has 5457' long.emf
expect 'empty standard input' 1 'metafile2svg: standard input: is empty' \
    shell '"$tool" - </dev/null'
expect 'closed standard input' 1 \
    'metafile2svg: standard input: cannot be read: Bad file descriptor' shell '"$tool" - <&-'
expect 'folder as standard input' 1 \
    'metafile2svg: standard input: cannot be read: Is a directory' shell '"$tool" - <folder'
if [ "$(id -u)" -ne 0 ]; then
    cp "$chart" secret.emf
    chmod 0 secret.emf
    refuses 'unreadable file' 'secret.emf: cannot be read: Permission denied' secret.emf
    chmod a-w folder
    expect 'unwritable folder' 1 'metafile2svg: folder/x.svg: cannot be written: Permission denied' \
        "$tool" "$chart" -o folder/x.svg
    chmod u+w folder
else
    echo "skipped: unreadable files and unwritable folders, since root may use them"
fi

# Converted, but not written.
expect 'output in a missing folder' 1 \
    'metafile2svg: missing/x.svg: cannot be written: No such file or directory' \
    "$tool" "$chart" -o missing/x.svg
expect 'output is a folder' 1 'metafile2svg: folder: cannot be written: it is a folder' \
    "$tool" "$chart" -o folder
expect 'file too large' 1 'metafile2svg: folder/x.svg: cannot be written: File too large' \
    shell 'ulimit -f 0; exec "$tool" "$chart" -o folder/x.svg'
nothing_left
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
wrong 'no input' 'one input file is needed, 0 are given'
wrong 'two inputs' 'one input file is needed, 2 are given' a.emf b.emf
wrong 'unknown option' "Unknown option 'fast'" --fast a.emf
wrong 'option without value' "Missing value after '-o'" a.emf -o
wrong 'two outputs' 'more than one output file is given' a.emf -o a.svg -o b.svg
wrong 'empty input name' 'a file name is empty' ''
wrong 'empty output name' 'a file name is empty' a.emf -o ''

echo "$cases command lines run"
[ "$failures" -eq 0 ]
