#!/usr/bin/env bash
# The tool from outside, many files a call: folders, threads, what is skipped and what goes wrong.
# usage: cli_batch.sh TOOL SAMPLES
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/cli_support.sh"

"$tool" "$chart" >chart.svg
"$tool" "$drawing" >drawing.svg

# A tree with names of all kinds, and files that are no business of the tool.
odd="it's a \"näme\" 图 %1 I.EMF"
make_tree() {
    rm -rf tree
    mkdir -p tree/sub/deep
    cp "$chart" tree/a.emf
    cp "$drawing" tree/b.wmf
    cp "$chart" "tree/sub/$odd"
    cp "$drawing" tree/sub/deep/c.WMF
    printf 'text' >tree/readme.txt
    touch -d '1 hour ago' tree/a.emf tree/b.wmf "tree/sub/$odd" tree/sub/deep/c.WMF
}
make_tree
summary() {
    echo "metafile2svg: $*"
}

# Where the documents go.
expect 'two files' 0 "$(summary '2 files: 2 converted; 7 records skipped in 1 of them')" \
    "$tool" tree/a.emf tree/b.wmf
is_same tree/a.emf.svg chart.svg
is_same tree/b.wmf.svg drawing.svg
[ ! -s out ] || fault "wrote to standard output"
make_tree
expect 'folder' 0 "$(summary '2 files: 2 converted; 7 records skipped in 1 of them')" "$tool" tree
holds tree a.emf a.emf.svg b.wmf b.wmf.svg readme.txt sub/deep/c.WMF "sub/$odd"
make_tree
expect 'tree, quietly' 0 '' "$tool" -q -r tree -o made/svg
holds made/svg a.emf.svg b.wmf.svg sub/deep/c.WMF.svg "sub/$odd.svg"
is_same "made/svg/sub/$odd.svg" chart.svg
expect 'files and a folder' 0 '' "$tool" -q tree/sub "$chart" -o mixed/
holds mixed chart.emf.svg "$odd.svg"
expect 'check' 0 "$(summary '4 files: 4 converted; 14 records skipped in 2 of them')" \
    "$tool" --check -r tree -o checked/
[ ! -e checked ] || fault "made a folder"

# What is newer than its metafile stays, unless forced or named.
printf 'mine' >made/svg/a.emf.svg
touch -d '2 hours ago' made/svg/b.wmf.svg
expect 'newer documents' 0 \
    "$(summary '4 files: 1 converted, 3 up to date; 7 records skipped in 1 of them')" \
    "$tool" -r tree -o made/svg
[ "$(cat made/svg/a.emf.svg)" = mine ] || fault "a newer document was replaced"
expect 'forced' 0 '' "$tool" -q --force -r tree -o made/svg
is_same made/svg/a.emf.svg chart.svg
printf 'mine' >named.svg
expect 'named output' 0 '' "$tool" tree/a.emf -o named.svg
is_same named.svg chart.svg

# One document for each, and no metafile lost.
expect 'same name twice' 2 'metafile2svg: both tree/a.emf and other/a.emf would become new/a.emf.svg' \
    shell 'mkdir other; cp "$chart" other/a.emf; "$tool" tree/a.emf other/a.emf -o new/'
[ ! -e new ] || fault "something was written"
expect 'same file twice' 2 'metafile2svg: both tree/a.emf and ./tree/a.emf would become ./tree/a.emf.svg' \
    "$tool" tree/a.emf ./tree/a.emf
expect 'list of records is the input' 2 'metafile2svg: tree/a.emf would be replaced, and is a metafile' \
    "$tool" --dump-skipped tree/a.emf tree/a.emf -o list.svg
expect 'output is the input' 2 'metafile2svg: ./tree/a.emf would be replaced, and is a metafile' \
    "$tool" tree/a.emf -o ./tree/a.emf
is_same tree/a.emf "$chart"
expect 'many to standard output' 2 'metafile2svg: several documents cannot go to standard output' \
    "$tool" tree -o -
expect 'many to a file' 2 'metafile2svg: named.svg is to hold documents and is no folder' \
    "$tool" tree -o named.svg
expect 'nameless in a folder' 2 \
    'metafile2svg: standard input has no name, so -o needs one for a file' \
    shell '"$tool" - -o tree <"$chart"'
mkdir empty
expect 'folder without metafiles' 1 "metafile2svg: empty: holds no metafiles; -r looks into its \
folders too
$(summary '1 file: 1 failed')" "$tool" empty

# The same bytes and messages whatever the threads and the language.
mkdir many
for i in 1 2 3 4 5 6; do
    cp "$chart" "many/$i.emf"
    cp "$drawing" "many/$i.wmf"
