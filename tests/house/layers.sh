#!/usr/bin/env bash
# Compares every include of the tree at ROOT with the layers: a folder may include what its row
# names, whatever those may include, and itself.
# usage: layers.sh ROOT
set -euo pipefail
export LC_ALL=C
cd "$1"

declare -A layers=(
    [logging]=""
    [records]="logging"
    [platform]="logging"
    [geometry]="records"
    [style]="records platform"
    [svg]="style geometry"
    [emf]="svg"
    [wmf]="svg"
    [svgtool]="emf wmf"
)
# Programs know the installed headers and nothing else.
programs="cli samples"
installed_headers="svgtool/SVGTool.h svg/SVGDisplay.h"
# These may include anything.
free="tests fuzz bench"

findings=0
finding() {
    echo "FOUND: $*"
    findings=$((findings + 1))
}

# Every folder that $1 may include, itself first.
reach() {
    local below
    echo "$1"
    for below in ${layers[$1]}; do
        reach "$below"
    done
}

# Sets `target` to the folder that holds the included file $2 of a file in folder $1, or to nothing
# if it is not ours.
folder_of() {
    local folder=${2%%/*}
    target=
    if [ -e "$1/$2" ]; then
        target=${1%%/*}
    elif [ "$2" = CLogSystem.h ]; then
        target=logging
    elif [ "$folder" != "$2" ] && [ -e "$folder" ]; then
        target=$folder
    fi
}

checked=0
check_include() {
    local file=$1 line=$2 form=$3 included=$4
    local folder=${file%%/*}
    if [[ $included == *..* ]]; then
        finding "$file:$line: $included hides its folder"
        return 0
    fi
    folder_of "${file%/*}" "$included"
    if [ -z "$target" ]; then
        [ "$form" = '<' ] || finding "$file:$line: \"$included\" is no file of the tree"
        return 0
    fi
    checked=$((checked + 1))
    if [[ " $programs " == *" $folder "* ]]; then
        [ "$target" = "$folder" ] || [[ " $installed_headers " == *" $included "* ]] ||
            finding "$file:$line: a program includes $included, not an installed header"
    elif [[ ${reachable[$folder]} != *" $target "* ]]; then
        finding "$file:$line: $folder/ may not include $included"
    fi
}

declare -A reachable=()
for folder in "${!layers[@]}"; do
    reachable[$folder]=" $(reach "$folder" | tr '\n' ' ')"
done

# Every folder with sources is in one of the tables.
for file in */; do
    folder=${file%/}
    case " ${!layers[*]} $programs $free docs scripts cmake build out " in
    *" $folder "*) ;;
    *)
        if [ "${folder#build-}" = "$folder" ] &&
            [ -n "$(find "$folder" -name '*.cpp' -o -name '*.h' -o -name '*.c')" ]; then
            finding "$folder/ has sources and no layer"
        fi
        ;;
    esac
done

sources=()
for folder in "${!layers[@]}" $programs $free; do
    [ ! -d "$folder" ] || sources+=("$folder")
done
include_line='^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]'
while IFS=: read -r file line text; do
    [[ $text =~ ([\<\"])([^\>\"]*) ]]
    form=${BASH_REMATCH[1]} included=${BASH_REMATCH[2]}
    if [[ ${included,,} == windows.h && $file != platform/*.cpp ]]; then
        finding "$file:$line: $included outside platform/*.cpp"
    fi
    [[ " $free " == *" ${file%%/*} "* ]] || check_include "$file" "$line" "$form" "$included"
done < <(grep -rnE --include='*.h' --include='*.cpp' "$include_line" "${sources[@]}" | sort)
[ "$checked" -gt 0 ] || finding "no include of ours was seen"

while IFS=: read -r file line _; do
    [ "$file" = platform/QtCompat.h ] || finding "$file:$line: QT_VERSION outside platform/QtCompat.h"
done < <(grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#.*QT_VERSION' "${sources[@]}")

echo "$checked includes between our files checked"
[ "$findings" -eq 0 ]
