#!/usr/bin/env bash
# What the built libraries export and call: exactly two exported functions, and nothing that would
# print, or end the process, behind a host's back.
# usage: symbols.sh NM none|sanitizer libSVGTool.so libbasic_logging.so
set -euo pipefail
export LC_ALL=C
nm=$1 foreign_calls=$2 library=$3 logging=$4

findings=0
finding() {
    echo "FOUND: $*"
    findings=$((findings + 1))
}

# Names without their version, one a line.
names() {
    "$nm" -D "$@" | awk '{ sub(/@.*/, "", $NF); print $NF }' | sort -u
}

wanted=$'ConvertMetaFileToSVG\nWMFToSVG'
exported=$(names --defined-only --extern-only "$library")
if [ "$exported" != "$wanted" ]; then
    finding "$library exports $(echo $exported), not just the two functions"
fi

# Only QtCore and QtGui of all of Qt.
imported=$(names --undefined-only "$library")
[ -n "$imported" ] || finding "$library calls nothing at all: nm was read wrongly"
other_qt=$(objdump -p "$library" | awk '$1 == "NEEDED" && $2 ~ /^libQt/ { print $2 }' |
    grep -vE '^libQt[56](Core|Gui)\.' || true)
[ -z "$other_qt" ] || finding "$library needs $(echo $other_qt)"

if [ "$foreign_calls" = none ]; then
    ends='exit|_exit|_Exit|quick_exit|abort|raise|kill|__assert_fail'
    prints='(__)?v?f?d?printf(_chk)?|f?puts|f?putc|_IO_putc|putchar|fwrite|write|perror|psignal'
    prints+='|stdout|stderr|_ZSt4cout|_ZSt4cerr|_ZSt4clog|_ZSt5wcout|_ZSt5wcerr'
    qt_prints='_ZNK14QMessageLogger[0-9].*|_ZN6QDebug.*|_Z6qDebugv|_Z8qWarningv'
    for file in "$library" "$logging"; do
        forbidden="$ends|$prints"
        # The logging library's own output is a logging category of Qt.
        [ "$file" = "$logging" ] || forbidden+="|$qt_prints"
        calls=$(names --undefined-only "$file" | grep -xE "$forbidden" || true)
        [ -z "$calls" ] || finding "$file calls $(echo $calls)"
    done
else
    echo "calls that print or exit are not looked for: a sanitizer brings its own"
fi

[ "$findings" -eq 0 ]
