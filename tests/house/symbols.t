What the built libraries export and call: the functions of the public headers, and nothing that
would print, or end the process, behind a host's back.

  $ names() { "$NM" -D "$@" | awk '{ sub(/@.*/, "", $NF); print $NF }' | sort -u; }
  $ names --defined-only --extern-only "$LIBRARY"
  ConvertMetaFileToSVG
  WMFToSVG
  $ objdump -p "$LIBRARY" | sed -nE 's/^ *NEEDED +libQt[56](\w+)\..*/\1/p' | sort
  Core
  Gui
  $ names --defined-only --extern-only "$PICTURE_LIBRARY" | c++filt | sed 's,[[(].*,,;/^SVGTOOL_/d' | sort -u
  svgtool::describe
  svgtool::drawMetafile
  svgtool::reportJson
  svgtool::verdictOf
  svgtool_draw
  svgtool_error_text
  svgtool_picture_document
  svgtool_picture_error
  svgtool_picture_free
  svgtool_picture_height
  svgtool_picture_report
  svgtool_picture_verdict
  svgtool_picture_width
  svgtool_verdict_text
  svgtool_version
  $ "$NM" -D --defined-only "$PICTURE_LIBRARY" | grep -vE ' A SVGTOOL_0\.1$|@@SVGTOOL_0\.1$'
  [1]
  $ objdump -p "$PICTURE_LIBRARY" | grep NEEDED.*Qt
  [1]

Sanitizers bring calls of their own. The logging library's own output is a logging category of Qt.

  $ forbidden='exit|_exit|_Exit|quick_exit|abort|raise|kill|__assert_fail'
  $ forbidden+='|(__)?v?f?d?printf(_chk)?|f?puts|f?putc|_IO_putc|putchar|fwrite|write|perror|psignal'
  $ forbidden+='|stdout|stderr|_ZSt4cout|_ZSt4cerr|_ZSt4clog|_ZSt5wcout|_ZSt5wcerr'
  $ calls() { [ "$FOREIGN_CALLS" = none ] && names --undefined-only "$1" | grep -xE "$forbidden"; }
  $ calls "$LOGGING"
  [1]
  $ forbidden+='|_ZNK14QMessageLogger[0-9].*|_ZN6QDebug.*|_Z6qDebugv|_Z8qWarningv'
  $ calls "$LIBRARY"
  [1]
  $ calls "$PICTURE_LIBRARY"
  [1]
