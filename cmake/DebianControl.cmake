# Run by cpack after it made the packages. It has put scripts that call ldconfig beside the trigger
# that does the same, and beside a module that is no shared library to others; and it knows no
# Multi-Arch field. All are mended here.

foreach(package ${CPACK_PACKAGE_FILES})
  set(tree ${package}.tree)
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
  foreach(script ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
    if(EXISTS ${script})
      file(STRINGS ${script} calls REGEX "ldconfig")
      if(calls)
        file(REMOVE ${script})
      endif()
    endif()
  endforeach()
  if(EXISTS ${tree}/DEBIAN/triggers)
    file(READ ${tree}/DEBIAN/control control)
    string(STRIP "${control}" control)
    file(WRITE ${tree}/DEBIAN/control "${control}\nMulti-Arch: same\n")
  endif()
  execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build ${tree} ${package}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${tree})
endforeach()
