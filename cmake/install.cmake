# What `cmake --install` puts where, in components, each of which is a Debian package as well.
include(CMakePackageConfigHelpers)

set(px_libraries px_core px_util px_vcrd px_cards)
set_target_properties(${px_libraries} PROPERTIES
  VERSION ${PX_SOVERSION}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH}
  SOVERSION ${PX_SOVERSION})
foreach(library IN LISTS px_libraries)
  string(REPLACE px_ "" name ${library})
  set_target_properties(${library} PROPERTIES EXPORT_NAME ${name})
  add_library(px::${name} ALIAS ${library})
endforeach()

# Libraries, and what programs are built with.
install(TARGETS ${px_libraries} EXPORT px
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

# The command, and how the desktop and mail programs find it.
install(TARGETS pxcard COMPONENT command)
install(FILES packaging/pxcard.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT command)
install(FILES packaging/pxcard.mailcap
  DESTINATION lib/mime/packages RENAME pxcard COMPONENT command)
# Its completions and catalogues belong here, into the component `command`, the catalogues into
# `runtime`.

set(packages runtime libpx${PX_SOVERSION} development libpx-dev command pxcard)
while(packages)
  list(POP_FRONT packages component package)
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} RENAME copyright
    COMPONENT ${component})
endwhile()
install(FILES README.md docs/json.md docs/card.schema.json
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libpx-dev COMPONENT development)

# Man pages, each docs/NAME.SECTION.scd. Without scdoc there are none.
find_program(PX_SCDOC scdoc)
file(GLOB manuals CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.scd)
if(PX_SCDOC)
  foreach(source IN LISTS manuals)
    cmake_path(GET source STEM LAST_ONLY page)
    cmake_path(GET page EXTENSION LAST_ONLY extension)
    string(SUBSTRING ${extension} 1 -1 section)
    add_custom_command(
      OUTPUT ${page}
      COMMAND sh -c "exec \"$0\" <\"$1\" >\"$2\"" ${PX_SCDOC} ${source} ${page}
      DEPENDS ${source}
      VERBATIM)
    list(APPEND pages ${CMAKE_CURRENT_BINARY_DIR}/${page})
    if(section EQUAL 1)
      set(component command)
    else()
      set(component development)
    endif()
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${page}
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
  endforeach()
  add_custom_target(manuals ALL DEPENDS ${pages})
else()
  message(STATUS "scdoc is missing: no man pages")
endif()

include(cmake/packages.cmake)
