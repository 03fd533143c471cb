# Debian packages, made by `cpack` in the build folder: libpx1, libpx-dev, pxcard and python3-pxcards. A
# package more is a component more: its name in the list, and the lines that describe it. The preset
# `package` is for them: the Python package's folder is that of the prefix that is configured.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  return()
endif()
set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME px)
set(CPACK_PACKAGE_CONTACT "The px developers <px@localhost>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development command python)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Dependencies come from the packages of the system; px's own libraries are found in the build.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libpx${PX_SOVERSION})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "vCard and vCalendar filter and reader, shared libraries
libpx_vcrd reads vCard and vCalendar text and drives a document host with it.
libpx_cards tells programs what a person sees in such files.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libpx-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libpx${PX_SOVERSION} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "vCard and vCalendar filter and reader, for development
The headers, the CMake package and the manuals of libpx_vcrd and libpx_cards.")

set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME pxcard)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_COMMAND_PACKAGE_DEPENDS "libpx${PX_SOVERSION} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_COMMAND_PACKAGE_SUGGESTS "xdg-utils")
set(CPACK_COMPONENT_COMMAND_DESCRIPTION
  "shows vCard and vCalendar files
pxcard shows cards and calendars as text or JSON and saves what is embedded in them.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-pxcards)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3 (>= 3.11), libpx${PX_SOVERSION} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-dask, python3-distributed, python3-pandas")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/packaging/python3-pxcards/postinst
  ${PROJECT_SOURCE_DIR}/packaging/python3-pxcards/prerm)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
  "vCard and vCalendar reader for Python
The package pxcards gives a record for each card, and reads what is embedded in it. With Dask it reads
folders of card files on many machines.")

include(CPack)
