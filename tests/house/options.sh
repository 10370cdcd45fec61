#!/usr/bin/env bash
# Compares the options that the tool's --help lists with its manual page and its completion, and
# completes some command lines as bash does.
# usage: options.sh metafile2svg ROOT
set -euo pipefail
export LC_ALL=C
tool=$1 root=$2
findings=0
finding() {
    echo "FOUND: $*"
    findings=$((findings + 1))
}

source "$root/cli/metafile2svg.bash"
# Sets COMPREPLY to what the last of the words given may become.
complete_line() {
    COMP_WORDS=(metafile2svg "$@")
    COMP_CWORD=$#
    _metafile2svg
}

# One a line: the short and the long name where an option has both.
helped=$("$tool" --help | grep -oE '^ +-.*' | grep -oE '(^ +|, )--?[A-Za-z-]+' | grep -oE -e '-.*' | sort)
[ "$(wc -l <<<"$helped")" -ge 5 ] || finding "--help was read wrongly: $helped"
page=$(sed -nE '/^\.It Fl/{s/^\.It //;s/ , /\n/g;p}' "$root/docs/metafile2svg.1" |
    sed -nE 's/^Fl ([^ ]+).*/-\1/p' | sort)
diff <(echo "$helped") <(echo "$page") || finding "--help (<) and the manual page (>) differ"
complete_line -
completed=$(printf '%s\n' "${COMPREPLY[@]}" | sort)
diff <(echo "$helped") <(echo "$completed") || finding "--help (<) and the completion (>) differ"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir 'a folder' && touch 'a b.emf' a.WMF a.txt

# Compares what a command line is completed to, one a line.
expect() {
    local wanted=$1
    shift
    complete_line "$@"
    local got
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort)
    [ "$got" = "$wanted" ] || finding "metafile2svg $*: completed to ${COMPREPLY[*]@Q}"
}
expect $'a b.emf\na folder\na.WMF' a
expect $'a b.emf\na folder\na.WMF\na.txt' x.emf -o a
expect $'info' --log-level i
expect 'a b.emf' -- 'a b'
expect '' -- --he
expect '--help' --hel

echo "$(wc -l <<<"$helped") names of options compared"
[ "$findings" -eq 0 ]
