# What the tests of the tool share. Sourced with TOOL and SAMPLES as arguments; leaves the test in
# a folder of its own.
export tool=$1 samples=$2
export chart=$samples/chart.emf drawing=$samples/drawing.wmf full

work=$(mktemp -d)
trap 'chmod -R u+rwx "$work"; rm -rf "$work"' EXIT
cd "$work"
unset QT_LOGGING_RULES QT_LOGGING_CONF
export LC_ALL=C.UTF-8

# A device that is full; our own where that can be, as a fault could put a file in its place.
full=/dev/full
! mknod "$work/full" c 1 7 2>/dev/null || ! (: >"$work/full") 2>/dev/null || full=$work/full

cases=0 failures=0
fault() {
    echo "FAILED: $name: $*"
    failures=$((failures + 1))
}

# check STATUS MESSAGES COMMAND...: runs the command, a single word as a line of shell, compares its
# exit status, and its standard error with the lines of MESSAGES, each behind the tool's name.
# Standard output goes to the file `out`.
check() {
    name=${*:3}
    local status=$1 wanted=${2:+metafile2svg: ${2//$'\n'/$'\n'metafile2svg: }$'\n'} actual errors
    shift 2
    cases=$((cases + 1))
    [ $# -gt 1 ] || set -- bash -c "$1"
    { errors=$("$@" 2>&1 >&3; echo "status $?"); } 3>out
    actual=${errors##*status }
    errors=${errors%status *}
    [ "$actual" = "$status" ] || fault "exit status $actual, not $status"
    [ "$errors" = "$wanted" ] || fault "standard error is: $errors"
}

# converts FILE WANTED COMMAND...: the command makes FILE, which is then the same as WANTED.
converts() {
    check 0 '' "${@:3}"
    is_same "$1" "$2"
}

is_document() {
    [ -s "$1" ] && xmllint --noout "$1" 2>/dev/null && tail -n 1 "$1" | grep -q '</svg>$' ||
        fault "$1 is no SVG document"
}
is_same() {
    cmp -s "$1" "$2" || fault "$1 and $2 differ"
}
# A file has this text, and no line feed behind it.
is_text() {
    diff <(printf '%s' "$2") "$1" || fault "$1 is another text than expected (<)"
}
# The files below a folder, or in it, are these.
holds() {
    is_text <(cd "$1" && find . -type f -printf '%P\n' | LC_ALL=C sort | tr '\n' ' ') "${*:2}${2:+ }"
}
has() {
    grep -q -e "$2" "$1" || fault "$1 has no $2: $(head -c 500 "$1")"
}

finish() {
    echo "$cases command lines run"
    [ "$failures" -eq 0 ]
}
