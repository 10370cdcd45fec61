#!/usr/bin/env bash
# Compares the documentation with the tree: a fenced block behind a line "`FILE`:" is that file,
# and the files that links name exist.
# usage: docs.sh ROOT
set -euo pipefail
export LC_ALL=C
cd "$1"
findings=0
finding() {
    echo "FOUND: $*"
    findings=$((findings + 1))
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
blocks=0 links=0
for page in *.md docs/*.md docs/*/*.md; do
    # Writes the blocks to numbered files; prints "NUMBER FILE" for each.
    while read -r number file; do
        blocks=$((blocks + 1))
        diff "$file" "$work/$number" || finding "$page: the block of $file differs from the file"
    done < <(awk -v out="$work" '
        /^`[^`]+`:$/ { file = substr($0, 2, length($0) - 3); next }
        /^```/ && inside { close(name); inside = 0; file = ""; next }
        /^```/ && file != "" { inside = 1; name = out "/" ++count; printf "" >name
                               print count, file; next }
        inside { print >name; next }
        /[^ ]/ { file = "" }' "$page")

    while read -r target; do
        links=$((links + 1))
        [ -e "${page%/*}/${target%%#*}" ] || [ -e "${target%%#*}" -a "${page%/*}" = "$page" ] ||
            finding "$page: there is no $target"
    done < <(grep -oE '\]\([^)#:]+(#[^)]*)?\)' "$page" | sed -E 's/^..(.*).$/\1/')
done
echo "$blocks blocks and $links links checked"
[ "$blocks" -ge 4 ] && [ "$links" -ge 4 ] || finding "too few blocks or links were seen"
[ "$findings" -eq 0 ]
