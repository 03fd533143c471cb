# What `cmake --install` puts where, in components, each of which is a Debian package as well.
include(CMakePackageConfigHelpers)

# Libraries, and what programs are built with.
install(TARGETS px_core px_util px_vcrd px_cards EXPORT px
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/px TYPE INCLUDE COMPONENT development)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/px)
install(EXPORT px NAMESPACE px:: DESTINATION ${package_dir} COMPONENT development
  FILE px-config.cmake)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/px-config-version.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/px-config-version.cmake
  DESTINATION ${package_dir} COMPONENT development)

# The .pc files find the tree by where they stand, so it can be moved.
file(RELATIVE_PATH PX_PREFIX_FROM_PC
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
foreach(name vcrd cards)
  configure_file(packaging/px-${name}.pc.in px-${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/px-${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

# The command, and how the desktop and mail programs find it. Man pages and completions are installed
# where they are made, in docs/, so are the texts in other languages, in po/, and the Python package.
install(TARGETS pxcard COMPONENT command)
install(PROGRAMS packaging/pxcard-open TYPE BIN COMPONENT command)
install(FILES packaging/pxcard.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT command)
install(FILES packaging/pxcard.mailcap
  DESTINATION lib/mime/packages RENAME pxcard COMPONENT command)

set(packages runtime libpx${PX_SOVERSION} development libpx-dev command pxcard
  python python3-pxcards)
while(packages)
  list(POP_FRONT packages component package)
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} RENAME copyright
    COMPONENT ${component})
endwhile()
install(FILES README.md docs/json.md docs/card.schema.json docs/stability.md
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libpx-dev COMPONENT development)

# A project that takes px in has packages of its own.
if(PROJECT_IS_TOP_LEVEL)
  include(cmake/packages.cmake)
endif()
