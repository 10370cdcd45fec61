# Completion of metafile2svg's arguments in bash.

_metafile2svg() {
    local current=${COMP_WORDS[COMP_CWORD]} previous= word ended=
    [ "$COMP_CWORD" -eq 0 ] || previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()

    # Behind "--" all words are files.
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [ "$word" != -- ] || ended=1
    done
    if [ -z "$ended" ]; then
        case $previous in
        -o | --output | --dump-skipped | --gallery)
            compopt -o filenames 2>/dev/null || : # fails when a test calls it
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        --log-level)
            mapfile -t COMPREPLY < <(compgen -W 'fatal warning info trace' -- "$current")
            return
            ;;
        --text)
            mapfile -t COMPREPLY < <(compgen -W 'characters outlines' -- "$current")
            return
            ;;
        --prefer)
            mapfile -t COMPREPLY < <(compgen -W 'wmf emf' -- "$current")
            return
            ;;
        -j | --jobs | --width | --height | --scale | --dpi | --id-prefix | --limit)
            return
            ;;
        esac
        if [[ $current == -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W '-o --output -r --recursive -j --jobs --force --check
                --fail-fast --width --height --scale --dpi --text --prefer --id-prefix --limit --exact
                --info --report --json --gallery --strict -q --quiet --dump-skipped --log-level -h --help -V
                --version' -- "$current")
            return
        fi
    fi

    # Metafiles, and folders on the way to them.
    compopt -o filenames 2>/dev/null || : # fails when a test calls it
    local name
    while IFS= read -r name; do
        if [ -d "$name" ] || [[ ${name,,} == *.@(emf|emz|wmf|wmz) ]]; then
            COMPREPLY+=("$name")
        fi
    done < <(compgen -f -- "$current")
}

complete -F _metafile2svg metafile2svg
