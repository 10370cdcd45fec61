#!/usr/bin/env bash
# Runs the recipe of docs/archives.md on a folder of metafiles: starts it, stops it twice,
# resumes it, and compares its documents with those of the tool.
# usage: scripts/test-archives.sh FOLDER [TOOL]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
[ $# -ge 1 ] || { sed -n '2,4s/^# //p' "${BASH_SOURCE[0]}" >&2; exit 2; }
folder=$(realpath "$1") tool=$(realpath "${2:-$root/build/release/cli/metafile2svg}")
"$root/scripts/setup.sh" archives
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
fail() {
    echo "FAILED: $*"
    exit 1
}

mkdir bin && ln -s "$tool" bin/metafile2svg
export PATH=$work/bin:$PATH LC_ALL=C
cp -r "$folder" in
cp "$root/samples/archive/convert-one.sh" .
# Names that a shell could stumble over.
first=$(find in -iname '*.emf' -type f | sort | head -n 1)
mkdir -p "in/a folder" && cp "$first" "in/a folder/it's \$HOME & more.EMF"
find in -type f \( -iname '*.[ew]mf' -o -iname '*.[ew]mz' \) -printf '%P\n' | sort >files.list
count=$(wc -l <files.list)
echo ':' >hosts

recipe() {
    exec parallel --will-cite --tag --sshloginfile hosts --workdir "$work" --jobs 2 --joblog jobs.log \
        --resume --arg-file files.list "$@" ./convert-one.sh in out {} 2>>messages.log
}
ended() { tail -n +2 jobs.log 2>/dev/null | wc -l; }

# Runs until a share of the jobs has ended, then stops by a signal. Slowed down, so that it comes
# before the end.
stop_at() {
    local enough=$1 signal=$2 pid
    (recipe --delay 0.02) &
    pid=$!
    while [ "$(ended)" -lt "$enough" ] && kill -0 "$pid"; do sleep 0.1; done
    kill "-$signal" "$pid"
    wait "$pid" || true
    stops+=("$(ended)")
    [ "${stops[-1]}" -lt "$count" ] || fail "all $count jobs had ended before the stop"
}
stops=()
stop_at $((count / 4)) TERM
stop_at $((count / 2)) HUP
(recipe) || true
[ "$(tail -n +2 jobs.log | cut -f1 | sort -n | uniq | wc -l)" -eq "$count" ] ||
    fail "the log does not have every job"
[ "$(ended)" -eq "$count" ] || fail "jobs that had ended were done again"

# What the tool does by itself, file by file.
while IFS= read -r name; do
    status=0
    metafile2svg "in/$name" -o wanted.svg 2>/dev/null </dev/null || status=$?
    echo "$status"
    case $status in
    0 | 3) cmp wanted.svg "out/$name.svg" >&2 || fail "$name: the documents differ" >&2 ;;
    *) [ ! -e "out/$name.svg" ] || fail "$name: not converted, and yet a document" >&2 ;;
    esac
    rm -f wanted.svg
done <files.list >statuses
diff statuses <(tail -n +2 jobs.log | sort -n | cut -f7) || fail "the log has other statuses"
while IFS= read -r name; do
    grep -qF "$name"$'\t' messages.log || fail "$name: no message says why it was not converted"
done < <(paste statuses files.list | sed -n 's/^1\t//p')
[ -z "$(find out -name '*.part')" ] || fail "a partial document was left"
echo "$count files, stopped after ${stops[*]}, resumed: $(sort statuses | uniq -c |
    awk '{ printf "%s%d with status %d", (NR > 1 ? ", " : ""), $1, $2 }')"
