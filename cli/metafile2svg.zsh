#compdef metafile2svg
# Completion of metafile2svg's arguments in zsh; installed as _metafile2svg.

_arguments -s -S \
    '(-o --output)'{-o+,--output=}'[file or folder to write]:output:_files' \
    '(-r --recursive)'{-r,--recursive}'[convert what is in the folders of a folder, too]' \
    '(-j --jobs)'{-j+,--jobs=}'[files at the same time]:number' \
    '--force[convert also what has a newer document]' \
    '--check[do everything but write documents]' \
    '--fail-fast[stop after the first file that fails]' \
    '--width=[width in pixels]:pixels' \
    '--height=[height in pixels]:pixels' \
    "--scale=[size as a multiple of the picture's own]:factor" \
    '--dpi=[pixels to an inch of the picture]:number' \
    '--text=[what letters become]:how:(characters outlines)' \
    '--prefer=[which of two pictures in a file]:kind:(wmf emf)' \
    '--id-prefix=[what ids begin with]:prefix' \
    '--limit=[no larger documents]:megabytes' \
    "--exact[the library's exact text, and not a picture]" \
    '--info[tell format, size, bounds and records]' \
    '--report[tell what became of the records, and why]' \
    '--json[tell it as JSON]' \
    '--gallery=[show all results on a page]:page:_files -g "*.html"' \
    '--strict[exit with 4 if a picture lacks drawing or a file is damaged]' \
    '(-q --quiet)'{-q,--quiet}'[no progress, no summary, not what pictures lack]' \
    '--dump-skipped=[list the records that the exact text lacks]:file:_files' \
    '--log-level=[what the exact library logs]:level:(fatal warning info trace)' \
    '(- *)'{-h,--help}'[show the options]' \
    '(- *)'{-V,--version}'[show the version]' \
    '*:metafile:_files -g "(#i)*.(emf|emz|wmf|wmz)(-.)"'
