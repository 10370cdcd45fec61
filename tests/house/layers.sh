#!/usr/bin/env bash
# Compares every include of the tree at ROOT with the layers: a folder may include itself, what it
# names, and whatever those may include.
# usage: layers.sh ROOT
set -euo pipefail
export LC_ALL=C
cd "$1"

declare -A reach=([logging]=" logging ")
reach[records]=" records ${reach[logging]}"
reach[platform]=" platform ${reach[logging]}"
reach[geometry]=" geometry ${reach[records]}"
reach[style]=" style ${reach[records]} ${reach[platform]}"
reach[svg]=" svg ${reach[style]} ${reach[geometry]}"
reach[emf]=" emf ${reach[svg]}"
reach[wmf]=" wmf ${reach[svg]}"
reach[svgtool]=" svgtool ${reach[emf]} ${reach[wmf]}"
# Programs know the installed headers and nothing else; the tool reports more than hosts can ask,
# so it links the static core and knows one header more.
installed=" svgtool/SVGTool.h svg/SVGDisplay.h "
declare -A programs=([samples]=$installed [cli]="$installed svgtool/SVGInspect.h ")
# These may include anything.
free=" tests fuzz bench "

findings=0
finding() {
    echo "FOUND: $*"
    findings=$((findings + 1))
}

# Sets `target` to the folder that holds the file $2 which a file in folder $1 includes, or to
# nothing if it is not ours.
target_of() {
    target=${2%%/*}
    if [ -e "$1/$2" ]; then
        target=${1%%/*}
    elif [ "$2" = CLogSystem.h ]; then
        target=logging
    elif [ "$target" = "$2" ] || [ ! -e "$target" ]; then
        target=
    fi
}

checked=0
check_include() {
    local place=$1 file=${1%%:*} form=$2 included=$3
    local folder=${file%%/*}
    if [[ ${included,,} == windows.h && $file != platform/*.cpp ]]; then
        finding "$place: $included outside platform/*.cpp"
    fi
    [[ $free != *" $folder "* ]] || return 0
    target_of "${file%/*}" "$included"
    [ -z "$target" ] || checked=$((checked + 1))
    if [[ $included == *..* ]]; then
        finding "$place: $included hides its folder"
    elif [ -z "$target" ]; then
        [ "$form" = '<' ] || finding "$place: \"$included\" is no file of the tree"
    elif [ -n "${programs[$folder]-}" ]; then
        [[ $target == "$folder" || ${programs[$folder]} == *" $included "* ]] ||
            finding "$place: a program includes $included, not an installed header"
    elif [[ ${reach[$folder]} != *" $target "* ]]; then
        finding "$place: $folder/ may not include $included"
    fi
}

sources=()
for folder in */; do
    folder=${folder%/}
    if [[ " ${!reach[*]} ${!programs[*]} $free" == *" $folder "* ]]; then
        sources+=("$folder")
    elif [[ $folder != @(docs|scripts|cmake|build|out|build-*) &&
        -n $(find "$folder" -name '*.cpp' -o -name '*.h' -o -name '*.c') ]]; then
        finding "$folder/ has sources and no layer"
    fi
done
# The lines of preprocessor commands that match.
commands() {
    grep -rnE --include='*.h' --include='*.cpp' "^[[:space:]]*#.*$1" "${sources[@]}" | sort
}
while IFS=: read -r file line text; do
    [[ $text =~ ([\<\"])([^\>\"]*) ]] &&
        check_include "$file:$line" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
done < <(commands 'include[[:space:]]*[<"]')
[ "$checked" -gt 0 ] || finding "no include of ours was seen"
while IFS=: read -r file line _; do
    [ "$file" = platform/QtCompat.h ] || finding "$file:$line: QT_VERSION outside platform/QtCompat.h"
done < <(commands QT_VERSION)

echo "$checked includes between our files checked"
[ "$findings" -eq 0 ]
