# The reference of the public headers: `cmake --build DIR --target reference`, in DIR/reference/html.
find_package(Doxygen REQUIRED)
set(DOXYGEN_PROJECT_NAME SVGTool)
set(DOXYGEN_OUTPUT_DIRECTORY reference)
set(DOXYGEN_GENERATE_LATEX NO)
set(DOXYGEN_EXTRACT_ALL NO)
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
set(DOXYGEN_WARN_NO_PARAMDOC NO)
set(DOXYGEN_DISTRIBUTE_GROUP_DOC YES)
set(DOXYGEN_MACRO_EXPANSION YES)
set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
set(DOXYGEN_PREDEFINED "SVGTOOL_PICTURE_EXPORT=" "SVGTOOL_C_EXPORT=" "SVGTOOL_EXPORT=")
doxygen_add_docs(reference
  ${PROJECT_SOURCE_DIR}/picture/api/picture.h
  ${PROJECT_SOURCE_DIR}/picture/api/picture.hpp
  ${PROJECT_SOURCE_DIR}/exact/svgtool/SVGTool.h
  ${PROJECT_SOURCE_DIR}/exact/logging/CLogSystem.h)
