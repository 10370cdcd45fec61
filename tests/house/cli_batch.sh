#!/usr/bin/env bash
# The tool from outside, many files a call: folders, threads, what is skipped and what goes wrong.
# usage: cli_batch.sh TOOL SAMPLES
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/cli_support.sh"

"$tool" "$chart" >chart.svg
"$tool" "$drawing" >drawing.svg

# A tree with names of all kinds, and files that are no business of the tool.
odd="it's a \"näme\" 图 %1 I.EMF"
mkdir -p tree/sub/deep
cp "$chart" tree/a.emf
cp "$drawing" tree/b.wmf
cp "$chart" "tree/sub/$odd"
cp "$drawing" tree/sub/deep/c.WMF
printf 'text' >tree/readme.txt
find tree -type f -exec touch -d '1 hour ago' {} +
documents=(a.emf.svg b.wmf.svg sub/deep/c.WMF.svg "sub/$odd.svg")

# Where the documents go.
two='2 files: 2 converted; 7 records skipped in 1 of them'
cp -a tree beside
check 0 "$two" "$tool" beside/a.emf beside/b.wmf
is_same beside/a.emf.svg chart.svg
is_same beside/b.wmf.svg drawing.svg
is_text out ''
rm beside/*.svg
check 0 "$two" "$tool" beside
holds beside a.emf a.emf.svg b.wmf b.wmf.svg readme.txt sub/deep/c.WMF "sub/$odd"
converts "made/svg/sub/$odd.svg" chart.svg "$tool" -q -r tree -o made/svg
holds made/svg "${documents[@]}"
check 0 '' "$tool" -q tree/sub "$chart" -o mixed/
holds mixed chart.emf.svg "$odd.svg"
check 0 '4 files: 4 converted; 14 records skipped in 2 of them' "$tool" --check -r tree -o checked/
[ ! -e checked ] || fault "made a folder"

# What is newer than its metafile stays, unless forced or named.
printf 'mine' | tee made/svg/a.emf.svg >named.svg
touch -d '2 hours ago' made/svg/b.wmf.svg
check 0 '4 files: 1 converted, 3 up to date; 7 records skipped in 1 of them' \
    "$tool" -r tree -o made/svg
is_text made/svg/a.emf.svg mine
converts made/svg/a.emf.svg chart.svg "$tool" -q --force -r tree -o made/svg
converts named.svg chart.svg "$tool" tree/a.emf -o named.svg

# One document for each, and no metafile lost.
check 2 'both tree/a.emf and other/a.emf would become new/a.emf.svg' \
    'mkdir other; cp "$chart" other/a.emf; "$tool" tree/a.emf other/a.emf -o new/'
[ ! -e new ] || fault "something was written"
check 2 'both tree/a.emf and ./tree/a.emf would become ./tree/a.emf.svg' \
    "$tool" tree/a.emf ./tree/a.emf
check 2 'tree/a.emf would be replaced, and is a metafile' \
    "$tool" --dump-skipped tree/a.emf tree/a.emf -o list.svg
check 2 '--dump-skipped would replace ./list.svg' \
    "$tool" --dump-skipped list.svg tree/a.emf -o ./list.svg
check 2 './tree/a.emf would be replaced, and is a metafile' "$tool" tree/a.emf -o ./tree/a.emf
is_same tree/a.emf "$chart"
check 2 'several documents cannot go to standard output' "$tool" tree -o -
check 2 'named.svg is to hold documents and is no folder' "$tool" tree -o named.svg
check 2 'standard input has no name, so -o needs one for a file' '"$tool" - -o tree <"$chart"'
check 1 $'empty: holds no metafiles; -r looks into its folders too\n1 file: 1 failed' \
    'mkdir empty; "$tool" empty'

# The same bytes and messages whatever the threads and the language.
mkdir many
for i in 1 2 3 4 5 6; do
    cp "$chart" "many/$i.emf"
    cp "$drawing" "many/$i.wmf"
done
printf 'This is a text and no picture.' >many/3.emf
head -c 600 "$drawing" >many/4.wmf
failed='many/3.emf: not a metafile: neither an EMF nor a WMF header'
messages="$failed
many/4.wmf: truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)
12 files: 10 converted, 1 damaged, 1 failed; 36 records skipped in 6 of them"
check 1 "$messages" "$tool" -j1 many -o one/
check 1 "$messages" "$tool" -j 4 many -o four/
diff -r one four || fault "the documents differ"
for language in C tr_TR.UTF-8 de_DE.UTF-8; do
    [ "$language" = C ] ||
        LOCPATH=$work localedef -i "${language%.*}" -f UTF-8 "$work/$language" 2>/dev/null || {
        echo "skipped: this system cannot make the locale $language"
        continue
    }
    check 1 "$messages" env "LOCPATH=$work" "LC_ALL=$language" "$tool" many -o "in-$language/"
    diff -r one "in-$language" || fault "the documents differ"
    check 0 '' env "LOCPATH=$work" "LC_ALL=$language" \
        "$tool" -q -r tree -o "tree-$language" --scale 1.5
    holds "tree-$language" "${documents[@]}"
    has "tree-$language/a.emf.svg" '<svg width="450"'
done
check 1 "$failed"$'\n3 files: 1 converted, 1 failed, 1 not tried' \
    "$tool" -j1 --fail-fast many/1.emf many/3.emf many/5.wmf -o fast/
holds fast 1.emf.svg
check 1 "$failed" "$tool" -q -j4 --fail-fast many/3.emf many/[12]*.?mf -o fast/

# The list of records without a handler.
check 0 "--dump-skipped converts one file at a time"$'\n'"$two" \
    "$tool" -j2 --force --dump-skipped list.txt tree -o dumped/
[ "$(grep -c 'Start Of File' list.txt)" = 2 ] || fault "the list is $(cat list.txt)"
has list.txt '^META_SETMAPMODE'
check 1 'no/list.txt: cannot be written: No such file or directory' \
    "$tool" --dump-skipped no/list.txt tree/a.emf

name='progress on a terminal'
if script -qec true /dev/null </dev/null >/dev/null 2>&1; then
    run="'$tool' -j1 --force many -o shown/"
    script -qec "$run" /dev/null </dev/null >shown.txt || true
    has shown.txt '\] 1 of 12, .*/s, .* s left'
    has shown.txt '12 files: '
    script -qec "$run -q" /dev/null </dev/null >quiet.txt || true
    ! grep -q -e ' of 12,' -e '12 files' quiet.txt || fault "quietly it shows $(cat quiet.txt)"
