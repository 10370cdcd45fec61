# What `cmake --install` puts in place. Nothing in it depends on the prefix: the installed tree may
# be moved. The components are the Debian packages of cmake/Package.cmake.
include(CMakePackageConfigHelpers)

# What is not marked otherwise is for those who build hosts of the exact library.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
set(SVGTOOL_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/SVGTool)

# The picture library, which needs no Qt.
install(TARGETS svgtool_picture_shared EXPORT SVGToolPictureTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT picture
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT picture NAMELINK_COMPONENT picture_development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT picture_development)
install(TARGETS svgtool_picture_static EXPORT SVGToolPictureStaticTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT picture_development)
install(FILES
  ${PROJECT_SOURCE_DIR}/picture/api/picture.h ${PROJECT_SOURCE_DIR}/picture/api/picture.hpp
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/svgtool COMPONENT picture_development)

if(SVGTOOL_BUILD_EXACT)
  # A logging library that a host brought in place of ours may be one that is installed already.
  get_target_property(logging_is_imported basic_logging IMPORTED)
  set(installed_libraries svgtool)
  if(NOT logging_is_imported)
    list(APPEND installed_libraries basic_logging)
    if(EXISTS "${SVGTOOL_LOGGING_DIR}/CLogSystem.h")
      install(FILES "${SVGTOOL_LOGGING_DIR}/CLogSystem.h"
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/basic_logging)
    endif()
  endif()

  if(NOT WIN32)
    set_target_properties(${installed_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
  endif()
  install(TARGETS ${installed_libraries} EXPORT SVGToolTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/exact/svgtool/SVGTool.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/svgtool)
endif()

if(TARGET metafile2svg)
  file(RELATIVE_PATH libraries_from_tool
    "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  if(NOT WIN32)
    set_target_properties(metafile2svg PROPERTIES
      INSTALL_RPATH "$ORIGIN/${libraries_from_tool}")
  endif()
  install(TARGETS metafile2svg RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
  if(TARGET metafile2svg_exact)
    cmake_path(SET module_dir NORMALIZE "${CMAKE_INSTALL_BINDIR}/${SVGTOOL_EXACT_MODULE_DIR}")
    file(RELATIVE_PATH libraries_from_module
      "${CMAKE_INSTALL_FULL_BINDIR}/${SVGTOOL_EXACT_MODULE_DIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    set_target_properties(metafile2svg_exact PROPERTIES
      INSTALL_RPATH "$ORIGIN/${libraries_from_module}")
    install(TARGETS metafile2svg_exact LIBRARY DESTINATION ${module_dir} COMPONENT tool)
  endif()
  if(NOT WIN32)
    install(PROGRAMS ${PROJECT_SOURCE_DIR}/cli/metafile2svg-thumbnailer
      DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/cli/metafile2svg.thumbnailer
      DESTINATION ${CMAKE_INSTALL_DATADIR}/thumbnailers COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/cli/metafile2svg.bash
      DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME metafile2svg
      COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/cli/metafile2svg.zsh
      DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions RENAME _metafile2svg
      COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/cli/metafile2svg.fish
      DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/docs/report.schema.json
      DESTINATION ${CMAKE_INSTALL_DATADIR}/metafile2svg COMPONENT tool)
    install(FILES
      ${PROJECT_SOURCE_DIR}/docs/metafile2svg.1
      ${PROJECT_SOURCE_DIR}/docs/metafile2svg-thumbnailer.1
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  endif()
endif()

# Where Debian's Python looks; others take bindings/python with pip.
if(NOT WIN32)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/bindings/python/svgtool
    DESTINATION lib/python3/dist-packages COMPONENT python EXCLUDE_FROM_ALL
    FILES_MATCHING PATTERN "*.py" PATTERN "py.typed" PATTERN "__pycache__" EXCLUDE)
endif()

# CMake package: find_package(SVGTool), with the components of cmake/SVGToolConfig.cmake.in.
install(EXPORT SVGToolPictureTargets NAMESPACE SVGTool:: DESTINATION ${SVGTOOL_PACKAGE_DIR}
  COMPONENT picture_development)
install(EXPORT SVGToolPictureStaticTargets NAMESPACE SVGTool:: DESTINATION ${SVGTOOL_PACKAGE_DIR}
  COMPONENT picture_development)
if(SVGTOOL_BUILD_EXACT)
  install(EXPORT SVGToolTargets NAMESPACE SVGTool:: DESTINATION ${SVGTOOL_PACKAGE_DIR})
endif()
configure_package_config_file(cmake/SVGToolConfig.cmake.in SVGToolConfig.cmake
  INSTALL_DESTINATION ${SVGTOOL_PACKAGE_DIR}
  NO_SET_AND_CHECK_MACRO)
# Before version 1 a new minor version may break its users.
write_basic_package_version_file(SVGToolConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/SVGToolConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/SVGToolConfigVersion.cmake
  DESTINATION ${SVGTOOL_PACKAGE_DIR} COMPONENT picture_development)

# pkg-config packages, for hosts built without CMake.
file(RELATIVE_PATH prefix_from_pc
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" prefix_from_pc "${prefix_from_pc}")
configure_file(cmake/svgtool-picture.pc.in svgtool-picture.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/svgtool-picture.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT picture_development)
if(SVGTOOL_BUILD_EXACT)
  configure_file(cmake/svgtool.pc.in svgtool.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/svgtool.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
