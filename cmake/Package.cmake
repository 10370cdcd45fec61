# Debian packages by component, made by cpack. The preset "package", which scripts/package.sh uses,
# configures for them: under /usr and without run paths.

set(SVGTOOL_MAINTAINER "SVGTool maintainers <svgtool@localhost>" CACHE STRING
  "Name and address of who is responsible for the packages")
set(SVGTOOL_DEBIAN_REVISION 1 CACHE STRING "Revision of the packages of one version")

set(debian_version ${PROJECT_VERSION}-${SVGTOOL_DEBIAN_REVISION})
set(debian_dir ${PROJECT_SOURCE_DIR}/packaging/debian)
file(STRINGS ${debian_dir}/changelog changelog_head LIMIT_COUNT 1)
if(NOT changelog_head MATCHES "^svgtool \\(${debian_version}\\) ")
  message(WARNING "packaging/debian/changelog does not begin with svgtool (${debian_version})")
endif()

set(library_package libsvgtool${PROJECT_VERSION_MAJOR})
set(picture_package libsvgtoolpicture${SVGTOOL_PICTURE_ABI})
set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_CONTACT "${SVGTOOL_MAINTAINER}")
# The descriptions below begin with summaries of their own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_COMPONENTS_ALL picture picture_development python)
if(SVGTOOL_BUILD_EXACT)
  list(APPEND CPACK_COMPONENTS_ALL library development)
endif()
if(TARGET metafile2svg)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_PACKAGE_SOURCE svgtool)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${SVGTOOL_DEBIAN_REVISION})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# What needs our own libraries finds them where they were built; the package that holds them is
# named below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/exact/svgtool ${PROJECT_BINARY_DIR}/logging)

# Texts are measured in these fonts, or in ones of the same widths.
set(fonts "fonts-liberation, fonts-dejavu-core")

set(CPACK_DEBIAN_PICTURE_PACKAGE_NAME ${picture_package})
set(CPACK_DEBIAN_PICTURE_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PICTURE_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PICTURE_PACKAGE_RECOMMENDS "${fonts}")
set(CPACK_DEBIAN_PICTURE_PACKAGE_CONTROL_EXTRA ${debian_dir}/triggers)
set(CPACK_DEBIAN_PICTURE_DESCRIPTION
  "draws Windows metafiles as SVG (shared library)
SVGTool reads Windows metafiles and writes SVG 1.1 documents.
.
This package holds the shared library that draws a metafile as the system
would that it was made for. It needs no Qt.")

set(CPACK_DEBIAN_PICTURE_DEVELOPMENT_PACKAGE_NAME libsvgtoolpicture-dev)
set(CPACK_DEBIAN_PICTURE_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PICTURE_DEVELOPMENT_PACKAGE_DEPENDS
  "${picture_package} (= ${debian_version})")
# What the static library links.
set(CPACK_DEBIAN_PICTURE_DEVELOPMENT_PACKAGE_RECOMMENDS
  "libdeflate-dev, libfreetype-dev, libfontconfig-dev, pkgconf")
set(CPACK_DEBIAN_PICTURE_DEVELOPMENT_DESCRIPTION
  "draws Windows metafiles as SVG (development files)
SVGTool reads Windows metafiles and writes SVG 1.1 documents.
.
This package holds the header, the CMake package and the pkg-config file that a
program needs to be built with the library, and the same as a static library.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-svgtool)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3:any (>= 3.9), ${picture_package} (>= ${debian_version})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  "${debian_dir}/python/postinst;${debian_dir}/python/prerm")
set(CPACK_DEBIAN_PYTHON_DESCRIPTION
  "draws Windows metafiles as SVG (Python 3)
SVGTool reads Windows metafiles and writes SVG 1.1 documents.
.
This package holds the module svgtool, which calls the shared library.")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "${fonts}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${debian_dir}/triggers)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION
  "converts Windows metafiles to SVG (shared library)
SVGTool reads Windows metafiles (EMF and WMF) and writes SVG 1.1 documents.
.
This package holds the shared library and the small logging library that it
shares with its hosts.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libsvgtool-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
if(SVGTOOL_QT_MAJOR EQUAL 6)
  set(qt_dev qt6-base-dev)
else()
  set(qt_dev qtbase5-dev)
endif()
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${library_package} (= ${debian_version}), libsvgtoolpicture-dev (= ${debian_version}), ${qt_dev}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
  "converts Windows metafiles to SVG (development files)
SVGTool reads Windows metafiles (EMF and WMF) and writes SVG 1.1 documents.
.
This package holds the headers and the pkg-config files that a program needs to
be built with the library.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME metafile2svg)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library_package} (= ${debian_version})")
# librsvg2-bin turns the SVG into the PNG that file managers want for a thumbnail.
set(CPACK_DEBIAN_TOOL_PACKAGE_RECOMMENDS "${fonts}, librsvg2-bin")
set(CPACK_DEBIAN_TOOL_DESCRIPTION
  "converts Windows metafiles to SVG (command-line tool)
metafile2svg reads Windows metafiles (EMF and WMF), single files or whole
folders, and writes SVG 1.1 documents.
.
A thumbnailer for file managers comes with it.")

# The scripts get what they need through variables that cpack hands on to them.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianControl.cmake)
set(CPACK_SVGTOOL_DEBIAN_DIR ${debian_dir})
include(CPack)