else
    echo "skipped: script(1) makes no terminal here"
fi

# Permissions, as somebody who is bound by them.
chmod a+rx "$work"
somebody=(env)
[ "$(id -u)" -ne 0 ] || somebody=(setpriv --reuid=65534 --regid=65534 --clear-groups)
if "${somebody[@]}" "$tool" --version >/dev/null 2>&1; then
    mkdir -m 777 closed readable open
    cp "$chart" readable/1.emf
    cp "$chart" readable/2.emf
    chmod 0 readable/1.emf closed
    chmod 555 readable
    denied='Permission denied'
    check 1 "readable/1.emf: cannot be read: $denied
closed: cannot be read: $denied
3 files: 1 converted, 2 failed" "${somebody[@]}" "$tool" readable closed -o open/
    is_same open/2.emf.svg chart.svg
    check 1 "readable/2.emf.svg: cannot be written: $denied" \
        "${somebody[@]}" "$tool" readable/2.emf -o readable
else
    echo "skipped: unreadable files and unwritable folders; nobody cannot run the tool"
fi

# A full disk: the first document that does not fit fails, what was there stays.
mkdir disk
if mount -t tmpfs -o size=24k none disk 2>/dev/null; then
    printf 'keep' >disk/1.emf.svg
    touch -d '2 hours ago' disk/1.emf.svg
    head -c 20000 /dev/zero >disk/filler
    check 1 'disk/1.emf.svg: cannot be written: No space left on device
2 files: 1 failed, 1 not tried' "$tool" -j1 --fail-fast many/1.emf many/2.emf -o disk/
    is_text disk/1.emf.svg keep
    holds disk 1.emf.svg filler
    umount disk
else
    echo "full disk: /dev/full in cli.sh, since nothing can be mounted here"
fi

finish