done
printf 'This is a text and no picture.' >many/3.emf
head -c 600 "$drawing" >many/4.wmf
messages="metafile2svg: many/3.emf: not a metafile: neither an EMF nor a WMF header
metafile2svg: many/4.wmf: truncated, 600 of 1204 bytes, stopped at record 51 (offset 594)
$(summary '12 files: 10 converted, 1 damaged, 1 failed; 36 records skipped in 6 of them')"
expect 'one thread' 1 "$messages" "$tool" -j1 many -o one/
expect 'four threads' 1 "$messages" "$tool" -j 4 many -o four/
diff -r one four || fault "the documents differ"
for language in tr_TR de_DE; do
    LOCPATH=$work localedef -i "$language" -f UTF-8 "$work/$language.UTF-8" 2>/dev/null ||
        echo "skipped: this system cannot make the locale $language"
done
for language in C tr_TR.UTF-8 de_DE.UTF-8; do
    [ "$language" = C ] || [ -d "$language" ] || continue
    expect "language $language" 1 "$messages" \
        env "LOCPATH=$work" "LC_ALL=$language" "$tool" many -o "in-$language/"
    diff -r one "in-$language" || fault "the documents differ"
    expect "tree in $language" 0 '' env "LOCPATH=$work" "LC_ALL=$language" \
        "$tool" -q -r tree -o "tree-$language" --scale 1.5
    holds "tree-$language" a.emf.svg b.wmf.svg sub/deep/c.WMF.svg "sub/$odd.svg"
    grep -q '<svg width="450"' "tree-$language/a.emf.svg" || fault "the scale is another"
done
expect 'fail fast' 1 "metafile2svg: many/3.emf: not a metafile: neither an EMF nor a WMF header
$(summary '3 files: 1 converted, 1 failed, 1 not tried')" \
    "$tool" -j1 --fail-fast many/1.emf many/3.emf many/5.wmf -o fast/
holds fast 1.emf.svg
name='fail fast with threads'
! "$tool" -q -j4 --fail-fast many/3.emf many/[12]*.?mf -o fast/ 2>/dev/null || fault "did not fail"

# The list of records without a handler.
expect 'dump' 0 "metafile2svg: --dump-skipped converts one file at a time
$(summary '2 files: 2 converted; 7 records skipped in 1 of them')" \
    "$tool" -j2 --force --dump-skipped list.txt tree -o dumped/
[ "$(grep -c 'Start Of File' list.txt)" = 2 ] && grep -q '^META_SETMAPMODE' list.txt ||
    fault "the list is $(cat list.txt)"
expect 'dump to nowhere' 1 \
    'metafile2svg: no/list.txt: cannot be written: No such file or directory' \
    "$tool" --dump-skipped no/list.txt tree/a.emf

name='progress on a terminal' cases=$((cases + 1))
if command -v script >/dev/null; then
    run="'$tool' -j1 --force many -o shown/"
    script -qec "$run" /dev/null </dev/null >shown.txt || true
    grep -q '\] 1 of 12, .*/s, .* s left' shown.txt && grep -q '12 files: ' shown.txt ||
        fault "it shows $(cat shown.txt)"
    script -qec "$run -q" /dev/null </dev/null >quiet.txt || true
    ! grep -q -e ' of 12,' -e '12 files' quiet.txt || fault "quietly it shows $(cat quiet.txt)"
else
    echo "skipped: there is no script(1) to make a terminal"
fi

# Permissions, as somebody who is bound by them.
chmod a+rx "$work"
somebody=()
[ "$(id -u)" -ne 0 ] || somebody=(setpriv --reuid=65534 --regid=65534 --clear-groups)
if "${somebody[@]}" "$tool" --version >/dev/null 2>&1; then
    mkdir closed readable
    cp "$chart" readable/1.emf
    cp "$chart" readable/2.emf
    chmod 0 readable/1.emf closed
    chmod a-w readable
    mkdir -m 777 open
    expect 'unreadable file' 1 "metafile2svg: readable/1.emf: cannot be read: Permission denied
metafile2svg: closed: cannot be read: Permission denied
$(summary '3 files: 1 converted, 2 failed')" \
        "${somebody[@]}" "$tool" readable closed -o open/
    is_same open/2.emf.svg chart.svg
    expect 'unwritable folder' 1 \
        'metafile2svg: readable/2.emf.svg: cannot be written: Permission denied' \
        "${somebody[@]}" "$tool" readable/2.emf -o readable
    chmod u+rwx readable closed
else
    echo "skipped: unreadable files and unwritable folders; nobody cannot run the tool"
fi

# A full disk: the first document that does not fit fails, what was there stays.
mkdir disk
if mount -t tmpfs -o size=24k none disk 2>/dev/null; then
    echo "full disk: a tmpfs"
    printf 'keep' >disk/1.emf.svg
    touch -d '2 hours ago' disk/1.emf.svg
    head -c 20000 /dev/zero >disk/filler
    expect 'full disk' 1 \
        "metafile2svg: disk/1.emf.svg: cannot be written: No space left on device
$(summary '2 files: 1 failed, 1 not tried')" \
        "$tool" -j1 --fail-fast many/1.emf many/2.emf -o disk/
    [ "$(cat disk/1.emf.svg)" = keep ] || fault "the existing document changed"
    holds disk 1.emf.svg filler
    umount disk
else
    echo "full disk: /dev/full in cli.sh, since nothing can be mounted here"
fi

finish
