# Run by cpack before it makes the packages: adds what every Debian package holds to the files of
# each component, which a plain `cmake --install` leaves out.

file(GLOB components LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(component ${components})
  get_filename_component(name ${component} NAME)
  string(TOUPPER ${name} upper)
  set(doc ${component}/usr/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  file(COPY_FILE ${CPACK_SVGTOOL_DEBIAN_DIR}/changelog ${component}/changelog)
  file(MAKE_DIRECTORY ${doc})
  file(COPY ${CPACK_SVGTOOL_DEBIAN_DIR}/copyright DESTINATION ${doc})
  file(RENAME ${component}/changelog ${doc}/changelog.Debian)
  file(GLOB pages ${component}/usr/share/man/man*/*.[1-9])
  execute_process(COMMAND gzip -9n ${doc}/changelog.Debian ${pages} COMMAND_ERROR_IS_FATAL ANY)
  set(overrides ${CPACK_SVGTOOL_DEBIAN_DIR}/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}.lintian-overrides)
  if(EXISTS ${overrides})
    set(lintian ${component}/usr/share/lintian/overrides)
    file(MAKE_DIRECTORY ${lintian})
    file(COPY_FILE ${overrides} ${lintian}/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  endif()
  file(CHMOD_RECURSE ${doc}
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
    DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
      WORLD_READ WORLD_EXECUTE)
endforeach()
