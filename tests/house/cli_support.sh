# What the tests of the tool share. Sourced with TOOL and SAMPLES as arguments; leaves the test in
# a folder of its own.
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
    [ -s "$1" ] && xmllint --noout "$1" 2>/dev/null && tail -n 1 "$1" | grep -q '</svg>$' ||
        fault "$1 is no SVG document"
}
is_same() {
    cmp -s "$1" "$2" || fault "$1 and $2 differ"
}
# The files below a folder, or in it, are these.
holds() {
    local folder=$1 files
    shift
    files=$(cd "$folder" && find . -type f -printf '%P\n' | LC_ALL=C sort | tr '\n' ' ')
    [ "$files" = "${*:+$* }" ] || fault "$folder holds: $files"
}
# The text that a report or a list is to be.
is_text() {
    diff <(printf '%s\n' "$2") "$1" || fault "$1 is another text than expected (<)"
}

finish() {
    echo "$cases command lines run"
    [ "$failures" -eq 0 ]
}
